#include "PMXTemplUI.h"

#include "frame/dialog_exports.h"
#include "frame/list_exports.h"
#include "frame/save_as.h"
#include "platform/module_state.h"
#include "store/levels.h"
#include "store/list_holder.h"

#include <functional>
#include <memory>
#include <new>

// The functions of PMXTemplUI.h: each makes the library's module state current, checks its arguments, and
// leaves the work to the functions of the neighbouring files.

namespace {

using pmx::CPMXTemplUIListDataArray;

constexpr std::int64_t Success = 0;
constexpr std::int64_t Failure = -1;

/// Runs an export's work with the library's module state. Lack of memory is the failure result; any other
/// failure passes on to the caller, whose state is restored before.
template <typename Result, typename Work>
Result InModule(Result failure, Work work) {
    Result result = failure;
    const auto guarded = [&] {
        try {
            result = work();
        } catch (const std::bad_alloc&) {
            result = failure;
        }
    };
    // By reference, so that the call itself needs no memory.
    pmx::SystemModuleStates().RunInside(std::ref(guarded));
    return result;
}

std::int64_t ResultOf(bool success) {
    return success ? Success : Failure;
}

bool IsMissing(const char* text) {
    return text == nullptr || *text == '\0';
}

CPMXTemplUIListDataArray* ListOf(void* handle) {
    return static_cast<CPMXTemplUIListDataArray*>(handle);
}

std::int64_t AddStandard(void* handle, const char* name, std::int64_t number, std::int64_t icon,
                         bool toolbar) {
    return InModule(Failure, [&] {
        if (handle == nullptr) {
            return Failure;
        }
        pmx::AddStandardFavorite(*ListOf(handle), name, number, icon, toolbar);
        return Success;
    });
}

} // namespace

extern "C" {

void* EX_CreateTemplList(const char* folder, const char* listFileName, const char* extension) {
    return InModule<void*>(nullptr, [&]() -> void* {
        return IsMissing(folder)
                   ? nullptr
                   : pmx::OpenList(folder, listFileName, extension, pmx::SystemStoreServices()).release();
    });
}

std::int64_t EX_DestroyTemplList(void* handle) {
    return InModule(Failure, [&] {
        const std::unique_ptr<CPMXTemplUIListDataArray> list(ListOf(handle));
        return ResultOf(list != nullptr);
    });
}

std::int64_t EX_GetTemplListSize(void* handle, std::int32_t level) {
    return InModule(Failure, [&] {
        if (handle == nullptr) {
            return Failure;
        }
        return pmx::CountQualifying(*ListOf(handle), level) * static_cast<std::int64_t>(sizeof(TemplInfo));
    });
}

std::int64_t EX_GetAllTemplInfo(void* handle, std::int32_t level, void* buffer, std::int64_t bufferSize,
                                std::int64_t* count) {
    return InModule(Failure, [&] {
        if (handle == nullptr || buffer == nullptr || bufferSize < 0 || count == nullptr) {
            return Failure;
        }
        *count = pmx::CopySummaries(*ListOf(handle), level, buffer);
        return Success;
    });
}

std::int64_t EX_CurTemplInfo(void* handle, std::int64_t position, std::int32_t part, void* buffer,
                             std::int64_t bufferSize) {
    return InModule(Failure, [&] {
        if (handle == nullptr || buffer == nullptr || bufferSize < 0) {
            return Failure;
        }
        return ResultOf(pmx::CopyTablePart(*ListOf(handle), position, part, buffer, bufferSize));
    });
}

std::int64_t EX_CreateDefaultTempl(void* handle, const char* name, std::int64_t number, std::int64_t icon) {
    return AddStandard(handle, name, number, icon, false);
}

std::int64_t EX_CreateDefaultChoice(void* handle, const char* name, std::int64_t number, std::int64_t icon) {
    return AddStandard(handle, name, number, icon, true);
}

std::int64_t EX_SaveAsTemplInfo(void* handle, std::int32_t mode, TemplInfo* info, const void* table,
                                std::int64_t tableSize, void* parentWindow) {
    return InModule(Failure, [&] {
        if (handle == nullptr || info == nullptr || table == nullptr || tableSize != PMX_TABLE_SIZE) {
            return Failure;
        }
        return static_cast<std::int64_t>(pmx::SaveAsFavorite(
            *ListOf(handle), mode, *info, table, pmx::OwnerOf(parentWindow), pmx::SystemDialogServices()));
    });
}

std::int64_t EX_ConvertChoiceData(const char* name, const char* folder, const char* listFileName,
                                  const char* extension, void* buffer, std::int32_t level) {
    return InModule(Failure, [&] {
        if (IsMissing(name) || IsMissing(folder) || IsMissing(listFileName) || IsMissing(extension) ||
            buffer == nullptr) {
            return Failure;
        }
        pmx::CPMXTemplUIListHolder holder(listFileName, extension, pmx::SystemStoreServices());
        return ResultOf(
            holder.Open(folder) &&
            holder.GetAttributeTable(name, level, *static_cast<_LM_DOCUMENTLAYOUTTABLE*>(buffer)));
    });
}

std::int64_t EX_ShowTemplateUI(const char* folder, void* parentWindow) {
    return InModule(Failure, [&] {
        return IsMissing(folder) ? Failure
                                 : pmx::ShowEditor(folder, pmx::OwnerOf(parentWindow),
                                                   pmx::SystemDialogServices(), pmx::SystemStoreServices());
    });
}

std::int64_t EX_ShowChoiceUIEntry(const char* folder, const char* listFileName, const char* extension,
                                  const void* table, std::int32_t level, void* parentWindow) {
    return InModule(Failure, [&] {
        if (IsMissing(folder) || IsMissing(listFileName) || IsMissing(extension)) {
            return Failure;
        }
        return pmx::ShowRegisterDialog(folder, listFileName, extension, table, level,
                                       pmx::OwnerOf(parentWindow), pmx::SystemDialogServices(),
                                       pmx::SystemStoreServices());
    });
}

std::int64_t EX_ShowChoiceUIBasic(const char* folder, const char* listFileName, const char* extension,
                                  void* parentWindow) {
    return InModule(Failure, [&] {
        if (IsMissing(folder) || IsMissing(listFileName) || IsMissing(extension)) {
            return Failure;
        }
        return pmx::ShowBasicList(folder, listFileName, extension, pmx::OwnerOf(parentWindow),
                                  pmx::SystemDialogServices(), pmx::SystemStoreServices());
    });
}

} // extern "C"
