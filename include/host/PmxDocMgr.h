#ifndef PMX_HOST_PMXDOCMGR_H
#define PMX_HOST_PMXDOCMGR_H

/*
 * PmxDocMgr: the host's document model, as far as the favorites library uses it. The host supplies these
 * functions in PmxDocMgr.dll; the favorites library links against them.
 *
 * Calling convention: the platform's C convention. Strings: narrow, zero-terminated, in the system's
 * multibyte code page. Results: non-zero means success, 0 failure, unless stated. A function may also raise
 * an error (a C++ exception or a structured exception); the favorites library treats that as failure.
 */

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Size in bytes of the attribute table _LM_DOCUMENTLAYOUTTABLE. */
#define PMX_DOCUMENT_TABLE_SIZE 8657

/* A document in memory; opaque. */
typedef struct PmxDocument PmxDocument;

/* Makes a document with the host's fresh setting. The caller owns it and gives it up with PmxDocumentDestroy.
 * Null when it cannot be made. */
PmxDocument* PmxDocumentCreate(void);

/* Destroys a document. Null is allowed and does nothing. */
void PmxDocumentDestroy(PmxDocument* document);

/* Makes the content of `target` (table, level, name) equal to that of `source`. Neither is null. */
int32_t PmxDocumentAssign(PmxDocument* target, const PmxDocument* source);

/* Reads a favorite file. `options` is reserved and null. On failure the document keeps its content. */
int32_t PmxDocumentLoad(PmxDocument* document, const char* path, const void* options);

/* Writes a favorite file, replacing an existing one whole; on failure the former file stays. For a new
   favorite the library has made an empty file already, so that nobody else takes the name. */
int32_t PmxDocumentSave(PmxDocument* document, const char* path);

/* The attribute level, 1 document, 2 section, 3 sheet, 4 face, 5 page. */
int32_t PmxDocumentGetTemplateLevel(const PmxDocument* document);
void PmxDocumentSetTemplateLevel(PmxDocument* document, int32_t level);

/* Copies the attribute table out, PMX_DOCUMENT_TABLE_SIZE bytes. */
void PmxDocumentGetTable(const PmxDocument* document, void* table);

/* Takes over an attribute table of PMX_DOCUMENT_TABLE_SIZE bytes. `flag` is always 0 from the favorites
 * library. */
int32_t PmxDocumentSetTable(PmxDocument* document, const void* table, int32_t flag);

/* The favorite's name inside the document. The pointer stays valid until the name changes or the document is
 * destroyed; never null. */
const char* PmxDocumentGetName(const PmxDocument* document);

/* Sets the name; the text is copied. */
int32_t PmxDocumentSetName(PmxDocument* document, const char* name);

/* Standard settings: two pages up on both sides; booklet with saddle stitching; both sides, bound at the
 * upper left. */
void PmxDocumentCmd2upDuplex(PmxDocument* document);
void PmxDocumentCmdBookletSaddleStapler(PmxDocument* document);
void PmxDocumentCmdDuplexUpperLeft(PmxDocument* document);

#ifdef __cplusplus
}
#endif

#endif
