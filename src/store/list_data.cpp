#include "store/list_data.h"

#include "store/host_call.h"
#include "store/levels.h"

#include <new>

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

void CPMXTemplUIListData::BecomeNewFavorite(std::string_view name, std::int32_t level) {
    Standard = 0;
    Name = name;
    Level = level;
    Toolbar = 0;
    IconIndex = NewFavoriteIcon;
    NewFlag = 1;
    DeleteFlag = 0;
    ImportFlag = 0;
}

bool CPMXTemplUIListData::EnsureDocument() {
    if (Document) {
        return true;
    }
    DocumentReady = false;
    CallHost([this] { Document = std::make_unique<FavoriteDocument>(); });
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

bool StampDocument(CPmxDocument& document, const std::string& name, std::int32_t level,
                   const _LM_DOCUMENTLAYOUTTABLE* table) {
    if (!document.SetName(name)) {
        return false;
    }
    document.SetTemplateLevel(level);
    return table == nullptr || document.SetTable(*table, false);
}

void ApplyStandardSetting(CPmxDocument& document, std::int32_t number) {
    constexpr std::int32_t TwoUpDuplex = 3;
    constexpr std::int32_t BookletSaddleStapler = 4;
    constexpr std::int32_t DuplexUpperLeft = 5;
    switch (number) {
    case TwoUpDuplex:
        document.Cmd_2up_Duplex();
        break;
    case BookletSaddleStapler:
        document.Cmd_Booklet_SaddleStapler();
        break;
    case DuplexUpperLeft:
        document.Cmd_Duplex_UpperLeft();
        break;
    default:
        break; // the fresh setting
    }
}

std::unique_ptr<CPMXTemplUIListData> MakeFavorite() {
    try {
        auto record = std::make_unique<CPMXTemplUIListData>();
        return record->EnsureDocument() ? std::move(record) : nullptr;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

} // namespace pmx
