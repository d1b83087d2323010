#include "store/list_data.h"

namespace pmx {

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
        if (!SystemGuard().Run([&] { *Document = content; })) {
            ReleaseDocument();
        }
    }
    return *this;
}

bool CPMXTemplUIListData::EnsureDocument(Guard& guard) {
    if (Document) {
        return true;
    }
    guard.Run([this] { Document = std::make_unique<FavoriteDocument>(); });
    return Document != nullptr;
}

bool CPMXTemplUIListData::ReleaseDocument(Guard& guard) {
    if (!Document) {
        return true;
    }
    // The destructor may raise, which the smart pointer itself would not survive.
    FavoriteDocument* const document = Document.release();
    // NOLINTNEXTLINE(cppcoreguidelines-owning-memory)
    return guard.Run([document] { delete document; });
}

bool CPMXTemplUIListData::LoadDocument(const char* path, Guard& guard) {
    if (path == nullptr || *path == '\0' || !Document) {
        return false;
    }
    bool loaded = false;
    return guard.Run([&] { loaded = Document->Load(path, nullptr); }) && loaded;
}

bool CPMXTemplUIListData::SaveDocument(const char* path, Guard& guard) {
    if (path == nullptr || *path == '\0' || !Document) {
        return false;
    }
    bool saved = false;
    return guard.Run([&] { saved = Document->Save(path); }) && saved;
}

} // namespace pmx
