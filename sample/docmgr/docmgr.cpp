// The functions of PmxDocMgr.h. None lets a C++ exception out: lack of memory is a failure result.
#include "host/PmxDocMgr.h"

#include "common/files.h"
#include "docmgr/attribute_table.h"
#include "docmgr/favorite_file.h"

#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

using namespace pmx::sample;

struct PmxDocument {
    FavoriteContent Content;
};

namespace {

template <typename Action>
int32_t Succeeds(Action action) noexcept {
    try {
        return action() ? 1 : 0;
    } catch (const std::bad_alloc&) {
        return 0;
    }
}

} // namespace

PmxDocument* PmxDocumentCreate(void) {
    std::unique_ptr<PmxDocument> document;
    Succeeds([&] {
        document = std::make_unique<PmxDocument>();
        return true;
    });
    return document.release();
}

void PmxDocumentDestroy(PmxDocument* document) {
    const std::unique_ptr<PmxDocument> owner(document);
}

int32_t PmxDocumentAssign(PmxDocument* target, const PmxDocument* source) {
    return Succeeds([&] {
        FavoriteContent copy = source->Content;
        std::swap(target->Content, copy);
        return true;
    });
}

int32_t PmxDocumentLoad(PmxDocument* document, const char* path, const void* /*options*/) {
    return Succeeds([&] {
        const auto bytes = ReadWholeFile(path, MaxFavoriteSize);
        auto content = bytes ? Decode(*bytes) : std::nullopt;
        if (!content) {
            return false;
        }
        document->Content = std::move(*content);
        return true;
    });
}

int32_t PmxDocumentSave(PmxDocument* document, const char* path) {
    return Succeeds(
        [&] { return IsStorable(document->Content) && ReplaceWholeFile(path, Encode(document->Content)); });
}

int32_t PmxDocumentGetTemplateLevel(const PmxDocument* document) {
    return document->Content.Level;
}

void PmxDocumentSetTemplateLevel(PmxDocument* document, int32_t level) {
    document->Content.Level = level;
}

void PmxDocumentGetTable(const PmxDocument* document, void* table) {
    std::memcpy(table, &document->Content.Table, TableSize);
}

int32_t PmxDocumentSetTable(PmxDocument* document, const void* table, int32_t /*flag*/) {
    // Any content is taken over: settings of a newer version than this one survive being passed through it.
    std::memcpy(&document->Content.Table, table, TableSize);
    return 1;
}

const char* PmxDocumentGetName(const PmxDocument* document) {
    return document->Content.Name.c_str();
}

int32_t PmxDocumentSetName(PmxDocument* document, const char* name) {
    return Succeeds([&] {
        const std::string_view text(name);
        if (text.size() > MaxNameSize) {
            return false;
        }
        document->Content.Name = text;
        return true;
    });
}

void PmxDocumentCmd2upDuplex(PmxDocument* document) {
    SetTwoUpBothSides(document->Content.Table);
}

void PmxDocumentCmdBookletSaddleStapler(PmxDocument* document) {
    SetSaddleStitchedBooklet(document->Content.Table);
}

void PmxDocumentCmdDuplexUpperLeft(PmxDocument* document) {
    SetBothSidesBoundUpperLeft(document->Content.Table);
}
