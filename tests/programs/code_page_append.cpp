// Opens the favorites of folders, appends a standard favorite to each and closes them again, as a host does. Says
// under which code page it ran. Usage: pmx_code_page_append folder...

#include "PMXTemplUI.h"

#include <cstdio>

#include <windows.h>

int main(int argumentCount, char** arguments) {
    std::printf("%u\n", GetACP());
    for (int position = 1; position < argumentCount; ++position) {
        void* const handle = EX_CreateTemplList(arguments[position], nullptr, nullptr);
        const bool isAppended = handle != nullptr && EX_CreateDefaultTempl(handle, "Added", 3, 5) == 0;
        if (EX_DestroyTemplList(handle) != 0 || !isAppended) {
            return 1;
        }
    }
    return 0;
}
