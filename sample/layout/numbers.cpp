#include "layout/numbers.h"

#include "layout/imposition.h"

#include <algorithm>
#include <array>
#include <utility>

namespace pmx::sample {

namespace {

std::string Roman(int number) {
    constexpr std::array<std::pair<int, const char*>, 13> Signs{{{1000, "m"},
                                                                 {900, "cm"},
                                                                 {500, "d"},
                                                                 {400, "cd"},
                                                                 {100, "c"},
                                                                 {90, "xc"},
                                                                 {50, "l"},
                                                                 {40, "xl"},
                                                                 {10, "x"},
                                                                 {9, "ix"},
                                                                 {5, "v"},
                                                                 {4, "iv"},
                                                                 {1, "i"}}};
    std::string result;
    for (const auto& [value, sign] : Signs) {
        for (; number >= value; number -= value) {
            result += sign;
        }
    }
    return result.empty() ? "0" : result;
}

bool IsSuppressed(int page, const AttributeTable& table) {
    return std::any_of(
        table.Page.Overrides.begin(), table.Page.Overrides.end(), [page](const PageOverride& other) {
            return other.First != 0 && other.First <= page && page <= other.Last && other.NoNumber;
        });
}

/// The page's number: counted from the first numbered page, or from the start of its section.
int NumberOf(int page, const AttributeTable& table, const Original& original) {
    if (table.Section.RestartNumbers) {
        const auto section = static_cast<std::size_t>(SectionOf(page, original));
        const int start = original.SectionStarts.empty() ? 1 : original.SectionStarts[section - 1];
        return table.Section.NumberStart + page - start;
    }
    return table.Document.NumberStart + page - table.Document.FirstNumberedPage;
}

} // namespace

std::optional<std::string> PrintedNumber(int page, const AttributeTable& table, const Original& original) {
    if (table.Document.NumberAt == NumberPlace::None || page < table.Document.FirstNumberedPage ||
        IsSuppressed(page, table)) {
        return std::nullopt;
    }
    const int number = NumberOf(page, table, original);
    const std::string plain = std::to_string(number);
    switch (table.Document.NumberAs.Get()) {
    case NumberFormat::Dashes:
        return "- " + plain + " -";
    case NumberFormat::OfTotal:
        return plain + " / " + std::to_string(original.PageCount);
    case NumberFormat::Roman:
        return Roman(number);
    case NumberFormat::SectionAndNumber:
        return std::to_string(SectionOf(page, original)) + "-" + plain;
    default:
        return plain;
    }
}

} // namespace pmx::sample
