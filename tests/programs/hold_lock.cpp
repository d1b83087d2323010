// Takes the lock of a file, says so by a line on the standard output, and holds it until the standard input
// ends. Usage: pmx_hold_lock path

#include "platform/files.h"

#include <cstdio>

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2) {
        return 2;
    }
    const pmx::LockResult lock = pmx::SystemFiles().Lock(arguments[1]);
    if (!lock.Lock) {
        return 1;
    }
    std::puts("held");
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    return 0;
}
