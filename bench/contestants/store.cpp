#include "contestant.h"

// What is measured: the store itself.

namespace pmx::bench {

namespace {

void Load(const Place& place, CPMXTemplUIListDataArray& list) {
    Open(place, list);
    Require(list.LoadList(), "the store cannot load");
}

void Save(const Place& /*place*/, CPMXTemplUIListDataArray& list) {
    Require(list.WriteListFile(), "the store cannot save");
}

const Added Store{{"store", Load, Save}};

} // namespace

} // namespace pmx::bench
