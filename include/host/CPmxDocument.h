#pragma once

#include "host/PmxDocMgr.h"

#include <new>
#include <stdexcept>
#include <string>

/// The host's attribute table: 8657 bytes whose layout beyond the starts of the five level parts is the
/// host's own.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the host's own name.
struct _LM_DOCUMENTLAYOUTTABLE {
    unsigned char Bytes[PMX_DOCUMENT_TABLE_SIZE];
};

static_assert(sizeof(_LM_DOCUMENTLAYOUTTABLE) == PMX_DOCUMENT_TABLE_SIZE);

/// One document of the host's document model: a thin class over the functions of PmxDocMgr.h. Owns its
/// document. Errors that the host raises pass through every operation, the destructor included.
class CPmxDocument {
public:
    /// Makes a document with the host's fresh setting; throws std::bad_alloc when the host makes none.
    CPmxDocument() : Handle(PmxDocumentCreate()) {
        if (Handle == nullptr) {
            throw std::bad_alloc();
        }
    }
    // NOLINTNEXTLINE(bugprone-exception-escape): see above.
    virtual ~CPmxDocument() noexcept(false) { PmxDocumentDestroy(Handle); }
    CPmxDocument(const CPmxDocument&) = delete;
    CPmxDocument(CPmxDocument&&) = delete;
    CPmxDocument& operator=(CPmxDocument&&) = delete;

    /// Takes over the content of `source` (table, level, name), which is not null; throws std::runtime_error
    /// when the host refuses.
    // NOLINTNEXTLINE(misc-unconventional-assign-operator): the host's model has an assignment from a pointer.
    virtual CPmxDocument& operator=(const CPmxDocument* source) {
        if (source != this && PmxDocumentAssign(Handle, source->Handle) == 0) {
            throw std::runtime_error("PmxDocumentAssign");
        }
        return *this;
    }
    // NOLINTNEXTLINE(bugprone-unhandled-self-assignment): the other one handles it.
    virtual CPmxDocument& operator=(const CPmxDocument& source) { return *this = &source; }

    bool Load(const char* path, const void* options) { return PmxDocumentLoad(Handle, path, options) != 0; }
    bool Save(const char* path) { return PmxDocumentSave(Handle, path) != 0; }

    int32_t GetTemplateLevel() const { return PmxDocumentGetTemplateLevel(Handle); }
    void SetTemplateLevel(int32_t level) { PmxDocumentSetTemplateLevel(Handle, level); }

    void GetTable(_LM_DOCUMENTLAYOUTTABLE& table) const { PmxDocumentGetTable(Handle, &table); }
    bool SetTable(const _LM_DOCUMENTLAYOUTTABLE& table, bool flag) {
        return PmxDocumentSetTable(Handle, &table, flag ? 1 : 0) != 0;
    }

    std::string GetName() const { return PmxDocumentGetName(Handle); }
    bool SetName(const std::string& name) { return PmxDocumentSetName(Handle, name.c_str()) != 0; }

    void Cmd_2up_Duplex() { PmxDocumentCmd2upDuplex(Handle); }
    void Cmd_Booklet_SaddleStapler() { PmxDocumentCmdBookletSaddleStapler(Handle); }
    void Cmd_Duplex_UpperLeft() { PmxDocumentCmdDuplexUpperLeft(Handle); }

private:
    PmxDocument* const Handle; // owned; the destructor gives it up, which may raise
};
