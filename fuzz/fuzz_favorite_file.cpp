#include "fuzzing.h"

#include "store/list_data.h"

#include "PMXTemplUI.h"

#include "docmgr/crc32.h"

#include <algorithm>
#include <cstdint>
#include <string>

#include <fuzzer/FuzzedDataProvider.h>

// Any favorite file: it is refused, or what is written for it reads back and is written as the same.

namespace pmx::fuzz {

namespace {

constexpr const char* Given = "given.pmt";
constexpr const char* Written = "written.pmt";

void AppendNumber(std::string& file, std::uint32_t number, int bytes) {
    for (; bytes > 0; --bytes, number >>= 8U) {
        file += static_cast<char>(number & 0xFFU);
    }
}

std::uint32_t ChecksumOf(const std::string& file) {
    return sample::Crc32({reinterpret_cast<const unsigned char*>(file.data()), file.size()});
}

/// A favorite file with a right checksum around parts of any kind; else the checks would end nearly every
/// run.
std::string FileAround(FuzzedDataProvider& input) {
    constexpr std::size_t LongestName = 270;
    const auto version =
        static_cast<std::uint32_t>(input.ConsumeBool() ? 1 : input.ConsumeIntegral<std::uint16_t>());
    const auto level = input.ConsumeIntegralInRange<std::uint32_t>(0, 110);
    const std::string name = input.ConsumeRandomLengthString(LongestName);
    std::string table = input.ConsumeRemainingBytesAsString();
    table.resize(PMX_TABLE_SIZE);
    std::string file("PMXF\r\n\x1A\n");
    AppendNumber(file, version, 2);
    AppendNumber(file, static_cast<std::uint32_t>(name.size()), 2);
    AppendNumber(file, level, 4);
    file += name + table;
    AppendNumber(file, ChecksumOf(file), 4);
    return file;
}

bool Load(CPMXTemplUIListData& record, const char* name) {
    Require(record.EnsureDocument(), "a favorite can hold a document");
    return record.LoadDocument(Folder().Path(name).c_str());
}

std::string Saved(CPMXTemplUIListData& record) {
    Require(record.SaveDocument(Folder().Path(Written).c_str()), "a document can be written");
    return Folder().Read(Written);
}

void Run(std::string_view file) {
    PutFile(Given, file);
    CPMXTemplUIListData record;
    if (!Load(record, Given)) {
        return;
    }
    const std::string saved = Saved(record);
    CPMXTemplUIListData again;
    Require(Load(again, Written), "what was written can be read");
    Require(Saved(again) == saved, "a document that was read and written again is the same");
}

} // namespace

} // namespace pmx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    pmx::fuzz::Run(input.ConsumeBool() ? pmx::fuzz::FileAround(input)
                                       : input.ConsumeRemainingBytesAsString());
    return 0;
}
