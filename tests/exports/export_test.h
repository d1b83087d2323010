#pragma once

#include "PMXTemplUI.h"
#include "host/CPmxDocument.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

// What the tests of the exports share. The library is called as a host calls it, with the sample host's
// libraries; nothing of its inside is used.
namespace pmx::exports_test {

inline constexpr const char* ListFile = "PmxTempleList.ini";

/// Closes a list handle.
struct HandleCloser {
    void operator()(void* handle) const { EXPECT_EQ(EX_DestroyTemplList(handle), 0); }
};
using ListHandle = std::unique_ptr<void, HandleCloser>;

/// The bytes of an attribute table, each of which tells its position and the seed.
std::vector<unsigned char> TableOf(unsigned char seed);

/// The part of a table that belongs to a level, 1 to 5.
std::vector<unsigned char> PartOf(const std::vector<unsigned char>& table, std::int32_t level);

/// Byte at which a level's part starts.
std::size_t StartOf(std::int32_t level);

/// A section of the list file with these values, numbered from 0.
std::string Section(const std::vector<std::string>& values);

class ExportTest : public testing::Test {
protected:
    ListHandle Open(const char* listFileName = nullptr, const char* extension = nullptr) const;

    /// Makes a favorite file through the host's document model.
    void WriteFavorite(std::string_view fileName, const std::vector<unsigned char>& table,
                       std::int32_t level = 1, const std::string& name = "name") const;

    /// A folder with user favorites of level 1 ("First", first.pmt, table 10) and 3 ("Second", second.pmt,
    /// table 20) and the standard favorites 3 and 7.
    void Fill() const;

    /// Every file of the folder with its bytes.
    std::map<std::string, std::string> Snapshot() const;

    /// The summaries of a level, in a buffer of the size that the library asks for.
    static std::vector<TemplInfo> Summaries(void* handle, std::int32_t level);

    /// The part of a favorite's table that belongs to a level; empty when it is refused.
    static std::vector<unsigned char> Part(void* handle, std::int64_t position, std::int32_t level);

    test::TempFolder Folder{"exports"};
};

} // namespace pmx::exports_test
