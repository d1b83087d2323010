// Opens a file without sharing it, says so by a line on the standard output, and holds it until the standard
// input ends. Usage: pmx_hold_file path

#include "platform/files.h"

#include <cstdio>

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2) {
        return 2;
    }
    pmx::OpenRequest request;
    request.Path = arguments[1];
    const pmx::OpenResult result = pmx::SystemFiles().Open(request);
    if (!result.File) {
        return 1;
    }
    std::puts("held");
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    return 0;
}
