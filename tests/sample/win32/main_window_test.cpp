// The sample host's main window with the keyboard, as a process of its own.
#include "host/resource.h"
#include "sample/win32/running_host.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace pmx::sample {
namespace {

TEST(MainWindow, TabLeadsFromPartToPartInBothDirections) {
    const test::TempFolder folder("host");
    const RunningHost host("PmxSampleHost.exe", folder.Path(), nullptr);
    EXPECT_EQ(host.Tab(), IDC_SUMMARY);
    EXPECT_EQ(host.Tab(), IDC_SHEETS);
    EXPECT_EQ(host.Tab(), IDC_LIST);
    EXPECT_EQ(host.Tab(true), IDC_SHEETS);
    EXPECT_EQ(host.Tab(true), IDC_SUMMARY);
    EXPECT_EQ(host.Tab(true), IDC_LIST);
}

} // namespace
} // namespace pmx::sample
