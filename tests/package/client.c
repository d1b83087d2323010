/* A client of the package in C for Microsoft's binary interface, which nothing but the system is linked to besides the
 * library. Its exit code is 0 when a standard favorite can be made in the current folder and read. */
#include <PMXTemplUI.h>

#include <stddef.h>

__declspec(dllimport) unsigned long GetCurrentDirectoryA(unsigned long size, char* path);
__declspec(dllimport) void ExitProcess(unsigned int code);

static unsigned char Table[PMX_TABLE_SIZE];

static unsigned int FirstFailure(void) {
    char folder[260];
    GetCurrentDirectoryA(sizeof folder, folder);
    void* list = EX_CreateTemplList(folder, NULL, NULL);
    if (list == NULL) {
        return 1;
    }
    if (EX_CreateDefaultChoice(list, "Booklet", 4, 4) != 0) {
        return 2;
    }
    if (EX_GetTemplListSize(list, PMX_LEVEL_DOCUMENT + PMX_LEVEL_STANDARD) != sizeof(TemplInfo)) {
        return 3;
    }
    if (EX_CurTemplInfo(list, 0, PMX_LEVEL_DOCUMENT, Table, sizeof Table) != 0) {
        return 4;
    }
    return EX_DestroyTemplList(list) == 0 ? 0 : 5;
}

void mainCRTStartup(void) {
    ExitProcess(FirstFailure());
}
