// A host that another compiler than the library's built, with a document model that the same compiler built. Its exit
// code is 0, or the number of the first expectation that failed. The current folder holds one favorite of the user.
#include "PMXTemplUI.h"
#include "foreign/raising_document.h"

extern "C" {
__declspec(dllimport) int GetCurrentActCtx(void** context);
__declspec(dllimport) unsigned long GetCurrentDirectoryA(unsigned long size, char* path);
__declspec(dllimport) void* SetUnhandledExceptionFilter(long (*filter)(void* exception));
[[noreturn]] __declspec(dllimport) void ExitProcess(unsigned int code);
}

namespace {

void* CurrentContext() {
    void* context = nullptr;
    GetCurrentActCtx(&context);
    return context;
}

/// Counts itself, so that it shows whether an exception destroys the objects that it passes.
class Counted {
public:
    explicit Counted(int& living) : Living(living) { ++Living; }
    ~Counted() { --Living; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

private:
    int& Living;
};

unsigned char Table[PMX_TABLE_SIZE];

int64_t Fetch(void* list, int& living) {
    const Counted counted(living);
    return EX_CurTemplInfo(list, 0, PMX_LEVEL_DOCUMENT, Table, sizeof Table);
}

bool IsRaised(void* list, int& living) {
    try {
        Fetch(list, living);
    } catch (const HostError& error) {
        return error.Place == RaiseInGetTable;
    }
    return false;
}

#ifdef _MSC_VER
bool IsFaulting(void* list, int& living) {
    __try {
        Fetch(list, living);
    } __except (1) {
        return true;
    }
    return false;
}
#endif

long EndAtOnce(void*) {
    ExitProcess(100);
}

int FirstFailure() {
    SetUnhandledExceptionFilter(EndAtOnce);
    char folder[1024];
    GetCurrentDirectoryA(sizeof folder, folder);
    void* const context = CurrentContext();
    int living = 0;
    void* const list = EX_CreateTemplList(folder, nullptr, nullptr);
    if (list == nullptr) {
        return 1;
    }
    for (int round = 0; round < 100; ++round) {
        RaiseAt(RaiseInLoad);
        if (Fetch(list, living) != -1) {
            return 2;
        }
        RaiseAt(FaultInLoad);
        if (Fetch(list, living) != -1) {
            return 3;
        }
    }
    for (int round = 0; round < 100; ++round) {
        RaiseAt(RaiseInGetTable);
        if (!IsRaised(list, living)) {
            return 4;
        }
        if (living != 0) {
            return 5;
        }
        if (CurrentContext() != context) {
            return 6;
        }
    }
#ifdef _MSC_VER // GCC has no __try
    RaiseAt(FaultInGetTable);
    if (!IsFaulting(list, living)) {
        return 7;
    }
    if (CurrentContext() != context) {
        return 8;
    }
#endif
    RaiseAt(RaiseNowhere);
    if (Fetch(list, living) != 0 || Table[0] != 7) {
        return 9;
    }
    return EX_DestroyTemplList(list) == 0 ? 0 : 10;
}

} // namespace

#ifdef _MSC_VER
extern "C" void mainCRTStartup() {
    ExitProcess(static_cast<unsigned int>(FirstFailure()));
}
#else
int main() {
    return FirstFailure();
}
#endif
