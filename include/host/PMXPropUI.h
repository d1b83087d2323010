#ifndef PMX_HOST_PMXPROPUI_H
#define PMX_HOST_PMXPROPUI_H

/*
 * PMXPropUI: the host's print-attribute dialog, looked up at run time by the favorites editor. Without it the
 * editor reports that the dialog cannot be shown when it is needed.
 */

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* What EX_ShowPropUI returns; any other value is an error. */
#define PMX_PROPUI_OK 1
#define PMX_PROPUI_CANCEL 2

/* Runs the print-attribute dialog modally.
 *
 * mode, flag: always 1.
 *
 * kind: 0 document, 1 section, 2 sheet, 3 face, 4 page.
 *
 * tablePart: the part of an attribute table that belongs to the kind, not null. It runs to the table's end,
 * so its length is 8657 less the part's start (0, 82, 126, 150, 2221). Read at opening, changed only on OK.
 *
 * parentWindow: owner window of the dialog (an HWND), may be null.
 *
 * reserved1 to reserved3: always 0.
 */
typedef int32_t (*PmxShowPropUI)(int32_t mode, int32_t kind, void* tablePart, int32_t flag,
                                 void* parentWindow, int64_t reserved1, int64_t reserved2, int64_t reserved3);

/* File name and entry name under which the function is looked up. */
#define PMX_PROPUI_LIBRARY "PMXPropUI.dll"
#define PMX_PROPUI_ENTRY "EX_ShowPropUI"

#ifdef __cplusplus
}
#endif

#endif
