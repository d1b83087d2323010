#include "fuzzing.h"

#include "platform/text.h"
#include "store/list_data_array.h"

#include <cstdint>
#include <string>

// Any list file: it is read, and what is written for it reads back as the same list. One that loses characters when it
// is decoded stays as it is.

namespace pmx::fuzz {

namespace {

constexpr const char* ListFile = "PmxTempleList.ini";
constexpr std::size_t ShortestEntry = std::string_view("TemplateData0=0~a~1~0~0~b").size();

void Load(CPMXTemplUIListDataArray& list) {
    Require(list.SetFolder(Folder().Path().c_str()) && list.LoadList(), "a list file can be read");
}

void RequireWholeRecords(const CPMXTemplUIListDataArray& list) {
    for (std::int64_t index = 0; index < list.GetSize(); ++index) {
        const CPMXTemplUIListData& record = list.At(index);
        Require(!record.GetName().empty() && !record.GetFileName().empty(),
                "every favorite has a name and a file");
    }
}

std::string SavedAndRead() {
    CPMXTemplUIListDataArray list(nullptr, nullptr, SystemStoreServices());
    Load(list);
    RequireWholeRecords(list);
    Require(list.WriteListFile(), "a list can be written");
    return Folder().Read(ListFile);
}

void Run(std::string_view file) {
    PutFile(ListFile, file);
    CPMXTemplUIListDataArray list(nullptr, nullptr, SystemStoreServices());
    Load(list);
    Require(static_cast<std::size_t>(list.GetSize()) <= file.size() / ShortestEntry + 1,
            "no more favorites than the file has room for");
    if (!DecodeContent(std::string(file)).IsWhole) {
        Require(!list.WriteListFile() && Folder().Read(ListFile) == file, "what was not read whole stays");
        return;
    }
    // What the first saving drops (blanks at the ends, for instance) is gone; from then on nothing changes.
    SavedAndRead();
    const std::string settled = SavedAndRead();
    Require(SavedAndRead() == settled, "a list that was read and written again is the same");
}

} // namespace

} // namespace pmx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    pmx::fuzz::Run({reinterpret_cast<const char*>(data), size});
    return 0;
}
