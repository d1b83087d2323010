#include "favorites.h"

#include "PMXTemplUI.h"
#include "exports/win32/dialog_opening.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <iostream>

// Opening the dialogs of the built library on a long list, from the call until the dialog waits for input.
// Prints operation, dialog, count and the shortest time in microseconds.

namespace pmx::bench {

namespace {

using exports_test::DialogOpening;
using exports_test::OpenOnce;

constexpr std::size_t Count = 10'000;
constexpr int Repetitions = 5;
constexpr int EditorList = 3034;
constexpr int BasicList = 3037;

void Measure(const char* dialog, int list, const std::function<std::int64_t(HWND)>& open) {
    auto shortest = std::chrono::microseconds::max();
    for (int repetition = 0; repetition < Repetitions; ++repetition) {
        const DialogOpening opening = OpenOnce(list, open);
        Require(opening.Rows == static_cast<int>(Count), "the dialog does not show the favorites");
        shortest = std::min(shortest, opening.Time);
    }
    std::cout << "open " << dialog << ' ' << Count << ' ' << shortest.count() << '\n';
}

void MeasureAll() {
    const FavoritesFolder folder;
    const Place& place = folder.GetPlace();
    WriteFavorites(Count, place);
    Measure("editor", EditorList, [&](HWND owner) { return EX_ShowTemplateUI(place.Folder.c_str(), owner); });
    Measure("basic-list", BasicList, [&](HWND owner) {
        return EX_ShowChoiceUIBasic(place.Folder.c_str(), "PmxTempleList.ini", ".pmt", owner);
    });
}

} // namespace

} // namespace pmx::bench

int main() {
    pmx::bench::MeasureAll();
    return 0;
}
