#pragma once

#include "host/CPmxDocument.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace pmx {

/// The store's own document: the host's, with a virtual destructor of its own and nothing else.
class FavoriteDocument final : public CPmxDocument {
public:
    FavoriteDocument() = default;
    FavoriteDocument(const FavoriteDocument&) = delete;
    FavoriteDocument(FavoriteDocument&&) = delete;
    FavoriteDocument& operator=(const FavoriteDocument&) = delete;
    FavoriteDocument& operator=(FavoriteDocument&&) = delete;
    ~FavoriteDocument() noexcept(false) override = default;
    using CPmxDocument::operator=;
};

/// One favorite: what the list file says of it, three marks that live only in memory, and, once needed, its
/// favorite file loaded into a document, which the record owns. Texts are in the system's code page.
///
/// No error that the host's document model raises leaves an operation of the record: it becomes a false
/// result.
class CPMXTemplUIListData {
public:
    CPMXTemplUIListData();
    CPMXTemplUIListData(const CPMXTemplUIListData&) = delete;
    CPMXTemplUIListData(CPMXTemplUIListData&&) = delete;
    CPMXTemplUIListData& operator=(CPMXTemplUIListData&&) = delete;
    virtual ~CPMXTemplUIListData();

    /// Copies everything but NewFlag. The document is copied only when both records hold one; otherwise the
    /// target's stays as it was. A target whose document cannot take over the content is left without one, so
    /// that it is read from its file when it is needed next.
    CPMXTemplUIListData& operator=(const CPMXTemplUIListData& source);

    /// 1 standard favorite, 0 user favorite.
    std::uint32_t GetStandard() const { return Standard; }
    void SetStandard(std::uint32_t standard) { Standard = standard; }
    bool IsStandard() const { return Standard == 1; }

    /// Display name, unique in the list without regard to case.
    const std::string& GetName() const { return Name; }
    void SetName(std::string_view name) { Name = name; }

    /// 1 document, 2 section, 3 sheet, 4 face, 5 page; above 100 a standard favorite made through the
    /// exports.
    std::int32_t GetLevel() const { return Level; }
    void SetLevel(std::int32_t level) { Level = level; }

    /// Name of the favorite file in the favorites folder; of a level above 100, the standard number in
    /// decimal.
    const std::string& GetFileName() const { return FileName; }
    void SetFileName(std::string_view fileName) { FileName = fileName; }

    /// 1 when the favorite file was made while the editor is open.
    std::int32_t GetNewFlag() const { return NewFlag; }
    void SetNewFlag(std::int32_t flag) { NewFlag = flag; }

    /// 1 when the favorite is deleted and only waits for the list to be written.
    std::int32_t GetDeleteFlag() const { return DeleteFlag; }
    void SetDeleteFlag(std::int32_t flag) { DeleteFlag = flag; }

    /// 1 when the favorite was imported while the editor is open.
    std::int32_t GetImportFlag() const { return ImportFlag; }
    void SetImportFlag(std::int32_t flag) { ImportFlag = flag; }

    /// 1 when the favorite is shown on the host's toolbar.
    std::int32_t GetToolbar() const { return Toolbar; }
    void SetToolbar(std::int32_t toolbar) { Toolbar = toolbar; }

    /// Image of the toolbar icon in the icon strips.
    std::int64_t GetIconIndex() const { return IconIndex; }
    void SetIconIndex(std::int64_t index) { IconIndex = index; }

    /// The loaded document, owned by the record; null until first needed.
    CPmxDocument* GetDocument() { return Document.get(); }
    const CPmxDocument* GetDocument() const { return Document.get(); }

    /// Whether the document has the favorite's content: it was read or written, or somebody says so who has
    /// filled it.
    bool IsDocumentReady() const { return Document != nullptr && DocumentReady; }
    void SetDocumentReady() { DocumentReady = true; }

    /// Makes an empty document, which is not ready, unless the record has one. False when none can be made.
    bool EnsureDocument();

    /// Destroys the document, if any. The record has none afterwards in every case; false when destroying it
    /// raised.
    bool ReleaseDocument();

    /// Makes it what every new favorite of the user is: that name and level, off the toolbar, with the icon
    /// of new favorites, and marked as new. File name and document stay.
    void BecomeNewFavorite(std::string_view name, std::int32_t level);

    /// `folder`, which ends in a separator, followed by FileName.
    std::string GetFilePath(const std::string& folder) const { return folder + FileName; }

    /// Reads a favorite file into the document. False when the path is null or empty, when there is no
    /// document, or when the host refuses or raises.
    bool LoadDocument(const char* path);

    /// Writes the document to a favorite file; false as with LoadDocument.
    bool SaveDocument(const char* path);

private:
    std::uint32_t Standard = 0;
    std::string Name;
    std::int32_t Level = 1;
    std::string FileName;
    std::int32_t NewFlag = 0;
    std::int32_t DeleteFlag = 0;
    std::int32_t ImportFlag = 0;
    std::int32_t Toolbar = 0;
    std::int64_t IconIndex = 0;
    std::unique_ptr<FavoriteDocument> Document;
    bool DocumentReady = false;
};

/// Puts name, level and, unless null, the attribute table into a document. False when the host refuses; raises
/// what the host raises.
bool StampDocument(CPmxDocument& document, const std::string& name, std::int32_t level,
                   const _LM_DOCUMENTLAYOUTTABLE* table);

/// Gives a fresh document the setting of the standard favorite of that number; of 1, 2 and unknown ones it is the fresh
/// one. Raises what the host raises.
void ApplyStandardSetting(CPmxDocument& document, std::int32_t number);

/// A record with an empty document; null when there is no memory or the host makes no document.
std::unique_ptr<CPMXTemplUIListData> MakeFavorite();

} // namespace pmx
