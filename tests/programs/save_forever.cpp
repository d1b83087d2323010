// Adds standard favorites to the list of a folder, one after the other, until it is killed. Says so by a line
// on the standard output after the first. Usage: pmx_save_forever folder

#include "PMXTemplUI.h"

#include <cstdio>

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2) {
        return 2;
    }
    void* const handle = EX_CreateTemplList(arguments[1], nullptr, nullptr);
    if (handle == nullptr || EX_CreateDefaultChoice(handle, "Saved", 3, 14) != 0) {
        return 1;
    }
    std::puts("saving");
    std::fflush(stdout);
    while (EX_CreateDefaultChoice(handle, "Saved", 3, 14) == 0) {
    }
    return 1;
}
