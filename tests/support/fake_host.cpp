#include "support/fake_host.h"

#include "host/QrtCommon.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>

struct PmxDocument {
    pmx::test::HostContent Content;
};

namespace pmx::test {

namespace {

FakeHost* Current = nullptr;

FakeHost& Host() {
    if (Current == nullptr) {
        throw std::logic_error("the test needs a FakeHost");
    }
    return *Current;
}

/// Counts a call; true when it is to be refused. Raises when it is to raise.
bool IsRefused(HostCall call) {
    const std::optional<HostFailure> failure = Host().Plan.Next(call);
    if (failure == HostFailure::Raise) {
        Host().RaiseError();
    }
    return failure.has_value();
}

constexpr std::string_view Magic = "FAKE FAVORITE\n";

std::string Serialise(const HostContent& content) {
    std::string bytes(Magic);
    bytes += std::to_string(content.Level) + '\n' + content.Name + '\n';
    bytes.append(reinterpret_cast<const char*>(content.Table.Bytes), sizeof content.Table.Bytes);
    return bytes;
}

std::optional<HostContent> Parse(const std::string& bytes) {
    const std::size_t level = Magic.size();
    const std::size_t name = bytes.find('\n', level) + 1;
    const std::size_t table = bytes.find('\n', name) + 1;
    HostContent content;
    if (bytes.compare(0, level, Magic) != 0 || name == 0 || table == 0 ||
        bytes.size() != table + sizeof content.Table.Bytes) {
        return std::nullopt;
    }
    content.Level = std::stoi(bytes.substr(level));
    content.Name = bytes.substr(name, table - name - 1);
    std::memcpy(content.Table.Bytes, bytes.data() + table, sizeof content.Table.Bytes);
    return content;
}

std::optional<HostContent> ReadFile(const std::string& path) {
    std::ifstream file(DiskPath(path), std::ios::binary);
    if (!file) {
        return std::nullopt;
    }
    return Parse({std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()});
}

// The system's own streams, which need no operator new once the file is emptied, and so no owner's class.
// NOLINTBEGIN(cppcoreguidelines-owning-memory)
std::FILE* OpenedToWrite(const std::filesystem::path& path) {
#ifdef _WIN32
    return _wfopen(path.c_str(), L"wb");
#else
    return std::fopen(path.c_str(), "wb");
#endif
}

bool WriteFile(const std::string& path, const HostContent& content) {
    const std::string bytes = Serialise(content);
    std::FILE* const file = OpenedToWrite(DiskPath(path));
    if (file == nullptr) {
        return false;
    }
    const bool isWritten = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    return std::fclose(file) == 0 && isWritten;
}
// NOLINTEND(cppcoreguidelines-owning-memory)

void ApplyCommand(PmxDocument* document, unsigned char seed) {
    IsRefused(HostCall::Command);
    document->Content.Table = TableOf(seed);
}

bool IsLeadByte(unsigned char byte) {
    return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

bool HasForbiddenCharacter(std::string_view name) {
    for (std::size_t position = 0; position < name.size(); ++position) {
        if (IsLeadByte(static_cast<unsigned char>(name[position]))) {
            ++position;
        } else if (std::string_view("\\/:*?\"<>|").find(name[position]) != std::string_view::npos) {
            return true;
        }
    }
    return false;
}

} // namespace

_LM_DOCUMENTLAYOUTTABLE TableOf(unsigned char seed) {
    _LM_DOCUMENTLAYOUTTABLE table{};
    for (std::size_t position = 0; position < sizeof table.Bytes; ++position) {
        table.Bytes[position] = static_cast<unsigned char>(position * 31 + position / 256 + seed);
    }
    return table;
}

bool SameTable(const _LM_DOCUMENTLAYOUTTABLE& left, const _LM_DOCUMENTLAYOUTTABLE& right) {
    return std::equal(std::begin(left.Bytes), std::end(left.Bytes), std::begin(right.Bytes));
}

FakeHost::FakeHost() {
    if (Current != nullptr) {
        throw std::logic_error("there is a FakeHost already");
    }
    Current = this;
}

FakeHost::~FakeHost() {
    Current = nullptr;
}

void FakeHost::WriteFavorite(const TempFolder& folder, std::string_view fileName,
                             const HostContent& content) {
    folder.Write(fileName, Serialise(content));
}

HostContent FakeHost::ReadFavorite(const TempFolder& folder, std::string_view fileName) {
    const std::optional<HostContent> content = Parse(folder.Read(fileName));
    if (!content) {
        throw std::runtime_error("no favorite file");
    }
    return *content;
}

HostContent FakeHost::ContentOf(const CPmxDocument& document) {
    HostContent content;
    document.GetTable(content.Table);
    content.Level = document.GetTemplateLevel();
    content.Name = document.GetName();
    return content;
}

} // namespace pmx::test

using pmx::test::Host;
using pmx::test::HostCall;
using pmx::test::IsRefused;

extern "C" {

PmxDocument* PmxDocumentCreate(void) {
    if (IsRefused(HostCall::Create)) {
        return nullptr;
    }
    auto document = std::make_unique<PmxDocument>();
    document->Content.Table = pmx::test::TableOf(pmx::test::FreshSeed);
    ++Host().LiveDocuments;
    return document.release();
}

void PmxDocumentDestroy(PmxDocument* document) {
    const std::unique_ptr<PmxDocument> owner(document);
    if (document != nullptr) {
        --Host().LiveDocuments;
        IsRefused(HostCall::Destroy);
    }
}

int32_t PmxDocumentAssign(PmxDocument* target, const PmxDocument* source) {
    if (IsRefused(HostCall::Assign)) {
        return 0;
    }
    target->Content = source->Content;
    return 1;
}

int32_t PmxDocumentLoad(PmxDocument* document, const char* path, const void* options) {
    Host().LoadedPaths.emplace_back(path);
    Host().LoadOptionsWereNull = options == nullptr;
    if (IsRefused(HostCall::Load)) {
        return 0;
    }
    const auto content = pmx::test::ReadFile(path);
    if (!content) {
        return 0;
    }
    document->Content = *content;
    return 1;
}

int32_t PmxDocumentSave(PmxDocument* document, const char* path) {
    Host().SavedPaths.emplace_back(path);
    return !IsRefused(HostCall::Save) && pmx::test::WriteFile(path, document->Content) ? 1 : 0;
}

int32_t PmxDocumentGetTemplateLevel(const PmxDocument* document) {
    return document->Content.Level;
}

void PmxDocumentSetTemplateLevel(PmxDocument* document, int32_t level) {
    IsRefused(HostCall::SetLevel);
    document->Content.Level = level;
}

void PmxDocumentGetTable(const PmxDocument* document, void* table) {
    IsRefused(HostCall::GetTable);
    std::memcpy(table, document->Content.Table.Bytes, sizeof document->Content.Table.Bytes);
}

int32_t PmxDocumentSetTable(PmxDocument* document, const void* table, int32_t flag) {
    Host().SetTableFlag = flag;
    if (IsRefused(HostCall::SetTable)) {
        return 0;
    }
    std::memcpy(document->Content.Table.Bytes, table, sizeof document->Content.Table.Bytes);
    return 1;
}

const char* PmxDocumentGetName(const PmxDocument* document) {
    return document->Content.Name.c_str();
}

int32_t PmxDocumentSetName(PmxDocument* document, const char* name) {
    if (IsRefused(HostCall::SetName)) {
        return 0;
    }
    document->Content.Name = name;
    return 1;
}

void PmxDocumentCmd2upDuplex(PmxDocument* document) {
    pmx::test::ApplyCommand(document, pmx::test::TwoUpDuplexSeed);
}

void PmxDocumentCmdBookletSaddleStapler(PmxDocument* document) {
    pmx::test::ApplyCommand(document, pmx::test::BookletSeed);
}

void PmxDocumentCmdDuplexUpperLeft(PmxDocument* document) {
    pmx::test::ApplyCommand(document, pmx::test::UpperLeftSeed);
}

int32_t CheckFileName(const char* name) {
    if (IsRefused(HostCall::CheckFileName)) {
        return 0;
    }
    const bool accepted =
        Host().AcceptEveryFileName || (*name != '\0' && !pmx::test::HasForbiddenCharacter(name));
    return accepted ? 1 : 0;
}

} // extern "C"
