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

#ifdef __cplusplus
}
#endif

#endif
