#include "fuzzing.h"

#include "PMXTemplUI.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>

#include <fuzzer/FuzzedDataProvider.h>

// Any folder and any arguments at the exports that show nothing: each gives one of its results, writes only
// into the buffer that it was given, and not at all when it fails.

namespace pmx::fuzz {

namespace {

constexpr const char* ListFile = "PmxTempleList.ini";
constexpr const char* FavoriteFile = "a.pmt";
constexpr std::size_t LargestBuffer = 9000;
constexpr std::size_t MostCalls = 12;
constexpr char Untouched = '\x5A';

struct CloseList {
    void operator()(void* list) const { Require(EX_DestroyTemplList(list) == 0, "a list can be closed"); }
};
using List = std::unique_ptr<void, CloseList>;

void Fill(const GuardedBuffer& buffer) {
    std::fill_n(buffer.Data(), buffer.Size(), Untouched);
}

void RequireUntouched(const GuardedBuffer& buffer) {
    Require(
        std::all_of(buffer.View().begin(), buffer.View().end(), [](char byte) { return byte == Untouched; }),
        "a call that fails leaves the buffer alone");
}

void CopyAll(FuzzedDataProvider& input, void* list) {
    const auto level = input.ConsumeIntegral<std::int32_t>();
    const std::int64_t size = EX_GetTemplListSize(list, level);
    Require(size >= 0 && size % static_cast<std::int64_t>(sizeof(TemplInfo)) == 0, "whole summaries");
    const GuardedBuffer buffer(static_cast<std::size_t>(size));
    std::int64_t count = -1;
    const std::int64_t result = EX_GetAllTemplInfo(list, level, buffer.Data(), size, &count);
    Require(result != 0 || count * static_cast<std::int64_t>(sizeof(TemplInfo)) == size,
            "as many summaries as there is room for");
}

void CopyPart(FuzzedDataProvider& input, void* list) {
    const GuardedBuffer buffer(input.ConsumeIntegralInRange<std::size_t>(0, LargestBuffer));
    Fill(buffer);
    const auto position = input.ConsumeBool() ? input.ConsumeIntegralInRange<std::int64_t>(-2, 8)
                                              : input.ConsumeIntegral<std::int64_t>();
    const auto part = input.ConsumeBool() ? input.ConsumeIntegralInRange<std::int32_t>(0, 6)
                                          : input.ConsumeIntegral<std::int32_t>();
    const std::int64_t result =
        EX_CurTemplInfo(list, position, part, buffer.Data(), static_cast<std::int64_t>(buffer.Size()));
    Require(result == 0 || result == -1, "one of the results");
    if (result != 0) {
        RequireUntouched(buffer);
    }
}

void CopyWholePart(FuzzedDataProvider& input, void* list) {
    constexpr std::int64_t Starts[] = {PMX_TABLE_DOCUMENT_START, PMX_TABLE_SECTION_START,
                                       PMX_TABLE_SHEET_START, PMX_TABLE_FACE_START, PMX_TABLE_PAGE_START};
    const auto part = input.ConsumeIntegralInRange<std::int32_t>(1, 5);
    const GuardedBuffer buffer(static_cast<std::size_t>(PMX_TABLE_SIZE - Starts[part - 1]));
    EX_CurTemplInfo(list, input.ConsumeIntegralInRange<std::int64_t>(0, 4), part, buffer.Data(),
                    static_cast<std::int64_t>(buffer.Size()));
}

void AddStandard(FuzzedDataProvider& input, void* list) {
    const std::string name = input.ConsumeRandomLengthString(300);
    const auto number = input.ConsumeIntegral<std::int64_t>();
    const auto icon = input.ConsumeIntegral<std::int64_t>();
    const std::int64_t result = input.ConsumeBool()
                                    ? EX_CreateDefaultTempl(list, name.c_str(), number, icon)
                                    : EX_CreateDefaultChoice(list, name.c_str(), number, icon);
    Require(result == 0 || result == -1, "one of the results");
}

void Convert(FuzzedDataProvider& input) {
    const std::string name = input.ConsumeRandomLengthString(300);
    const std::string folder = input.ConsumeBool() ? Folder().Path() : input.ConsumeRandomLengthString(600);
    const std::string listFile = input.ConsumeBool() ? ListFile : input.ConsumeRandomLengthString(300);
    const std::string extension = input.ConsumeRandomLengthString(20);
    const auto level = input.ConsumeBool() ? input.ConsumeIntegralInRange<std::int32_t>(0, 6)
                                           : input.ConsumeIntegral<std::int32_t>();
    const GuardedBuffer buffer(PMX_TABLE_SIZE);
    Fill(buffer);
    const std::int64_t result = EX_ConvertChoiceData(name.c_str(), folder.c_str(), listFile.c_str(),
                                                     extension.c_str(), buffer.Data(), level);
    Require(result == 0 || result == -1, "one of the results");
    if (result != 0) {
        RequireUntouched(buffer);
    }
}

void Call(FuzzedDataProvider& input, void* list) {
    switch (input.ConsumeIntegralInRange(0, 4)) {
    case 0:
        return CopyAll(input, list);
    case 1:
        return CopyPart(input, list);
    case 2:
        return CopyWholePart(input, list);
    case 3:
        return AddStandard(input, list);
    default:
        return Convert(input);
    }
}

void Run(FuzzedDataProvider& input) {
    PutFile(FavoriteFile, input.ConsumeRandomLengthString(500));
    PutFile(ListFile, input.ConsumeRandomLengthString(2000));
    const List list(EX_CreateTemplList(Folder().Path().c_str(), nullptr, nullptr));
    Require(list != nullptr, "a folder can be opened, whatever is in it");
    for (std::size_t call = 0; call < MostCalls && input.remaining_bytes() > 0; ++call) {
        Call(input, list.get());
    }
}

} // namespace

} // namespace pmx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    pmx::fuzz::Run(input);
    return 0;
}
