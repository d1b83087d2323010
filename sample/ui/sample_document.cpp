#include "ui/sample_document.h"

#include "ui/text.h"
#include "ui/words.h"

namespace pmx::sample {

namespace {

/// The typeface that the system really uses for messages: the name in its settings may only stand for
/// another.
std::wstring MessageFontName() {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    const HDC device = GetDC(nullptr);
    const HFONT font = CreateFontIndirectW(&metrics.lfMessageFont);
    const HGDIOBJ former = SelectObject(device, font);
    wchar_t name[LF_FACESIZE]{};
    GetTextFaceW(device, LF_FACESIZE, name);
    SelectObject(device, former);
    DeleteObject(font);
    ReleaseDC(nullptr, device);
    return name;
}

} // namespace

const Original& SampleDocument() {
    static const Original Document{12, {1, 3, 8}};
    return Document;
}

const DocumentWords& SampleWords() {
    static const DocumentWords Words{
        ResourceText(IDS_DOCUMENT_TITLE),
        ResourceText(IDS_DOCUMENT_SUBTITLE),
        {ResourceText(IDS_SECTION_1), ResourceText(IDS_SECTION_2), ResourceText(IDS_SECTION_3)},
        ResourceText(IDS_BLANK),
        MessageFontName()};
    return Words;
}

} // namespace pmx::sample
