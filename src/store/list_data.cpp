#include "store/list_data.h"

#include "store/host_call.h"

namespace pmx {

// Not defaulted in the class: making many records would otherwise fill each with zeros first.
CPMXTemplUIListData::CPMXTemplUIListData() = default;

CPMXTemplUIListData::~CPMXTemplUIListData() {
    ReleaseDocument();
}

CPMXTemplUIListData& CPMXTemplUIListData::operator=(const CPMXTemplUIListData& source) {
    if (this == &source) {
        return *this;
    }
    Standard = source.Standard;
    Name = source.Name;
    Level = source.Level;
    FileName = source.FileName;
    DeleteFlag = source.DeleteFlag;
    ImportFlag = source.ImportFlag;
    Toolbar = source.Toolbar;
    IconIndex = source.IconIndex;
    if (Document && source.Document) {
        const CPmxDocument& content = *source.Document;
        if (CallHost([&] { *Document = content; })) {
            DocumentReady = source.DocumentReady;
        } else {
            ReleaseDocument();
        }
    }
    return *this;
}

bool CPMXTemplUIListData::EnsureDocument() {
    if (Document) {
        return true;
    }
    CallHost([this] { Document = std::make_unique<FavoriteDocument>(); });
    DocumentReady = true;
    return Document != nullptr;
}

bool CPMXTemplUIListData::ReleaseDocument() {
    if (!Document) {
        return true;
    }
    // The destructor may raise, which the smart pointer itself would not survive.
    FavoriteDocument* const document = Document.release();
    // NOLINTNEXTLINE(cppcoreguidelines-owning-memory)
    return CallHost([document] { delete document; });
}

bool CPMXTemplUIListData::LoadDocument(const char* path) {
    if (path == nullptr || *path == '\0' || !Document) {
        return false;
    }
    bool loaded = false;
    if (!CallHost([&] { loaded = Document->Load(path, nullptr); }) || !loaded) {
        return false;
    }
    DocumentReady = true;
    return true;
}

bool CPMXTemplUIListData::SaveDocument(const char* path) {
    if (path == nullptr || *path == '\0' || !Document) {
        return false;
    }
    bool saved = false;
    if (!CallHost([&] { saved = Document->Save(path); }) || !saved) {
        return false;
    }
    DocumentReady = true;
    return true;
}

} // namespace pmx
