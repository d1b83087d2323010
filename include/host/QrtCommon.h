#ifndef PMX_HOST_QRTCOMMON_H
#define PMX_HOST_QRTCOMMON_H

/*
 * QrtCommon: the host's common helpers, as far as the favorites library uses them. The host supplies these
 * functions in QrtCommon.dll; the favorites library links against them.
 *
 * Calling convention: the platform's C convention. Strings: narrow, zero-terminated, in the system's
 * multibyte code page.
 */

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Non-zero when the name can be used as a file name as it stands: it is not empty and holds none of the
 * characters \ / : * ? " < > | as characters of their own (second bytes of double-byte characters do not
 * count). */
int32_t CheckFileName(const char* name);

/* An open file; opaque. */
typedef struct QrtFile QrtFile;

/* Opens an existing file; mode 0 is reading. Returns 1 and the file in *file, which the caller gives up with
 * QrtFileClose; any other value, and null in *file, on failure. */
int32_t QrtFileOpen(const char* path, int32_t mode, QrtFile** file);

/* Size in bytes of an open file, -1 when it cannot be told. */
int64_t QrtFileGetSize(const QrtFile* file);

/* Closes a file. Null is allowed and does nothing. */
void QrtFileClose(QrtFile* file);

#ifdef __cplusplus
}
#endif

#endif
