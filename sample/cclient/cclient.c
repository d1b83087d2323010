/* The shortest way to use the favorites library, in plain C: load the DLL by its name, open a folder, list
 * its favorites and fetch the print attributes of each. Usage: PmxCClient FOLDER */
#include <PMXTemplUI.h>

#include <stdbool.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>

#include <windows.h>

typedef void (*Function)(void);
typedef void* (*CreateTemplList)(const char* folder, const char* listFileName, const char* extension);
typedef int64_t (*DestroyTemplList)(void* handle);
typedef int64_t (*GetTemplListSize)(void* handle, int32_t level);
typedef int64_t (*GetAllTemplInfo)(void* handle, int32_t level, void* buffer, int64_t bufferSize,
                                   int64_t* count);
typedef int64_t (*CurTemplInfo)(void* handle, int64_t position, int32_t part, void* buffer,
                                int64_t bufferSize);
typedef int64_t (*CreateDefaultChoice)(void* handle, const char* name, int64_t number, int64_t icon);

/* The functions of the library that a program without dialogs needs. */
typedef struct {
    CreateTemplList Create;
    DestroyTemplList Destroy;
    GetTemplListSize Size;
    GetAllTemplInfo Infos;
    CurTemplInfo Table;
    CreateDefaultChoice AddStandard;
} Library;

/* A standard favorite and favorites of the user alike: level 1 and 101. */
enum { Level = PMX_LEVEL_DOCUMENT + PMX_LEVEL_STANDARD };

static Function Find(HMODULE module, const char* name) {
    Function function = (Function)GetProcAddress(module, name);
    if (function == NULL) {
        fprintf(stderr, "%s is missing\n", name);
        exit(EXIT_FAILURE);
    }
    return function;
}

static Library Load(const char* fileName) {
    /* Beside this program or in the system, and not in the current folder, which may be anybody's. */
    HMODULE module = LoadLibraryExA(fileName, NULL, LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
    if (module == NULL) {
        fprintf(stderr, "%s cannot be loaded: error %lu\n", fileName, GetLastError());
        exit(EXIT_FAILURE);
    }
    Library library = {
        .Create = (CreateTemplList)Find(module, "EX_CreateTemplList"),
        .Destroy = (DestroyTemplList)Find(module, "EX_DestroyTemplList"),
        .Size = (GetTemplListSize)Find(module, "EX_GetTemplListSize"),
        .Infos = (GetAllTemplInfo)Find(module, "EX_GetAllTemplInfo"),
        .Table = (CurTemplInfo)Find(module, "EX_CurTemplInfo"),
        .AddStandard = (CreateDefaultChoice)Find(module, "EX_CreateDefaultChoice"),
    };
    return library;
}

/* Prints one favorite with a sum over its attribute table; false when the table cannot be read. */
static bool Show(const Library* library, void* list, const TemplInfo* info) {
    unsigned char table[PMX_TABLE_SIZE];
    if (library->Table(list, info->Position, PMX_LEVEL_DOCUMENT, table, sizeof table) != 0) {
        fprintf(stderr, "favorite %lld cannot be read\n", (long long)info->Position);
        return false;
    }
    unsigned long sum = 0;
    for (size_t index = 0; index < sizeof table; ++index) {
        sum = sum * 31 + table[index];
    }
    printf("%lld\t%s\t%s\t%08lx\n", (long long)info->Position, info->Name,
           info->Toolbar != 0 ? "toolbar" : "-", sum);
    return true;
}

/* Shows all favorites; false when one of them, or the list, cannot be read. */
static bool ShowAll(const Library* library, void* list) {
    const int64_t size = library->Size(list, Level);
    TemplInfo* infos = malloc(size > 0 ? (size_t)size : 1);
    int64_t count = 0;
    bool good = infos != NULL && library->Infos(list, Level, infos, size, &count) == 0;
    for (int64_t index = 0; good && index < count; ++index) {
        good = Show(library, list, &infos[index]);
    }
    free(infos);
    return good && count > 0;
}

int main(int count, char** arguments) {
    if (count != 2) {
        fprintf(stderr, "usage: PmxCClient FOLDER\n");
        return EXIT_FAILURE;
    }
    const Library library = Load("PMXTemplUI.dll");
    void* list = library.Create(arguments[1], NULL, NULL);
    if (list == NULL) {
        fprintf(stderr, "%s cannot be opened\n", arguments[1]);
        return EXIT_FAILURE;
    }
    if (library.Size(list, Level) == 0) {
        library.AddStandard(list, "Two pages", 3, 3);
        library.AddStandard(list, "Booklet", 4, 4);
    }
    const bool good = ShowAll(&library, list);
    library.Destroy(list);
    return good ? EXIT_SUCCESS : EXIT_FAILURE;
}
