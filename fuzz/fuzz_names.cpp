#include "fuzzing.h"

#include "store/favorite_files.h"
#include "store/list_data_array.h"
#include "store/list_file.h"

#include <cstdint>
#include <string>

// Any text as a name: the functions on names and file names keep their promises, and split no character.

namespace pmx::fuzz {

namespace {

constexpr std::string_view Forbidden = "\\/:*?\"<>|";

bool IsBoundary(std::string_view text, std::size_t place) {
    const LeadByteTable& leadBytes = SystemLeadBytes();
    std::size_t position = 0;
    while (position < place) {
        position += CharacterLength(text, position, leadBytes);
    }
    return position == place;
}

void CheckCutting(std::string_view text) {
    const LeadByteTable& leadBytes = SystemLeadBytes();
    for (const std::size_t limit : {std::size_t{0}, std::size_t{1}, std::size_t{32}, text.size()}) {
        const std::size_t length = LengthWithin(text, limit, leadBytes);
        Require(length <= limit && length <= text.size(), "a cut text is within its limit");
        Require(IsBoundary(text, length), "a cut splits no character");
    }
}

void CheckTrimming(std::string_view text) {
    const std::string_view trimmed = Trimmed(text, SystemLeadBytes());
    Require(trimmed.size() <= text.size() && Trimmed(trimmed, SystemLeadBytes()) == trimmed,
            "a trimmed text stays as it is");
}

void CheckFileName(const std::string& name) {
    const LeadByteTable& leadBytes = SystemLeadBytes();
    const std::string safe = SanitizeFileName(name);
    Require(safe.size() == name.size(), "a safe name is as long as the name");
    for (const char letter : Forbidden) {
        Require(FindSingleByte(safe, letter, leadBytes) == std::string_view::npos,
                "a safe name has no forbidden character");
    }
    CPMXTemplUIListDataArray list(nullptr, nullptr, SystemStoreServices());
    Require(list.SetFolder(Folder().Path().c_str()), "the folder can be used");
    if (const auto fileName = list.MakeFileName(name)) {
        Require(!SystemFiles().Exists(Folder().Path(*fileName)), "a new file name is not in use");
    }
}

void CheckPath(const std::string& fileName) {
    CPMXTemplUIListDataArray list(nullptr, nullptr, SystemStoreServices());
    Require(list.SetFolder(Folder().Path().c_str()), "the folder can be used");
    CPMXTemplUIListData record;
    record.SetFileName(fileName);
    if (const auto path = list.FavoritePath(record)) {
        Require(*path == Folder().Path() + fileName, "a favorite's file is in the folder");
        Require(fileName.find('/') == std::string::npos && fileName != "." && fileName != "..",
                "a favorite's file is not outside");
    }
}

void Run(const std::string& text) {
    CheckCutting(text);
    CheckTrimming(text);
    CheckFileName(text.substr(0, text.find('\0')));
    CheckPath(text);
    Require(EqualIgnoringCase(text, text, SystemLeadBytes()), "a text equals itself");
    LeadingNumber(text);
    if (const auto record = ParseListValue(text, SystemLeadBytes())) {
        Require(ParseListValue(FormatListValue(*record), SystemLeadBytes()) != nullptr,
                "a favorite that is written can be read");
    }
}

} // namespace

} // namespace pmx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    pmx::fuzz::Run({reinterpret_cast<const char*>(data), size});
    return 0;
}
