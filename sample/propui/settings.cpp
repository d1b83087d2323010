#include "propui/settings.h"

#include "propui/resource.h"

#include <array>
#include <charconv>
#include <cstdlib>
#include <type_traits>
#include <utility>

namespace pmx::sample {

namespace {

/// The field at the end of a path of members.
template <auto Member, auto... Deeper, typename Object>
constexpr auto& Reach(Object& object) {
    if constexpr (sizeof...(Deeper) == 0) {
        return object.*Member;
    } else {
        return Reach<Deeper...>(object.*Member);
    }
}

template <auto... Path>
using FieldOf = std::remove_cvref_t<decltype(Reach<Path...>(std::declval<AttributeTable&>()))>;

template <auto... Path>
constexpr Setting ChoiceOf(int control, int firstText) {
    using Enum = decltype(FieldOf<Path...>().Get());
    return {
        .Control = control,
        .Type = SettingType::Choice,
        .Detail = firstText,
        .Highest = static_cast<int>(Enum::Count) - 1,
        .Get = [](const AttributeTable& table) { return static_cast<int>(Reach<Path...>(table).Get()); },
        .Set = [](AttributeTable& table, int value) { Reach<Path...>(table) = static_cast<Enum>(value); }};
}

template <auto... Path>
constexpr Setting FlagOf(int control) {
    return {.Control = control,
            .Type = SettingType::Flag,
            .Highest = 1,
            .Get = [](const AttributeTable& table) { return Reach<Path...>(table) ? 1 : 0; },
            .Set = [](AttributeTable& table, int value) { Reach<Path...>(table) = value != 0; }};
}

template <typename Field>
auto NumberIn(const Field& field) {
    if constexpr (std::is_integral_v<Field>) {
        return field;
    } else {
        return field.Get();
    }
}

template <auto... Path>
constexpr Setting NumberOf(int control, int lowest, int highest, int decimals) {
    return {.Control = control,
            .Type = SettingType::Number,
            .Lowest = lowest,
            .Highest = highest,
            .Decimals = decimals,
            .Get = [](const AttributeTable& table) { return int{NumberIn(Reach<Path...>(table))}; },
            .Set =
                [](AttributeTable& table, int value) {
                    using Number = decltype(NumberIn(Reach<Path...>(table)));
                    Reach<Path...>(table) = static_cast<Number>(value);
                }};
}

template <auto... Path>
constexpr Setting WordsOf(int control, int size) {
    return {.Control = control,
            .Type = SettingType::Words,
            .Detail = size,
            .GetWords = [](const AttributeTable& table) { return Reach<Path...>(table).Get(); },
            .SetWords = [](AttributeTable& table,
                           std::string_view words) { return Reach<Path...>(table).Set(words); }};
}

constexpr Setting When(bool (*isUsed)(const AttributeTable&), Setting setting) {
    setting.IsUsed = isUsed;
    return setting;
}

bool IsCustomPaper(const AttributeTable& table) {
    return table.Document.Paper == PaperSize::Custom;
}
bool IsBookletOn(const AttributeTable& table) {
    return table.Document.BookletKind != Booklet::None;
}
bool IsSaddleStitched(const AttributeTable& table) {
    return table.Document.BookletKind == Booklet::SaddleStitch;
}
bool HasSeparators(const AttributeTable& table) {
    return table.Document.SeparatorSheets != Separator::None;
}
bool HasFrontCover(const AttributeTable& table) {
    return table.Document.FrontCover.Kind != Cover::None;
}
bool HasBackCover(const AttributeTable& table) {
    return table.Document.BackCover.Kind != Cover::None;
}
bool HasNumbers(const AttributeTable& table) {
    return table.Document.NumberAt != NumberPlace::None;
}
bool RestartsNumbers(const AttributeTable& table) {
    return table.Section.RestartNumbers;
}
bool HasTabs(const AttributeTable& table) {
    return table.Section.TabSheet;
}
bool HasInsertion(const AttributeTable& table) {
    return table.Section.Insertion != SheetInsertion::None;
}
bool HasOwnBackMargins(const AttributeTable& table) {
    return !table.Face.MirrorMargins;
}
bool HasHeader(const AttributeTable& table) {
    return table.Face.HeaderOn;
}
bool HasFooter(const AttributeTable& table) {
    return table.Face.FooterOn;
}
bool HasWatermark(const AttributeTable& table) {
    return table.Face.WatermarkOn;
}
bool HasPercent(const AttributeTable& table) {
    return table.Page.Scale == Scaling::Percent;
}

constexpr Setting DocumentSettings[] = {
    ChoiceOf<&AttributeTable::Document, &DocumentPart::Paper>(IDC_PAPER, IDS_PAPER),
    ChoiceOf<&AttributeTable::Document, &DocumentPart::PageOrientation>(IDC_ORIENTATION, IDS_ORIENTATION),
    When(&IsCustomPaper,
         NumberOf<&AttributeTable::Document, &DocumentPart::CustomWidth>(IDC_CUSTOM_WIDTH, 900, 4500, 1)),
    When(&IsCustomPaper,
         NumberOf<&AttributeTable::Document, &DocumentPart::CustomHeight>(IDC_CUSTOM_HEIGHT, 900, 4500, 1)),
    ChoiceOf<&AttributeTable::Document, &DocumentPart::Sides>(IDC_SIDES, IDS_SIDES),
    ChoiceOf<&AttributeTable::Document, &DocumentPart::Color>(IDC_COLOR, IDS_COLOR),
    ChoiceOf<&AttributeTable::Document, &DocumentPart::PrintQuality>(IDC_QUALITY, IDS_QUALITY),
    FlagOf<&AttributeTable::Document, &DocumentPart::SaveToner>(IDC_SAVE_TONER),
    NumberOf<&AttributeTable::Document, &DocumentPart::Copies>(IDC_COPIES, 1, 9999, 0),
    FlagOf<&AttributeTable::Document, &DocumentPart::Collate>(IDC_COLLATE),
    FlagOf<&AttributeTable::Document, &DocumentPart::FaceUp>(IDC_FACE_UP),
    FlagOf<&AttributeTable::Document, &DocumentPart::ReverseOrder>(IDC_REVERSE),
    NumberOf<&AttributeTable::Document, &DocumentPart::FrontShiftX>(IDC_FRONT_X, -500, 500, 1),
    NumberOf<&AttributeTable::Document, &DocumentPart::FrontShiftY>(IDC_FRONT_Y, -500, 500, 1),
    NumberOf<&AttributeTable::Document, &DocumentPart::BackShiftX>(IDC_BACK_X, -500, 500, 1),
    NumberOf<&AttributeTable::Document, &DocumentPart::BackShiftY>(IDC_BACK_Y, -500, 500, 1),
};

constexpr Setting FinishingSettings[] = {
    ChoiceOf<&AttributeTable::Document, &DocumentPart::Binding>(IDC_BINDING, IDS_EDGE),
    ChoiceOf<&AttributeTable::Document, &DocumentPart::StaplePlace>(IDC_STAPLE, IDS_STAPLE),
    ChoiceOf<&AttributeTable::Document, &DocumentPart::PunchHoles>(IDC_PUNCH, IDS_PUNCH),
    ChoiceOf<&AttributeTable::Document, &DocumentPart::Folding>(IDC_FOLD, IDS_FOLD),
    ChoiceOf<&AttributeTable::Document, &DocumentPart::BookletKind>(IDC_BOOKLET, IDS_BOOKLET),
    When(&IsSaddleStitched,
         NumberOf<&AttributeTable::Document, &DocumentPart::SheetsPerSignature>(IDC_SIGNATURE, 0, 50, 0)),
    When(&IsBookletOn, NumberOf<&AttributeTable::Document, &DocumentPart::Creep>(IDC_CREEP, -500, 500, 2)),
    ChoiceOf<&AttributeTable::Document, &DocumentPart::SeparatorSheets>(IDC_SEPARATOR, IDS_SEPARATOR),
    When(&HasSeparators, ChoiceOf<&AttributeTable::Document, &DocumentPart::SeparatorSource>(
                             IDC_SEPARATOR_SOURCE, IDS_PAPER_SOURCE)),
    ChoiceOf<&AttributeTable::Document, &DocumentPart::FrontCover, &CoverSheet::Kind>(IDC_FRONT_COVER,
                                                                                      IDS_COVER),
    When(&HasFrontCover, ChoiceOf<&AttributeTable::Document, &DocumentPart::FrontCover, &CoverSheet::Source>(
                             IDC_FRONT_SOURCE, IDS_PAPER_SOURCE)),
    When(&HasFrontCover, ChoiceOf<&AttributeTable::Document, &DocumentPart::FrontCover, &CoverSheet::Paper>(
                             IDC_FRONT_MEDIA, IDS_MEDIA)),
    When(&HasFrontCover, ChoiceOf<&AttributeTable::Document, &DocumentPart::FrontCover, &CoverSheet::Color>(
                             IDC_FRONT_COLOR, IDS_SHEET_COLOR)),
    ChoiceOf<&AttributeTable::Document, &DocumentPart::BackCover, &CoverSheet::Kind>(IDC_BACK_COVER,
                                                                                     IDS_COVER),
    When(&HasBackCover, ChoiceOf<&AttributeTable::Document, &DocumentPart::BackCover, &CoverSheet::Source>(
                            IDC_BACK_SOURCE, IDS_PAPER_SOURCE)),
    When(&HasBackCover, ChoiceOf<&AttributeTable::Document, &DocumentPart::BackCover, &CoverSheet::Paper>(
                            IDC_BACK_MEDIA, IDS_MEDIA)),
    When(&HasBackCover, ChoiceOf<&AttributeTable::Document, &DocumentPart::BackCover, &CoverSheet::Color>(
                            IDC_BACK_COLOR, IDS_SHEET_COLOR)),
};

constexpr Setting NumbersSettings[] = {
    ChoiceOf<&AttributeTable::Document, &DocumentPart::NumberAt>(IDC_NUMBER_AT, IDS_NUMBER_PLACE),
    When(&HasNumbers,
         ChoiceOf<&AttributeTable::Document, &DocumentPart::NumberAs>(IDC_NUMBER_AS, IDS_NUMBER_FORMAT)),
    When(&HasNumbers,
         NumberOf<&AttributeTable::Document, &DocumentPart::NumberStart>(IDC_NUMBER_START, 0, 9999, 0)),
    When(&HasNumbers, NumberOf<&AttributeTable::Document, &DocumentPart::FirstNumberedPage>(
                          IDC_FIRST_NUMBERED, 1, 9999, 0)),
    When(&HasNumbers,
         NumberOf<&AttributeTable::Document, &DocumentPart::NumberFontSize>(IDC_NUMBER_SIZE, 60, 240, 1)),
};

constexpr Setting SectionSettings[] = {
    ChoiceOf<&AttributeTable::Section, &SectionPart::StartsOn>(IDC_STARTS_ON, IDS_SECTION_START),
    FlagOf<&AttributeTable::Section, &SectionPart::RestartNumbers>(IDC_RESTART),
    When(&RestartsNumbers,
         NumberOf<&AttributeTable::Section, &SectionPart::NumberStart>(IDC_SECTION_NUMBER, 0, 9999, 0)),
    FlagOf<&AttributeTable::Section, &SectionPart::StapleEachSection>(IDC_STAPLE_EACH),
    FlagOf<&AttributeTable::Section, &SectionPart::TabSheet>(IDC_TAB_SHEET),
    When(&HasTabs, NumberOf<&AttributeTable::Section, &SectionPart::TabsPerSet>(IDC_TABS_PER_SET, 1, 10, 0)),
    When(&HasTabs, WordsOf<&AttributeTable::Section, &SectionPart::TabText>(IDC_TAB_TEXT, 16)),
    ChoiceOf<&AttributeTable::Section, &SectionPart::Insertion>(IDC_INSERTION, IDS_INSERTION),
    When(&HasInsertion,
         ChoiceOf<&AttributeTable::Section, &SectionPart::InsertSource>(IDC_INSERT_SOURCE, IDS_PAPER_SOURCE)),
    When(&HasInsertion,
         ChoiceOf<&AttributeTable::Section, &SectionPart::InsertColor>(IDC_INSERT_COLOR, IDS_SHEET_COLOR)),
};

constexpr Setting SheetSettings[] = {
    ChoiceOf<&AttributeTable::Sheet, &SheetPart::Paper>(IDC_MEDIA, IDS_MEDIA),
    ChoiceOf<&AttributeTable::Sheet, &SheetPart::Color>(IDC_SHEET_COLOR, IDS_SHEET_COLOR),
    NumberOf<&AttributeTable::Sheet, &SheetPart::Weight>(IDC_WEIGHT, 40, 400, 0),
    FlagOf<&AttributeTable::Sheet, &SheetPart::TurnBack>(IDC_TURN_BACK),
    ChoiceOf<&AttributeTable::Sheet, &SheetPart::Source>(IDC_SOURCE, IDS_PAPER_SOURCE),
    ChoiceOf<&AttributeTable::Sheet, &SheetPart::FirstSheetSource>(IDC_FIRST_SOURCE, IDS_PAPER_SOURCE),
    ChoiceOf<&AttributeTable::Sheet, &SheetPart::LastSheetSource>(IDC_LAST_SOURCE, IDS_PAPER_SOURCE),
};

constexpr Setting FaceSettings[] = {
    ChoiceOf<&AttributeTable::Face, &FacePart::Pages>(IDC_PAGES, IDS_PAGES),
    ChoiceOf<&AttributeTable::Face, &FacePart::Order>(IDC_ORDER, IDS_ORDER),
    NumberOf<&AttributeTable::Face, &FacePart::GapX>(IDC_GAP_X, 0, 300, 1),
    NumberOf<&AttributeTable::Face, &FacePart::GapY>(IDC_GAP_Y, 0, 300, 1),
    ChoiceOf<&AttributeTable::Face, &FacePart::DividingLine>(IDC_DIVIDER, IDS_LINE),
    FlagOf<&AttributeTable::Face, &FacePart::FaceFrame>(IDC_FACE_FRAME),
    FlagOf<&AttributeTable::Face, &FacePart::CropMarks>(IDC_CROP_MARKS),
    NumberOf<&AttributeTable::Face, &FacePart::FrontMargins, &Margins::Top>(IDC_FRONT_MARGIN_TOP, 0, 500, 1),
    NumberOf<&AttributeTable::Face, &FacePart::FrontMargins, &Margins::Bottom>(IDC_FRONT_MARGIN_BOTTOM, 0,
                                                                               500, 1),
    NumberOf<&AttributeTable::Face, &FacePart::FrontMargins, &Margins::Left>(IDC_FRONT_MARGIN_LEFT, 0, 500,
                                                                             1),
    NumberOf<&AttributeTable::Face, &FacePart::FrontMargins, &Margins::Right>(IDC_FRONT_MARGIN_RIGHT, 0, 500,
                                                                              1),
    NumberOf<&AttributeTable::Face, &FacePart::Gutter>(IDC_GUTTER, 0, 500, 1),
    FlagOf<&AttributeTable::Face, &FacePart::MirrorMargins>(IDC_MIRROR),
    When(&HasOwnBackMargins, NumberOf<&AttributeTable::Face, &FacePart::BackMargins, &Margins::Top>(
                                 IDC_BACK_MARGIN_TOP, 0, 500, 1)),
    When(&HasOwnBackMargins, NumberOf<&AttributeTable::Face, &FacePart::BackMargins, &Margins::Bottom>(
                                 IDC_BACK_MARGIN_BOTTOM, 0, 500, 1)),
    When(&HasOwnBackMargins, NumberOf<&AttributeTable::Face, &FacePart::BackMargins, &Margins::Left>(
                                 IDC_BACK_MARGIN_LEFT, 0, 500, 1)),
    When(&HasOwnBackMargins, NumberOf<&AttributeTable::Face, &FacePart::BackMargins, &Margins::Right>(
                                 IDC_BACK_MARGIN_RIGHT, 0, 500, 1)),
};

constexpr Setting TextsSettings[] = {
    FlagOf<&AttributeTable::Face, &FacePart::HeaderOn>(IDC_HEADER_ON),
    When(&HasHeader,
         WordsOf<&AttributeTable::Face, &FacePart::Header, &LineOfText::Left>(IDC_HEADER_LEFT, 64)),
    When(&HasHeader,
         WordsOf<&AttributeTable::Face, &FacePart::Header, &LineOfText::Middle>(IDC_HEADER_MIDDLE, 64)),
    When(&HasHeader,
         WordsOf<&AttributeTable::Face, &FacePart::Header, &LineOfText::Right>(IDC_HEADER_RIGHT, 64)),
    When(&HasHeader, NumberOf<&AttributeTable::Face, &FacePart::Header, &LineOfText::FontSize>(
                         IDC_HEADER_SIZE, 60, 240, 1)),
    FlagOf<&AttributeTable::Face, &FacePart::FooterOn>(IDC_FOOTER_ON),
    When(&HasFooter,
         WordsOf<&AttributeTable::Face, &FacePart::Footer, &LineOfText::Left>(IDC_FOOTER_LEFT, 64)),
    When(&HasFooter,
         WordsOf<&AttributeTable::Face, &FacePart::Footer, &LineOfText::Middle>(IDC_FOOTER_MIDDLE, 64)),
    When(&HasFooter,
         WordsOf<&AttributeTable::Face, &FacePart::Footer, &LineOfText::Right>(IDC_FOOTER_RIGHT, 64)),
    When(&HasFooter, NumberOf<&AttributeTable::Face, &FacePart::Footer, &LineOfText::FontSize>(
                         IDC_FOOTER_SIZE, 60, 240, 1)),
    FlagOf<&AttributeTable::Face, &FacePart::WatermarkOn>(IDC_WATERMARK_ON),
    When(&HasWatermark,
         WordsOf<&AttributeTable::Face, &FacePart::Mark, &Watermark::Words>(IDC_WATERMARK_TEXT, 128)),
    When(&HasWatermark,
         NumberOf<&AttributeTable::Face, &FacePart::Mark, &Watermark::Size>(IDC_WATERMARK_SIZE, 12, 200, 0)),
    When(&HasWatermark, NumberOf<&AttributeTable::Face, &FacePart::Mark, &Watermark::Angle>(
                            IDC_WATERMARK_ANGLE, -180, 180, 0)),
    When(&HasWatermark, ChoiceOf<&AttributeTable::Face, &FacePart::Mark, &Watermark::Density>(
                            IDC_WATERMARK_DENSITY, IDS_STRENGTH)),
    When(&HasWatermark,
         ChoiceOf<&AttributeTable::Face, &FacePart::Mark, &Watermark::Color>(IDC_WATERMARK_COLOR, IDS_COLOR)),
    When(&HasWatermark,
         FlagOf<&AttributeTable::Face, &FacePart::Mark, &Watermark::FirstFaceOnly>(IDC_WATERMARK_FIRST)),
    WordsOf<&AttributeTable::Face, &FacePart::OverlayFile>(IDC_OVERLAY, 260),
};

constexpr Setting PageSettings[] = {
    ChoiceOf<&AttributeTable::Page, &PagePart::Scale>(IDC_SCALE, IDS_SCALING),
    When(&HasPercent, NumberOf<&AttributeTable::Page, &PagePart::Percent>(IDC_PERCENT, 25, 400, 0)),
    ChoiceOf<&AttributeTable::Page, &PagePart::At>(IDC_PLACE, IDS_PLACE),
    ChoiceOf<&AttributeTable::Page, &PagePart::Turn>(IDC_TURN, IDS_ROTATION),
    NumberOf<&AttributeTable::Page, &PagePart::ShiftX>(IDC_SHIFT_X, -1000, 1000, 1),
    NumberOf<&AttributeTable::Page, &PagePart::ShiftY>(IDC_SHIFT_Y, -1000, 1000, 1),
    NumberOf<&AttributeTable::Page, &PagePart::Trim, &Margins::Top>(IDC_TRIM_TOP, 0, 500, 1),
    NumberOf<&AttributeTable::Page, &PagePart::Trim, &Margins::Bottom>(IDC_TRIM_BOTTOM, 0, 500, 1),
    NumberOf<&AttributeTable::Page, &PagePart::Trim, &Margins::Left>(IDC_TRIM_LEFT, 0, 500, 1),
    NumberOf<&AttributeTable::Page, &PagePart::Trim, &Margins::Right>(IDC_TRIM_RIGHT, 0, 500, 1),
    ChoiceOf<&AttributeTable::Page, &PagePart::Color>(IDC_PAGE_COLOR, IDS_COLOR),
    FlagOf<&AttributeTable::Page, &PagePart::Frame>(IDC_PAGE_FRAME),
    FlagOf<&AttributeTable::Page, &PagePart::NumberOnPage>(IDC_PAGE_NUMBER),
    WordsOf<&AttributeTable::Page, &PagePart::Stamp>(IDC_STAMP, 64),
};

constexpr SettingsTab Tabs[] = {
    {Level::Document, IDD_DOCUMENT, IDS_TAB_DOCUMENT, DocumentSettings},
    {Level::Document, IDD_FINISHING, IDS_TAB_FINISHING, FinishingSettings},
    {Level::Document, IDD_NUMBERS, IDS_TAB_NUMBERS, NumbersSettings},
    {Level::Section, IDD_SECTION, IDS_TAB_SECTION, SectionSettings},
    {Level::Sheet, IDD_SHEET, IDS_TAB_SHEET, SheetSettings},
    {Level::Face, IDD_FACE, IDS_TAB_FACE, FaceSettings},
    {Level::Face, IDD_TEXTS, IDS_TAB_TEXTS, TextsSettings},
    {Level::Page, IDD_PAGE, IDS_TAB_PAGE, PageSettings},
};

constexpr std::array<std::size_t, 5> Starts{
    offsetof(AttributeTable, Document), offsetof(AttributeTable, Section), offsetof(AttributeTable, Sheet),
    offsetof(AttributeTable, Face), offsetof(AttributeTable, Page)};

constexpr std::array<int, 3> Tens{1, 10, 100};

int UnitOf(const Setting& setting) {
    return Tens.at(static_cast<std::size_t>(setting.Decimals));
}

std::string_view WithoutBlanks(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    const auto last = text.find_last_not_of(' ');
    return first == std::string_view::npos ? std::string_view() : text.substr(first, last - first + 1);
}

/// Digits only: no sign, no blanks, not too many.
bool ParseDigits(std::string_view text, int& value) {
    constexpr std::size_t Most = 6;
    const auto* end = text.data() + text.size();
    const bool isShort = !text.empty() && text.size() <= Most && text.front() != '-';
    const auto [stopped, error] = std::from_chars(text.data(), end, value);
    return isShort && error == std::errc() && stopped == end;
}

} // namespace

std::span<const SettingsTab> SettingsTabs() {
    return Tabs;
}

std::size_t PartStart(Level level) {
    return Starts.at(static_cast<std::size_t>(level) - 1);
}

std::string ShownNumber(const Setting& setting, int value) {
    const int unit = UnitOf(setting);
    std::string text = (value < 0 ? "-" : "") + std::to_string(std::abs(value) / unit);
    if (unit > 1) {
        const std::string digits = std::to_string(std::abs(value) % unit + unit);
        text += "." + digits.substr(1);
    }
    return text;
}

bool ParseNumber(const Setting& setting, std::string_view text, int& value) {
    text = WithoutBlanks(text);
    const bool isNegative = text.starts_with('-');
    text.remove_prefix(isNegative ? 1 : 0);
    const auto point = text.find('.');
    std::string digits(point == std::string_view::npos ? std::string_view() : text.substr(point + 1));
    if (digits.size() > static_cast<std::size_t>(setting.Decimals) ||
        (digits.empty() && point != std::string_view::npos)) {
        return false;
    }
    digits.resize(static_cast<std::size_t>(setting.Decimals), '0');
    int magnitude = 0;
    if (!ParseDigits(text.substr(0, point), magnitude)) {
        return false;
    }
    int fraction = 0;
    if (!digits.empty() && !ParseDigits(digits, fraction)) {
        return false;
    }
    value = magnitude * UnitOf(setting) + fraction;
    value = isNegative ? -value : value;
    return true;
}

} // namespace pmx::sample
