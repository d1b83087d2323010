// A client of the package in C++, built with its CMake package. It makes a standard favorite in the current folder and
// prints what the library tells of it.
#include <PMXTemplUI.h>

#include <cstdio>
#include <string>
#include <vector>

#include <windows.h>

static_assert(PMX_VERSION_MAJOR == EXPECTED_MAJOR);

int main() {
    char folder[MAX_PATH];
    GetCurrentDirectoryA(sizeof folder, folder);
    void* const list = EX_CreateTemplList(folder, nullptr, nullptr);
    if (list == nullptr || EX_CreateDefaultChoice(list, "Booklet", 4, 4) != 0) {
        return 1;
    }
    const std::int32_t level = PMX_LEVEL_DOCUMENT + PMX_LEVEL_STANDARD;
    std::vector<TemplInfo> infos(static_cast<std::size_t>(EX_GetTemplListSize(list, level)) /
                                 sizeof(TemplInfo));
    std::int64_t count = 0;
    EX_GetAllTemplInfo(list, level, infos.data(), static_cast<std::int64_t>(infos.size() * sizeof(TemplInfo)),
                       &count);
    std::vector<unsigned char> table(PMX_TABLE_SIZE);
    const bool isRead = EX_CurTemplInfo(list, 0, 1, table.data(), PMX_TABLE_SIZE) == 0;
    std::printf("%s %s %d\n", PMX_VERSION, infos.at(0).Name, isRead ? 1 : 0);
    return EX_DestroyTemplList(list) == 0 && count == 1 ? 0 : 1;
}
