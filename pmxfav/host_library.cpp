#include "host_library.h"

#include "platform/dynamic_library.h"
#include "platform/text.h"

#include "host/PmxDocMgr.h"
#include "host/QrtCommon.h"

#include <memory>
#include <string_view>

// The host's functions, as the store calls them. Each passes on to the host's library, which is loaded when the tool runs,
// so that the tool works where there is no host.

namespace {

#ifdef _WIN32
constexpr const char* LibraryName = "PmxDocMgr.dll";
#else
constexpr const char* LibraryName = "PmxDocMgr.so";
#endif

template <typename Function>
Function Find(const pmx::DynamicLibrary* library, const char* name) {
    return library == nullptr ? nullptr : reinterpret_cast<Function>(library->Find(name));
}

/// The functions of the library that the tool needs.
struct Host {
    std::unique_ptr<pmx::DynamicLibrary> Library = pmx::SystemDynamicLibraries().LoadHostLibrary(LibraryName);
    decltype(&PmxDocumentCreate) Create = Find<decltype(Create)>(Library.get(), "PmxDocumentCreate");
    decltype(&PmxDocumentDestroy) Destroy = Find<decltype(Destroy)>(Library.get(), "PmxDocumentDestroy");
    decltype(&PmxDocumentAssign) Assign = Find<decltype(Assign)>(Library.get(), "PmxDocumentAssign");
    decltype(&PmxDocumentLoad) Load = Find<decltype(Load)>(Library.get(), "PmxDocumentLoad");
    decltype(&PmxDocumentSave) Save = Find<decltype(Save)>(Library.get(), "PmxDocumentSave");
    decltype(&PmxDocumentGetTemplateLevel) GetLevel =
        Find<decltype(GetLevel)>(Library.get(), "PmxDocumentGetTemplateLevel");
    decltype(&PmxDocumentSetTemplateLevel) SetLevel =
        Find<decltype(SetLevel)>(Library.get(), "PmxDocumentSetTemplateLevel");
    decltype(&PmxDocumentGetTable) GetTable = Find<decltype(GetTable)>(Library.get(), "PmxDocumentGetTable");
    decltype(&PmxDocumentSetTable) SetTable = Find<decltype(SetTable)>(Library.get(), "PmxDocumentSetTable");
    decltype(&PmxDocumentGetName) GetName = Find<decltype(GetName)>(Library.get(), "PmxDocumentGetName");
    decltype(&PmxDocumentSetName) SetName = Find<decltype(SetName)>(Library.get(), "PmxDocumentSetName");
    decltype(&PmxDocumentCmd2upDuplex) TwoUp =
        Find<decltype(TwoUp)>(Library.get(), "PmxDocumentCmd2upDuplex");
    decltype(&PmxDocumentCmdBookletSaddleStapler) Booklet =
        Find<decltype(Booklet)>(Library.get(), "PmxDocumentCmdBookletSaddleStapler");
    decltype(&PmxDocumentCmdDuplexUpperLeft) BothSides =
        Find<decltype(BothSides)>(Library.get(), "PmxDocumentCmdDuplexUpperLeft");

    bool IsWhole() const {
        return Create != nullptr && Destroy != nullptr && Assign != nullptr && Load != nullptr &&
               Save != nullptr && GetLevel != nullptr && SetLevel != nullptr && GetTable != nullptr &&
               SetTable != nullptr && GetName != nullptr && SetName != nullptr && TwoUp != nullptr &&
               Booklet != nullptr && BothSides != nullptr;
    }
};

/// Never unloaded: documents may live until the process ends.
const Host& TheHost() {
    static const Host& host = *new Host; // NOLINT(cppcoreguidelines-owning-memory)
    return host;
}

} // namespace

namespace pmx::tool {

bool HasHostLibrary() {
    return TheHost().IsWhole();
}

} // namespace pmx::tool

// There are no documents without the library, so only the first of these is called without it.

PmxDocument* PmxDocumentCreate() {
    return TheHost().IsWhole() ? TheHost().Create() : nullptr;
}

void PmxDocumentDestroy(PmxDocument* document) {
    TheHost().Destroy(document);
}

int32_t PmxDocumentAssign(PmxDocument* target, const PmxDocument* source) {
    return TheHost().Assign(target, source);
}

int32_t PmxDocumentLoad(PmxDocument* document, const char* path, const void* options) {
    return TheHost().Load(document, path, options);
}

int32_t PmxDocumentSave(PmxDocument* document, const char* path) {
    return TheHost().Save(document, path);
}

int32_t PmxDocumentGetTemplateLevel(const PmxDocument* document) {
    return TheHost().GetLevel(document);
}

void PmxDocumentSetTemplateLevel(PmxDocument* document, int32_t level) {
    TheHost().SetLevel(document, level);
}

void PmxDocumentGetTable(const PmxDocument* document, void* table) {
    TheHost().GetTable(document, table);
}

int32_t PmxDocumentSetTable(PmxDocument* document, const void* table, int32_t flag) {
    return TheHost().SetTable(document, table, flag);
}

const char* PmxDocumentGetName(const PmxDocument* document) {
    return TheHost().GetName(document);
}

int32_t PmxDocumentSetName(PmxDocument* document, const char* name) {
    return TheHost().SetName(document, name);
}

void PmxDocumentCmd2upDuplex(PmxDocument* document) {
    TheHost().TwoUp(document);
}

void PmxDocumentCmdBookletSaddleStapler(PmxDocument* document) {
    TheHost().Booklet(document);
}

void PmxDocumentCmdDuplexUpperLeft(PmxDocument* document) {
    TheHost().BothSides(document);
}

/// The host's rule, built in: without it the store would make other file names.
int32_t CheckFileName(const char* name) {
    constexpr std::string_view Forbidden = "\\/:*?\"<>|";
    const std::string_view text = name;
    for (std::size_t position = 0; position < text.size();
         position += pmx::CharacterLength(text, position, pmx::SystemLeadBytes())) {
        if (Forbidden.find(text[position]) != std::string_view::npos) {
            return 0;
        }
    }
    return text.empty() ? 0 : 1;
}
