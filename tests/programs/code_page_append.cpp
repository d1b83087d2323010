// Opens the favorites of a folder, appends a standard favorite and closes them again, as a host does. Says
// under which code page it ran. Usage: pmx_code_page_append folder

#include "PMXTemplUI.h"

#include <cstdio>

#include <windows.h>

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2) {
        return 2;
    }
    std::printf("%u\n", GetACP());
    void* const handle = EX_CreateTemplList(arguments[1], nullptr, nullptr);
    const bool isAppended = handle != nullptr && EX_CreateDefaultTempl(handle, "Added", 3, 5) == 0;
    return EX_DestroyTemplList(handle) == 0 && isAppended ? 0 : 1;
}
