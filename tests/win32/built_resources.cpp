#include "support/built_resources.h"
#include "win32/support/module.h"

#include <stdexcept>

namespace pmx::test {

namespace {

/// A library loaded for its resources alone: its code does not run and the libraries that it needs are not
/// loaded.
class LibraryResources final : public BuiltResources {
public:
    explicit LibraryResources(const char* name)
        : Library(LoadLibraryExA(name, nullptr, LOAD_LIBRARY_AS_DATAFILE)) {
        if (!Library) {
            throw std::runtime_error(std::string("not beside the test program: ") + name);
        }
    }

    std::optional<std::u16string> StringOf(int id) const override {
        const wchar_t* text =
            nullptr; // with a size of 0 the call gives the text in the module, not terminated
        const int length =
            LoadStringW(Library.get(), static_cast<UINT>(id), reinterpret_cast<wchar_t*>(&text), 0);
        if (length <= 0) {
            return std::nullopt;
        }
        return std::u16string(text, text + length);
    }

    std::span<const std::byte> Find(ResourceKind kind, int id) const override {
        const HRSRC found =
            FindResourceW(Library.get(), MAKEINTRESOURCEW(id), MAKEINTRESOURCEW(static_cast<WORD>(kind)));
        if (found == nullptr) {
            return {};
        }
        const void* data = LockResource(LoadResource(Library.get(), found));
        return {static_cast<const std::byte*>(data), SizeofResource(Library.get(), found)};
    }

private:
    Module Library;
};

} // namespace

const BuiltResources& BuiltResources::Of(Language language) {
    if (language == Language::Japanese) {
        static const LibraryResources Japanese("PMXTemplUI.dll");
        return Japanese;
    }
    static const LibraryResources English("PMXTemplUIENU.dll");
    return English;
}

bool HasShiftJisCode(std::u16string_view text) {
    constexpr UINT ShiftJis = 932;
    const std::wstring wide(text.begin(), text.end());
    BOOL replaced = FALSE;
    const int size = WideCharToMultiByte(ShiftJis, WC_NO_BEST_FIT_CHARS, wide.data(),
                                         static_cast<int>(wide.size()), nullptr, 0, nullptr, &replaced);
    return size > 0 && replaced == FALSE;
}

} // namespace pmx::test
