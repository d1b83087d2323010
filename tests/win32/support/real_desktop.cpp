#include "win32/support/real_desktop.h"

#include <gtest/gtest.h>

namespace pmx::test {

RealDialogs::~RealDialogs() {
    for (const auto& script : Scripts) {
        ADD_FAILURE() << "this dialog did not open: " << script.first;
    }
}

std::optional<int> RealDialogs::Run(ResourceId dialogTemplate, WindowHandle parent, DialogEvents& events) {
    if (Scripts.empty() || Scripts.front().first != dialogTemplate) {
        ADD_FAILURE() << "dialog " << dialogTemplate << " was opened, which the test did not foresee";
        return std::nullopt;
    }
    Script script = std::move(Scripts.front().second);
    Scripts.pop_front();
    return Driver.Run(dialogTemplate, parent, events, std::move(script));
}

RealDesktop::RealDesktop()
    : TestDesktop(SystemResources(), Dialogs, SystemImageLists()),
      HostWindow(CreateWindowExW(0, L"Static", L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 240, 160,
                                 nullptr, nullptr, GetModuleHandleW(nullptr), nullptr)) {
    Messages.Show = [this](const Message& message, MessageAnswer planned,
                           const std::function<void()>& meanwhile) {
        return Driver.Ask(message, planned, meanwhile);
    };
    SetForegroundWindow(HostWindow);
}

RealDesktop::~RealDesktop() {
    DestroyWindow(HostWindow);
}

} // namespace pmx::test
