#pragma once

#include "support/temp_folder.h"

#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace pmx::test {

/// A favorites folder in a state that no program leaves it in: a list, and favorite files of the fake host, of which lines,
/// counts, names, files, marks are damaged by chance. The same seed gives the same folder.
class DamagedFolder {
public:
    explicit DamagedFolder(unsigned seed);

    TempFolder Folder{"damaged"};

private:
    std::size_t Below(std::size_t limit) { return Random() % limit; }
    bool OneIn(std::size_t many) { return Below(many) == 0; }

    template <typename Container>
    const auto& AnyOf(const Container& container) {
        return container[Below(container.size())];
    }

    std::string AnyValue();
    std::string AnyCount(std::size_t values);
    std::vector<std::string> SectionLines();
    std::string AnyList();
    void WriteFiles();

    std::mt19937 Random;
};

} // namespace pmx::test
