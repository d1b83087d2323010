#include "support/editor_test.h"
#include "support/holding_process.h"

#include <optional>

// A list that another process holds for longer than anybody waits, in the real editor. Only the clock is not
// real.

namespace pmx {
namespace {

using test::DialogUser;
using test::HoldingProcess;
using Names = std::vector<std::string>;

class EditorWithHeldList : public test::EditorTestOn<test::RealDesktop> {};

TEST_F(EditorWithHeldList, IsAcceptedAndLosesNothing) {
    Given({{.Name = "A"}, {.Name = "B"}});
    const std::string before = Folder.Read(test::ListFile);
    std::optional<HoldingProcess> other;
    RunAndAccept([&](DialogUser& user) {
        user.Press(control::EditorDelete);
        other.emplace(Folder.Path(test::ListFile));
    });
    EXPECT_EQ(Store.Clock.Total(), 28'000U);
    other->Release();
    EXPECT_EQ(Folder.Read(test::ListFile), before);
    EXPECT_EQ(Folder.Names(), (Names{"F0.pmt", "F1.pmt", test::ListFile}));

    RunAndAccept([](DialogUser& user) { user.Press(control::EditorDelete); });
    EXPECT_EQ(ListedNames(), Names{"B"});
    EXPECT_EQ(Folder.Names(), (Names{"F1.pmt", test::ListFile}));
}

} // namespace
} // namespace pmx
