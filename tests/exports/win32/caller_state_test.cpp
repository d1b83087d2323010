// The state of the calling thread, which every export restores.
#include "exports/export_test.h"
#include "exports/win32/control_ids.h"
#include "exports/win32/open_dialog.h"

#include <functional>

#include <windows.h>

namespace pmx::exports_test {
namespace {

/// The activation context of the calling thread. Not owning.
HANDLE CurrentContext() {
    HANDLE context = nullptr;
    EXPECT_TRUE(GetCurrentActCtx(&context));
    if (context != nullptr) {
        ReleaseActCtx(context);
    }
    return context;
}

/// An activation context of the host's own, current as long as this object lives.
class HostContext {
public:
    HostContext() {
        ACTCTXW request{};
        request.cbSize = sizeof request;
        request.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
        request.hModule = GetModuleHandleW(L"PMXTemplUI.dll");
        request.lpResourceName = MAKEINTRESOURCEW(2);
        Context = CreateActCtxW(&request);
        EXPECT_NE(Context, INVALID_HANDLE_VALUE);
        EXPECT_TRUE(ActivateActCtx(Context, &Cookie));
    }
    ~HostContext() {
        EXPECT_TRUE(DeactivateActCtx(0, Cookie)) << "somebody left another context above the host's";
        ReleaseActCtx(Context);
    }
    HostContext(const HostContext&) = delete;
    HostContext& operator=(const HostContext&) = delete;

    HANDLE Get() const { return Context; }

private:
    HANDLE Context = nullptr;
    ULONG_PTR Cookie = 0;
};

class CallerStateTest : public ExportTest {
protected:
    CallerStateTest() { Fill(); }

    /// Calls all twelve exports, successfully where that shows nothing, and with refused arguments.
    void ForEachExport(const std::function<void(const char*)>& check) {
        unsigned char buffer[PMX_TABLE_SIZE];
        std::int64_t count = 0;
        TemplInfo summaries[8];
        void* const handle = EX_CreateTemplList(Folder.Path().c_str(), nullptr, nullptr);
        check("EX_CreateTemplList");
        EXPECT_EQ(EX_CreateTemplList(nullptr, nullptr, nullptr), nullptr);
        check("EX_CreateTemplList, refused");
        EXPECT_EQ(EX_GetTemplListSize(handle, 1), 548);
        check("EX_GetTemplListSize");
        EXPECT_EQ(EX_GetAllTemplInfo(handle, 1, summaries, sizeof summaries, &count), 0);
        check("EX_GetAllTemplInfo");
        EXPECT_EQ(EX_CurTemplInfo(handle, 0, 1, buffer, sizeof buffer), 0);
        check("EX_CurTemplInfo");
        EXPECT_EQ(EX_CurTemplInfo(handle, 77, 1, buffer, sizeof buffer), -1);
        check("EX_CurTemplInfo, refused");
        EXPECT_EQ(EX_CreateDefaultTempl(handle, "a", 1, 1), 0);
        check("EX_CreateDefaultTempl");
        EXPECT_EQ(EX_CreateDefaultChoice(handle, "b", 1, 1), 0);
        check("EX_CreateDefaultChoice");
        EXPECT_EQ(EX_ConvertChoiceData("First", Folder.Path().c_str(), ListFile, ".pmt", buffer, 1), 0);
        check("EX_ConvertChoiceData");
        ForEachRefusedDialog(handle, check);
        ForEachDialog(handle, check);
        EXPECT_EQ(EX_DestroyTemplList(handle), 0);
        check("EX_DestroyTemplList");
    }

    static void ForEachRefusedDialog(void* handle, const std::function<void(const char*)>& check) {
        const unsigned char table[PMX_TABLE_SIZE]{};
        EXPECT_EQ(EX_SaveAsTemplInfo(handle, 1, nullptr, table, PMX_TABLE_SIZE, nullptr), -1);
        check("EX_SaveAsTemplInfo, refused");
        EXPECT_EQ(EX_ShowTemplateUI("", nullptr), -1);
        check("EX_ShowTemplateUI, refused");
        EXPECT_EQ(EX_ShowChoiceUIEntry("", "", "", table, 1, nullptr), -1);
        check("EX_ShowChoiceUIEntry, refused");
        EXPECT_EQ(EX_ShowChoiceUIBasic("", "", "", nullptr), -1);
        check("EX_ShowChoiceUIBasic, refused");
    }

    void ForEachDialog(void* handle, const std::function<void(const char*)>& check) {
        const unsigned char table[PMX_TABLE_SIZE]{};
        const auto cancelled = [&](const char* name, const std::function<std::int64_t()>& call) {
            EXPECT_EQ(CallWithDialog(call, [](const OpenDialog& dialog) { dialog.Press(CancelButton); }), 1)
                << name;
            check(name);
        };
        TemplInfo info{};
        const std::string& folder = Folder.Path();
        cancelled("EX_SaveAsTemplInfo",
                  [&] { return EX_SaveAsTemplInfo(handle, 1, &info, table, PMX_TABLE_SIZE, nullptr); });
        cancelled("EX_ShowTemplateUI", [&] { return EX_ShowTemplateUI(folder.c_str(), nullptr); });
        cancelled("EX_ShowChoiceUIEntry",
                  [&] { return EX_ShowChoiceUIEntry(folder.c_str(), ListFile, ".pmt", table, 1, nullptr); });
        cancelled("EX_ShowChoiceUIBasic",
                  [&] { return EX_ShowChoiceUIBasic(folder.c_str(), ListFile, ".pmt", nullptr); });
    }
};

TEST_F(CallerStateTest, AHostWithoutAContextHasNoneAfterwards) {
    const HANDLE before = CurrentContext();
    ForEachExport([before](const char* name) { EXPECT_EQ(CurrentContext(), before) << name; });
}

TEST_F(CallerStateTest, AHostsContextIsCurrentAgainAfterwards) {
    const HostContext host;
    ForEachExport([&host](const char* name) { EXPECT_EQ(CurrentContext(), host.Get()) << name; });
}

} // namespace
} // namespace pmx::exports_test
