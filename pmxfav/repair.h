#pragma once

#include "check.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pmx::tool {

/// One thing that repair does.
struct Deed {
    Finding Cause;
    std::string Action; ///< what is done about it; UTF-8
};

/// A favorite of the list as it is to be.
struct PlannedFavorite {
    std::unique_ptr<CPMXTemplUIListData>
        Record;                         ///< never null; names the file to copy until there is the copy
    std::optional<std::int32_t> Number; ///< of its entry; none when it is new in the list
    bool IsMended = false;              ///< its entry cannot be read as it stands
    bool IsCopied = false;              ///< gets a copy of the file that it names
};

/// A file that a killed program has left behind, to be deleted.
struct OldLeftover {
    Deed Deletion;
    std::string Path;
};

/// Everything that repair does in a folder.
struct RepairPlan {
    std::vector<PlannedFavorite> Favorites; ///< the list as it is to be
    std::string Comments;                   ///< lines that go before its section
    std::vector<Deed> ListDeeds;            ///< what is done with the list; none when it stays as it is
    std::vector<OldLeftover> Leftovers;
};

/// Everything that a plan does, in the order in which it is told.
std::vector<Deed> DeedsOf(const RepairPlan& plan);

/// Whether nothing in the folder can be changed where there is this trouble.
bool PreventsRepair(Trouble trouble);

/// What repair does in a folder that has been read, and of which `findings` is what Check says. Changes nothing.
RepairPlan PlanRepair(const FavoritesFolder& folder, const std::vector<Finding>& findings, std::int64_t now);

/// What has become of a plan.
struct RepairResult {
    std::string Fault; ///< why the list is not as planned, UTF-8; empty when it is
    std::string
        KeptList; ///< under which name the old list is kept; empty when the list is as it was, or was none
    std::vector<Deed> Done;
};

/// Carries out a plan for a folder that is as it was read; when its list is not, nothing changes. At any moment the folder
/// holds the old list or the new one, and all files that they name. The records of the plan get the names of their copies.
RepairResult CarryOut(const FavoritesFolder& folder, RepairPlan& plan, std::int64_t now);

} // namespace pmx::tool
