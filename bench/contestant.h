#pragma once

#include "favorites.h"

#include <cstddef>
#include <limits>
#include <vector>

namespace pmx::bench {

/// One way of keeping the list file. All of them make the same records of it, and write the new file aside,
/// flush it and put it in the place of the old one.
struct Contestant {
    const char* Name;

    /// Fills the empty list with the favorites of the place's list file.
    void (*Load)(const Place& place, CPMXTemplUIListDataArray& list);

    /// Replaces the place's list file by the list, whose folder it is. Null for what cannot write.
    void (*Save)(const Place& place, CPMXTemplUIListDataArray& list);

    /// The most favorites that it is asked for, for those whose cost grows faster than their number.
    std::size_t MostLoaded = std::numeric_limits<std::size_t>::max();
    std::size_t MostSaved = std::numeric_limits<std::size_t>::max();
};

/// All contestants of this system: those whose sources are part of the program.
std::vector<Contestant>& Contestants();

/// Adds one while the program starts.
struct Added {
    explicit Added(const Contestant& contestant) { Contestants().push_back(contestant); }
};

} // namespace pmx::bench
