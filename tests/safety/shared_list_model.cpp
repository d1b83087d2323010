#include "safety/shared_list_model.h"

#include <algorithm>
#include <optional>

namespace pmx::test::shared {

namespace {

using Place = std::optional<std::size_t>;
using Places = std::vector<Place>;

/// For each entry of one sequence the place of the same one in the other.
Places FindIn(const Entries& other, const Entries& one) {
    Places found(one.size());
    std::vector<bool> isTaken(other.size(), false);
    for (const bool byValue : {true, false}) {
        for (std::size_t at = 0; at < one.size(); ++at) {
            for (std::size_t place = 0; place < other.size() && !found[at]; ++place) {
                const bool isSame =
                    byValue ? other[place].Value() == one[at].Value() : other[place].Id() == one[at].Id();
                if (isSame && !isTaken[place]) {
                    found[at] = place;
                    isTaken[place] = true;
                }
            }
        }
    }
    return found;
}

/// What has been moved: all that is not in the longest run in the old order, of several the one that stays
/// nearest to the front there.
std::vector<bool> FindMoved(const Places& old) {
    std::vector<std::size_t> length(old.size(), 0);
    Places before(old.size());
    Place end;
    const auto isBetter = [&](std::size_t at, const Place& than) {
        return !than || length[at] > length[*than] || (length[at] == length[*than] && *old[at] < *old[*than]);
    };
    for (std::size_t at = 0; at < old.size(); ++at) {
        if (!old[at]) {
            continue;
        }
        for (std::size_t earlier = 0; earlier < at; ++earlier) {
            if (old[earlier] && *old[earlier] < *old[at] && isBetter(earlier, before[at])) {
                before[at] = earlier;
            }
        }
        length[at] = before[at] ? length[*before[at]] + 1 : 1;
        end = isBetter(at, end) ? at : end;
    }
    std::vector<bool> isMoved(old.size());
    std::transform(old.begin(), old.end(), isMoved.begin(), [](const Place& place) { return bool(place); });
    for (; end; end = before[*end]) {
        isMoved[*end] = false;
    }
    return isMoved;
}

/// An entry of the result, and the one of theirs that it is.
struct Kept {
    Entry What;
    Place Theirs;
};

/// Puts what both have into the order of the others.
void OrderAsTheirs(std::vector<Kept>& result) {
    std::vector<Kept> inBoth;
    std::copy_if(result.begin(), result.end(), std::back_inserter(inBoth),
                 [](const Kept& one) { return bool(one.Theirs); });
    std::sort(inBoth.begin(), inBoth.end(),
              [](const Kept& one, const Kept& other) { return *one.Theirs < *other.Theirs; });
    std::size_t next = 0;
    for (Kept& one : result) {
        one = one.Theirs ? inBoth[next++] : one;
    }
}

} // namespace

std::string Entry::Value() const {
    switch (What) {
    case Kind::Unreadable:
        return Name;
    case Kind::Standard:
        return "1~" + Name + "~101~0~" + std::to_string(Icon) + "~" + File;
    case Kind::User:
        break;
    }
    return "0~" + Name + "~1~0~" + std::to_string(Icon) + "~" + File;
}

std::string Entry::Id() const {
    switch (What) {
    case Kind::Unreadable:
        return "unreadable " + Name;
    case Kind::Standard:
        return "standard " + File + " " + Name;
    case Kind::User:
        break;
    }
    return "user " + File;
}

std::string SectionOf(const Entries& entries, std::size_t count) {
    std::string text = "[PMXTemplateList]\r\nTemplateNum=" + std::to_string(count) + "\r\n";
    for (std::size_t number = 0; number < entries.size(); ++number) {
        text += "TemplateData" + std::to_string(number) + "=" + entries[number].Value() + "\r\n";
    }
    return text;
}

Entries Merged(const Entries& base, const Entries& mine, const Entries& theirs) {
    const Places oldOfMine = FindIn(base, mine);
    const Places oldOfTheirs = FindIn(base, theirs);
    const std::vector<bool> isMoved = FindMoved(oldOfMine);
    const bool isMyOrder = std::find(isMoved.begin(), isMoved.end(), true) != isMoved.end();

    Places theirsOf(mine.size());
    std::vector<bool> isMine(theirs.size(), false);
    for (std::size_t at = 0; at < mine.size(); ++at) {
        for (std::size_t other = 0; other < theirs.size() && !theirsOf[at]; ++other) {
            const bool isOld = oldOfMine[at] && oldOfTheirs[other] == oldOfMine[at];
            const bool isNewFile = !oldOfMine[at] && !oldOfTheirs[other] && !isMine[other] &&
                                   mine[at].What == Entry::Kind::User && mine[at].Id() == theirs[other].Id();
            if (isOld || isNewFile) {
                theirsOf[at] = other;
                isMine[other] = true;
            }
        }
    }

    std::vector<Kept> result;
    for (std::size_t at = 0; at < mine.size(); ++at) {
        const bool isChanged = !oldOfMine[at] || mine[at].Value() != base[*oldOfMine[at]].Value();
        if (isChanged || isMoved[at] || theirsOf[at]) {
            result.push_back({isChanged || !theirsOf[at] ? mine[at] : theirs[*theirsOf[at]], theirsOf[at]});
        }
    }
    if (!isMyOrder) {
        OrderAsTheirs(result);
    }

    std::size_t front = 0;
    for (std::size_t other = 0; other < theirs.size(); ++other) {
        const bool isChanged =
            !oldOfTheirs[other] || theirs[other].Value() != base[*oldOfTheirs[other]].Value();
        if (isMine[other] || !isChanged) {
            continue;
        }
        // Behind what stands before it there, as near as anything that is kept.
        auto place = result.end();
        for (std::size_t before = other; before-- > 0 && place == result.end();) {
            place = std::find_if(result.begin(), result.end(),
                                 [&](const Kept& one) { return one.Theirs == Place(before); });
        }
        if (place != result.end()) {
            ++place;
        } else if (!isMyOrder) {
            place = result.begin() + static_cast<std::ptrdiff_t>(front++);
        }
        result.insert(place, {theirs[other], other});
    }
    Entries entries;
    for (const Kept& one : result) {
        entries.push_back(one.What);
    }
    return entries;
}

} // namespace pmx::test::shared
