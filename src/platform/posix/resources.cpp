#include "platform/resources.h"

#include "platform/posix/code_page.h"
#include "platform/posix/res_file.h"
#include "res/embedded_resources.h"

#include <stdexcept>

namespace pmx {

namespace {

using posix::ResFile;
using posix::ResourceType;

/// The resources that are part of the program.
class EmbeddedResourceModule final : public Resources {
public:
    std::optional<std::string> StringOf(ResourceId id) const override {
        const std::optional<std::u16string> text = Compiled.StringOf(id);
        return text ? std::optional(posix::FromUtf16(*text)) : std::nullopt;
    }

    std::span<const std::byte> DialogTemplateOf(ResourceId id) const override {
        return Compiled.Find(ResourceType::Dialog, id);
    }

    std::span<const std::byte> BitmapOf(ResourceId id) const override {
        return Compiled.Find(ResourceType::Bitmap, id);
    }

private:
    static ResFile Read() {
        std::optional<ResFile> file = ResFile::Read(EmbeddedResources());
        if (!file) {
            throw std::runtime_error("the program's own resources are damaged");
        }
        return *std::move(file);
    }

    ResFile Compiled = Read();
};

} // namespace

Resources& SystemResources() {
    static EmbeddedResourceModule resources;
    return resources;
}

} // namespace pmx
