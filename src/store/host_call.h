#pragma once

#include "platform/guard.h"

#include <functional>

namespace pmx {

/// Calls `work`, which calls the host's libraries; false when it raised anything. Needs no memory of its own,
/// so that lack of memory is not raised here either.
template <typename Work>
bool CallHost(Work work) {
    return RunGuarded(std::ref(work));
}

} // namespace pmx
