// A document model that raises C++ or structured exceptions where it is told to. It and foreign_host.cpp need no headers of a
// compiler, so that any compiler for Windows can build them.
#include "host/PmxDocMgr.h"

#include "foreign/raising_document.h"

struct PmxDocument {};

namespace {

PmxDocument Document;
RaisingPlace Place = RaiseNowhere;

int* volatile Nowhere = nullptr;

void MayRaise(RaisingPlace raise, RaisingPlace fault) {
    if (Place == raise) {
        throw HostError{raise};
    }
    if (Place == fault) {
        *Nowhere = 1;
    }
}

} // namespace

extern "C" {

void RaiseAt(RaisingPlace place) {
    Place = place;
}

PmxDocument* PmxDocumentCreate(void) {
    return &Document;
}

void PmxDocumentDestroy(PmxDocument*) {}

int32_t PmxDocumentAssign(PmxDocument*, const PmxDocument*) {
    return 1;
}

int32_t PmxDocumentLoad(PmxDocument*, const char*, const void*) {
    MayRaise(RaiseInLoad, FaultInLoad);
    return 1;
}

int32_t PmxDocumentSave(PmxDocument*, const char*) {
    return 1;
}

int32_t PmxDocumentGetTemplateLevel(const PmxDocument*) {
    return 1;
}

void PmxDocumentSetTemplateLevel(PmxDocument*, int32_t) {}

void PmxDocumentGetTable(const PmxDocument*, void* table) {
    MayRaise(RaiseInGetTable, FaultInGetTable);
    auto* const bytes = static_cast<unsigned char*>(table);
    for (int index = 0; index < PMX_DOCUMENT_TABLE_SIZE; ++index) {
        bytes[index] = 7;
    }
}

int32_t PmxDocumentSetTable(PmxDocument*, const void*, int32_t) {
    return 1;
}

const char* PmxDocumentGetName(const PmxDocument*) {
    return "";
}

int32_t PmxDocumentSetName(PmxDocument*, const char*) {
    return 1;
}

void PmxDocumentCmd2upDuplex(PmxDocument*) {}
void PmxDocumentCmdBookletSaddleStapler(PmxDocument*) {}
void PmxDocumentCmdDuplexUpperLeft(PmxDocument*) {}
}
