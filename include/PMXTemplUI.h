#ifndef PMXTEMPLUI_H
#define PMXTEMPLUI_H

/*
 * PMXTemplUI: the favorites of a print-layout application.
 *
 * Plain C, usable from C11 and C++. Every function follows the platform's C calling convention and is
 * exported under its undecorated name.
 *
 * Strings are narrow and zero-terminated, in the system's multibyte code page. Pointers to input are read
 * during the call only. "Required" strings may be neither null nor empty.
 *
 * All functions are meant for the host's user-interface thread; a list handle has no lock of its own. Every
 * function makes the library's own resources current for the thread and restores the caller's before it
 * returns.
 *
 * Failure is a return value; a refused argument changes nothing. No data function shows anything to the user.
 * Where an error that the host's own libraries raise is not stated to be a failure result, it passes on to
 * the caller.
 */

#include "PMXTemplUIVersion.h"

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Attribute levels. A value above 100 (level + 100) marks a standard favorite. */
enum {
    PMX_LEVEL_DOCUMENT = 1,
    PMX_LEVEL_SECTION = 2,
    PMX_LEVEL_SHEET = 3,
    PMX_LEVEL_FACE = 4,
    PMX_LEVEL_PAGE = 5,
    PMX_LEVEL_STANDARD = 100
};

/* The attribute table: its size in bytes, and where each level's part starts. Every part runs to the table's
 * end. */
enum {
    PMX_TABLE_SIZE = 8657,
    PMX_TABLE_DOCUMENT_START = 0,
    PMX_TABLE_SECTION_START = 82,
    PMX_TABLE_SHEET_START = 126,
    PMX_TABLE_FACE_START = 150,
    PMX_TABLE_PAGE_START = 2221
};

/* Sizes in bytes of the texts of TemplInfo, the terminating zero included. */
enum { PMX_TEMPLINFO_TEXT_SIZE = 260 };

#pragma pack(push, 1)
/* Summary of one favorite: 548 bytes, packed, little-endian. Bytes that are not written are zero. */
typedef struct TemplInfo {
    int64_t Position;                   /* 0-based position in the whole list, not among those copied out */
    uint32_t Standard;                  /* 1 standard favorite, 0 user favorite */
    int32_t Level;                      /* 1 to 5, or above 100 */
    char Name[PMX_TEMPLINFO_TEXT_SIZE]; /* cut to 259 bytes, never inside a double-byte character */
    char FilePath[PMX_TEMPLINFO_TEXT_SIZE]; /* user favorite: folder, two separators, file name;
                                               standard favorite: its standard number in decimal */
    int32_t Toolbar;                        /* 1 on the host's toolbar */
    int64_t IconIndex;                      /* image in the icon strips */
} TemplInfo;
#pragma pack(pop)

/* Opens the favorites editor on `folder` (required; cut to its first 519 bytes), modal to `parentWindow` (an
 * HWND, may be null). 0 when the user accepted, 1 when the user cancelled, -1 on failure. */
int64_t EX_ShowTemplateUI(const char* folder, void* parentWindow);

/* Opens the favorites of `folder` (required; an existing folder). `listFileName` and `extension` may be null
 * for "PmxTempleList.ini" and ".pmt". A missing list file is an empty list. Returns a list handle, to be
 * given up with EX_DestroyTemplList, or null. */
void* EX_CreateTemplList(const char* folder, const char* listFileName, const char* extension);

/* Closes a list handle; it is invalid from then on. 0, or -1 for null. */
int64_t EX_DestroyTemplList(void* handle);

/* Bytes that EX_GetAllTemplInfo writes for the same `level`: 548 for each favorite. -1 for a null handle.
 * Level 1 to 5: the user favorites of that level. Level 101 to 105: those, and the standard favorites of that
 * level whose number is 1 to 5. */
int64_t EX_GetTemplListSize(void* handle, int32_t level);

/* Copies the summaries of the favorites of `level` to `buffer` and their number to `count`. `buffer` must
 * have the size that EX_GetTemplListSize reported: `bufferSize`, in bytes, is refused when negative and
 * otherwise not looked at. 0, or -1. */
int64_t EX_GetAllTemplInfo(void* handle, int32_t level, void* buffer, int64_t bufferSize, int64_t* count);

/* Copies the part of the attribute table that belongs to level `part` (1 to 5) of the favorite at `position`
 * (as in TemplInfo). `bufferSize` must be the part's exact length: PMX_TABLE_SIZE less its start. The
 * favorite is loaded at the first call and kept until the handle is closed. 0, or -1 with the buffer
 * unchanged. */
int64_t EX_CurTemplInfo(void* handle, int64_t position, int32_t part, void* buffer, int64_t bufferSize);

/* Appends a standard favorite of level 101, off the toolbar, and rewrites the list file. `name` null counts
 * as empty. `number` is the standard number: 1 and 2 the host's fresh setting, 3 two pages up on both sides,
 * 4 booklet with saddle stitching, 5 both sides bound at the upper left. `icon` is the image in the icon
 * strips. 0, also when the list file could not be written; -1 for a null handle or lack of memory. */
int64_t EX_CreateDefaultTempl(void* handle, const char* name, int64_t number, int64_t icon);

/* The same, on the toolbar. */
int64_t EX_CreateDefaultChoice(void* handle, const char* name, int64_t number, int64_t icon);

/* Asks for a name and stores the attribute table `table` (`tableSize` must be PMX_TABLE_SIZE) as a favorite
 * of `info`'s level: a new one when `mode` is 1, otherwise over the one at `info`'s position, which must have
 * been loaded with EX_CurTemplInfo. `info` is updated. Rewrites the list file. 0 saved, 1 cancelled, -1 on
 * failure. */
int64_t EX_SaveAsTemplInfo(void* handle, int32_t mode, TemplInfo* info, const void* table, int64_t tableSize,
                           void* parentWindow);

/* Opens the register dialog: stores `table` (PMX_TABLE_SIZE bytes) at `level` (1 to 5) as a favorite on the
 * toolbar. The three strings are required. 0 accepted, 1 cancelled, -1 on failure. */
int64_t EX_ShowChoiceUIEntry(const char* folder, const char* listFileName, const char* extension,
                             const void* table, int32_t level, void* parentWindow);

/* Copies the attribute table of the user favorite called `name` (exact, case-sensitive) to `buffer`,
 * PMX_TABLE_SIZE bytes beginning with the part of `level` (1 to 5), which must be the favorite's level; bytes
 * beyond the table's end are zero. The four strings are required. 0, or -1 with the buffer unchanged. */
int64_t EX_ConvertChoiceData(const char* name, const char* folder, const char* listFileName,
                             const char* extension, void* buffer, int32_t level);

/* Opens the basic favorites list. The three strings are required. 0 accepted, 1 cancelled, -1 on failure. */
int64_t EX_ShowChoiceUIBasic(const char* folder, const char* listFileName, const char* extension,
                             void* parentWindow);

#ifdef __cplusplus
}
#endif

#endif
