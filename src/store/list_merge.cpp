#include "store/list_merge.h"

#include "store/favorite_files.h"
#include "store/levels.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <unordered_map>

namespace pmx {

namespace {

constexpr auto None = static_cast<std::size_t>(-1);

enum class EntryKind { Favorite, Standard, Unreadable };

struct Entry {
    std::string_view Value;
    std::string Text; ///< the same for all values that say the same
    std::string Id;   ///< what the entry is known by, whatever else it says
    EntryKind Kind;
};

using Entries = std::vector<Entry>;

/// The position of an entry's partner in another sequence, or None, for each entry of one.
using Partners = std::vector<std::size_t>;

Entry MakeEntry(std::string_view value) {
    const std::unique_ptr<CPMXTemplUIListData> record = ParseListValue(value, LeadBytesIn(value));
    if (record == nullptr) {
        return {value, std::string(value), "?" + std::string(value), EntryKind::Unreadable};
    }
    std::string text = FormatListValue(*record);
    if (IsStandardLevel(record->GetLevel())) {
        const std::string number = std::to_string(LeadingNumber(record->GetFileName()));
        return {value, std::move(text), number + FieldSeparator + record->GetName(), EntryKind::Standard};
    }
    return {value, std::move(text), "/" + FoldedFileName(record->GetFileName()), EntryKind::Favorite};
}

Entries MakeEntries(const ListValues& values) {
    Entries entries;
    entries.reserve(values.size());
    for (const std::string_view value : values) {
        entries.push_back(MakeEntry(value));
    }
    return entries;
}

/// Two sequences and which entries of them are the same.
class Pairing {
public:
    /// Those that say the same are paired before those that have changed, or equal ones would get mixed up.
    Pairing(const Entries& left, const Entries& right)
        : OfLeft(left.size(), None), OfRight(right.size(), None) {
        PairBy(&Entry::Text, left, right);
        PairBy(&Entry::Id, left, right);
    }

    Partners OfLeft;
    Partners OfRight;

private:
    void PairBy(std::string Entry::*key, const Entries& left, const Entries& right) {
        std::unordered_map<std::string_view, std::size_t> first;
        Partners next(left.size(), None); // the next one with the same key
        for (std::size_t one = left.size(); one-- > 0;) {
            if (OfLeft[one] == None) {
                const auto [found, isNew] = first.try_emplace(left[one].*key, one);
                next[one] = isNew ? None : found->second;
                found->second = one;
            }
        }
        for (std::size_t other = 0; other < right.size(); ++other) {
            const auto found = OfRight[other] == None ? first.find(right[other].*key) : first.end();
            if (found != first.end() && found->second != None) {
                OfRight[other] = found->second;
                OfLeft[found->second] = other;
                found->second = next[found->second];
            }
        }
    }
};

/// Which entries of mine stand elsewhere than in base: the fewest whose moving explains the order.
std::vector<bool> FindMoved(const Partners& baseOf) {
    // The longest run of mine that is in the order of base: for each length, where the run that ends earliest
    // in base ends in mine, and for each entry the one before it in its run.
    Partners ends;
    Partners before(baseOf.size(), None);
    std::vector<bool> isMoved(baseOf.size(), false);
    for (std::size_t one = 0; one < baseOf.size(); ++one) {
        if (baseOf[one] == None) {
            continue;
        }
        isMoved[one] = true;
        const auto place =
            std::lower_bound(ends.begin(), ends.end(), baseOf[one],
                             [&](std::size_t end, std::size_t wanted) { return baseOf[end] < wanted; });
        before[one] = place == ends.begin() ? None : *(place - 1);
        if (place == ends.end()) {
            ends.push_back(one);
        } else {
            *place = one;
        }
    }
    for (std::size_t one = ends.empty() ? None : ends.back(); one != None; one = before[one]) {
        isMoved[one] = false;
    }
    return isMoved;
}

class Merge {
public:
    Merge(const Entries& base, const Entries& mine, const Entries& theirs)
        : Base(base),
          Mine(mine),
          Theirs(theirs),
          MineAndBase(mine, base),
          TheirsAndBase(theirs, base),
          IsMoved(FindMoved(MineAndBase.OfLeft)),
          IsMyOrder(std::find(IsMoved.begin(), IsMoved.end(), true) != IsMoved.end()),
          TheirsOf(mine.size(), None),
          MineOf(theirs.size(), None) {
        PairOverBase();
        PairAdded();
    }

