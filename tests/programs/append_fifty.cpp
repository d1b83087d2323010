// Fifty times opens a folder, adds a standard favorite to its list and closes it again. The favorites are
// named after the process and counted from 0. Says so by a line on the standard output after the first. Usage:
// pmx_append_fifty folder

#include "PMXTemplUI.h"

#include <cstdio>
#include <string>

#ifdef _WIN32
#include <process.h>
#define getpid _getpid
#else
#include <unistd.h>
#endif

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2) {
        return 2;
    }
    for (int number = 0; number < 50; ++number) {
        const std::string name = std::to_string(getpid()) + "-" + std::to_string(number);
        void* const handle = EX_CreateTemplList(arguments[1], nullptr, nullptr);
        if (handle == nullptr || EX_CreateDefaultTempl(handle, name.c_str(), 3, 14) != 0) {
            return 1;
        }
        EX_DestroyTemplList(handle);
        if (number == 0) {
            std::puts("appending");
            std::fflush(stdout);
        }
    }
    return 0;
}
