#include "support/built_resources.h"

#include "platform/posix/code_page.h"
#include "platform/posix/res_file.h"

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <vector>

namespace pmx::test {

namespace {

std::vector<std::byte> Content(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
    const auto content = std::as_bytes(std::span(bytes));
    return {content.begin(), content.end()};
}

class CompiledResources final : public BuiltResources {
public:
    explicit CompiledResources(const std::string& name)
        : Bytes(Content(PMX_BINARY_FOLDER "/res/" + name)), File(posix::ResFile::Read(Bytes)) {
        if (!File) {
            throw std::runtime_error("no compiled resources: build pmx_resources_res to get " + name);
        }
    }

    std::optional<std::u16string> StringOf(int id) const override { return File->StringOf(id); }

    std::span<const std::byte> Find(ResourceKind kind, int id) const override {
        return File->Find(static_cast<posix::ResourceType>(kind), id);
    }

private:
    std::vector<std::byte> Bytes;
    std::optional<posix::ResFile> File;
};

} // namespace

const BuiltResources& BuiltResources::Of(Language language) {
    if (language == Language::Japanese) {
        static const CompiledResources Japanese("PMXTemplUI.res");
        return Japanese;
    }
    static const CompiledResources English("PMXTemplUIENU.res");
    return English;
}

bool HasShiftJisCode(std::u16string_view text) {
    return posix::ToUtf16(posix::FromUtf16(text)) == text;
}

} // namespace pmx::test