    ListValues Run() {
        if (!IsMyOrder) {
            PassAddedFrom(0);
        }
        for (const std::size_t one : KeptOfMine()) {
            Result.push_back(ValueOf(one));
            if (TheirsOf[one] != None) {
                PassAddedFrom(TheirsOf[one] + 1);
            }
        }
        if (IsMyOrder) {
            PassAddedFrom(0);
        }
        return std::move(Result);
    }

private:
    void Join(std::size_t mine, std::size_t theirs) {
        TheirsOf[mine] = theirs;
        MineOf[theirs] = mine;
    }

    void PairOverBase() {
        for (std::size_t one = 0; one < Mine.size(); ++one) {
            const std::size_t base = MineAndBase.OfLeft[one];
            const std::size_t theirs = base == None ? None : TheirsAndBase.OfRight[base];
            if (theirs != None) {
                Join(one, theirs);
            }
        }
    }

    /// Favorites of the same file that both have added. Equal standard favorites are two: a host that adds one
    /// twice gets two of them.
    void PairAdded() {
        std::unordered_map<std::string_view, std::size_t> added;
        for (std::size_t one = 0; one < Mine.size(); ++one) {
            if (MineAndBase.OfLeft[one] == None && Mine[one].Kind == EntryKind::Favorite) {
                added.emplace(Mine[one].Id, one);
            }
        }
        for (std::size_t other = 0; other < Theirs.size(); ++other) {
            const auto found =
                TheirsAndBase.OfLeft[other] == None ? added.find(Theirs[other].Id) : added.end();
            if (found != added.end()) {
                Join(found->second, other);
                added.erase(found);
            }
        }
    }

    bool IsChangedInMine(std::size_t one) const {
        const std::size_t base = MineAndBase.OfLeft[one];
        return base == None || Mine[one].Text != Base[base].Text;
    }

    std::string_view ValueOf(std::size_t one) const {
        const std::size_t theirs = TheirsOf[one];
        const bool isTheirs =
            theirs != None && !IsChangedInMine(one) && Theirs[theirs].Text != Mine[one].Text;
        return isTheirs ? Theirs[theirs].Value : Mine[one].Value;
    }

    /// The entries of mine that are kept, in their order. Where the order is that of theirs, those that theirs
    /// has too change places among each other.
    Partners KeptOfMine() const {
        Partners kept;
        std::size_t other = 0;
        for (std::size_t one = 0; one < Mine.size(); ++one) {
            if (TheirsOf[one] == None) {
                if (IsChangedInMine(one) || IsMoved[one]) {
                    kept.push_back(one);
                }
                continue;
            }
            while (!IsMyOrder && MineOf[other] == None) {
                ++other;
            }
            kept.push_back(IsMyOrder ? one : MineOf[other++]);
        }
        return kept;
    }

    /// Passes on what theirs has added, or changed while mine has deleted it, from that place of theirs up to
    /// the next entry that mine has, too.
    void PassAddedFrom(std::size_t place) {
        for (; place < Theirs.size() && MineOf[place] == None; ++place) {
            const std::size_t base = TheirsAndBase.OfLeft[place];
            if (base == None || Theirs[place].Text != Base[base].Text) {
                Result.push_back(Theirs[place].Value);
            }
        }
    }

    const Entries& Base;
    const Entries& Mine;
    const Entries& Theirs;
    const Pairing MineAndBase;
    const Pairing TheirsAndBase;
    const std::vector<bool> IsMoved;
    const bool IsMyOrder;
    Partners TheirsOf;
    Partners MineOf;
    ListValues Result;
};

} // namespace

ListValues MergeValues(const ListValues& base, const ListValues& mine, const ListValues& theirs) {
    const Entries baseEntries = MakeEntries(base);
    const Entries myEntries = MakeEntries(mine);
    const Entries theirEntries = MakeEntries(theirs);
    return Merge(baseEntries, myEntries, theirEntries).Run();
}

} // namespace pmx
