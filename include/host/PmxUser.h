#ifndef PMX_HOST_PMXUSER_H
#define PMX_HOST_PMXUSER_H

/*
 * PmxUser: an optional library of the host, looked up at run time when the favorites library is loaded.
 * Without it, or without this entry, the favorites library uses its own built-in (Japanese) resources.
 *
 * EX_LoadDefaultResourceDLL: given the favorites library's module handle and the tag "ENU", returns the
 * handle of a loaded resource library from which dialogs, strings and bitmaps are to be taken, or null for
 * the built-in ones. Which library that is, the host decides. The favorites library never releases it.
 */

#ifdef __cplusplus
extern "C" {
#endif

typedef void* (*PmxLoadDefaultResourceDLL)(void* instance, const char* tag);

/* File name and entry name under which the function is looked up. */
#define PMX_USER_LIBRARY "PmxUser.dll"
#define PMX_USER_ENTRY "EX_LoadDefaultResourceDLL"

#ifdef __cplusplus
}
#endif

#endif
