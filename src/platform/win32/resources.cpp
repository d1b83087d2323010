#include "platform/resources.h"

#include "platform/win32/handles.h"
#include "platform/win32/wide_text.h"

#include <string_view>

namespace pmx {

namespace {

std::span<const std::byte> DataOf(ResourceId id, LPCWSTR type) {
    const HMODULE module = win32::ResourceModuleInUse();
    const HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(id), type);
    if (!resource) {
        return {};
    }
    // Resources are part of the mapped module: there is nothing to release.
    const HGLOBAL loaded = LoadResource(module, resource);
    const void* data = loaded ? LockResource(loaded) : nullptr;
    return {static_cast<const std::byte*>(data), data ? SizeofResource(module, resource) : 0};
}

class ModuleResources final : public Resources {
public:
    std::optional<std::string> StringOf(ResourceId id) const override {
        const wchar_t* text =
            nullptr; // with no buffer size, the call gives the place of the text in the module
        const int length = LoadStringW(win32::ResourceModuleInUse(), static_cast<UINT>(id),
                                       reinterpret_cast<wchar_t*>(&text), 0);
        if (length <= 0) {
            return std::nullopt;
        }
        return win32::ToNarrow(std::wstring_view(text, static_cast<std::size_t>(length)));
    }

    std::span<const std::byte> DialogTemplateOf(ResourceId id) const override {
        return DataOf(id, MAKEINTRESOURCEW(5)); // RT_DIALOG, which depends on UNICODE
    }

    std::span<const std::byte> BitmapOf(ResourceId id) const override {
        return DataOf(id, MAKEINTRESOURCEW(2)); // RT_BITMAP
    }
};

} // namespace

Resources& SystemResources() {
    static ModuleResources resources;
    return resources;
}

} // namespace pmx
