/* The embedded host for programs that have no PDF library of their own: open a document, hand its tables to TGX_init, run
 * the library's exports on it, save it. Plain C, usable from C++; nothing here throws.
 *
 *     const TGXInitParams init = {NULL, TGXHost_Tables};
 *     TGX_init(&init);
 *     PDDoc doc = TGXHost_OpenFile("in.pdf", NULL);
 *     size_t frames = TGXHost_FrameDepth();
 *     TGX_Action(doc, params);
 *     TGXHost_CutFrames(frames);
 *     TGXHost_SaveFile(doc, "out.pdf", NULL);
 *     TGXHost_Close(doc);
 *
 * One thread at a time. */
#ifndef TGX_EMBEDDED_HOST_H
#define TGX_EMBEDDED_HOST_H

#include "host.h"

#if defined(_WIN32)
#define TGX_HOST_EXPORT __declspec(dllexport)
#else
#define TGX_HOST_EXPORT __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* How to open; zero-initialise, then set `size` and what differs. A null pointer in the place of a record means all zero. */
typedef struct TGXHostOpenOptions {
  uint32_t size;        /* sizeof(TGXHostOpenOptions); another value is kASBadParameter */
  int32_t noRepair;     /* 1: a damaged file is refused; 0: what can be rebuilt is rebuilt */
  const char* password; /* of the user or the owner, zero-terminated; UTF-8 also where the file has it in an older encoding.
                           Null: only the empty one is tried. Ignored for a file that needs none */
} TGXHostOpenOptions;

/* How to save; zero-initialise, then set `size` and what differs. A null pointer means all zero. */
typedef struct TGXHostSaveOptions {
  uint32_t size;         /* sizeof(TGXHostSaveOptions); another value is kASBadParameter */
  int32_t linearize;     /* 1: laid out for reading over a network */
  int32_t deterministic; /* 1: the same input and edits give the same bytes; kASNotSupported for encrypted output */
  int32_t decrypt;       /* 1: written without the encryption of the input, which is otherwise kept as it is */
} TGXHostSaveOptions;

/* The tables: the same bundle on every call. Has the type that TGXInitParams wants. */
TGX_HOST_EXPORT const HostTables* TGXHost_Tables(void);

/* Opens a document: a regular file by the bytes of its path, which may be replaced or removed while it is open but not
 * changed in place, or a copy of bytes in memory, which messages call by `name` (may be null). Null on failure:
 * kASFileError for what the operating system refuses, kASDamagedDocument for what is no PDF file, cut short or beyond
 * repair, kASBadPassword, kASNotSupported for an unknown kind of encryption. The text names file and reason on one line. */
TGX_HOST_EXPORT PDDoc TGXHost_OpenFile(const char* path, const TGXHostOpenOptions* options);
TGX_HOST_EXPORT PDDoc TGXHost_OpenMemory(const void* data, size_t size, const char* name, const TGXHostOpenOptions* options);

/* What was found wrong with the file so far and repaired, ignored or lost, a line each; of very many the first thousand and
 * a last line that says so. An object that cannot be read is null to everybody, and a saved file does without it: a warning
 * is all that tells of the loss. Objects are read when they are first needed, the rest of them by saving, so ask after
 * saving as well. The texts are the host's, good until the document closes. 0 for a dead handle, null for an index past the
 * last. */
TGX_HOST_EXPORT size_t TGXHost_WarningCount(PDDoc document);
TGX_HOST_EXPORT const char* TGXHost_Warning(PDDoc document, size_t index);

/* Writes a document, which stays open and can be edited and saved again. 0, or the code of the failure; then the target
 * is as it was and no temporary file is left, also when the disk is full or a signal asks the program to end.
 *
 * The file is replaced as a whole, once it is on disk, and may be the one that the document was opened from. A symbolic
 * link stays one, and the file that it leads to is replaced; permission bits are kept. Streams that nobody edited keep
 * their bytes. Signals that end a program wait meanwhile and make the saving give up.
 *
 * The bytes of SaveMemory are the caller's, to be given back with TGXHost_FreeMemory; `data` and `size` are set only on
 * success. */
TGX_HOST_EXPORT int TGXHost_SaveFile(PDDoc document, const char* path, const TGXHostSaveOptions* options);
TGX_HOST_EXPORT int TGXHost_SaveMemory(PDDoc document, const TGXHostSaveOptions* options, void** data, size_t* size);
TGX_HOST_EXPORT void TGXHost_FreeMemory(void* data);

/* Closes a document without saving; every handle of it is dead from here on. Null and dead handles are ignored. */
TGX_HOST_EXPORT void TGXHost_Close(PDDoc document);

/* A failing call of the library can leave exception frames behind: note the depth before a call and cut back to it after. */
TGX_HOST_EXPORT size_t TGXHost_FrameDepth(void);
TGX_HOST_EXPORT void TGXHost_CutFrames(size_t depth);

/* Gives back the memory of the parsed content of pages that nobody changed. Only between calls of the library's exports. */
TGX_HOST_EXPORT void TGXHost_DropUnchangedContent(PDDoc document);

/* How many edits the document has seen since it was opened; putting in the place of a value the same value counts. Who asks
 * before and after a call of the library's exports learns whether the call changed anything. 0 for a dead handle. */
TGX_HOST_EXPORT size_t TGXHost_EditCount(PDDoc document);

/* Something that a page painted and does not paint any more, because an edit of its content took it away. */
typedef struct TGXHostRemovedContent {
  uint32_t size;         /* sizeof(TGXHostRemovedContent); another value is kASBadParameter */
  int32_t page;          /* index of the page, from 0 */
  int32_t kind;          /* kPDEText, kPDEPath, kPDEImage, kPDEForm, kPDEShading, kPDEXObject or kPDEPS */
  int32_t mcid;          /* of the innermost marked content around it that has one, else -1 */
  int32_t width, height; /* of an image, in samples; else 0 */
} TGXHostRemovedContent;

/* What the committed edits have taken off the pages since the document was opened, in the order of the commits: who notes
 * the number before a call of the library's exports sees what the call took away. A text that lost some of its characters
 * counts once for every commit that took some. RemovedContent gives 0, kASOutOfRange or kASBadParameter; RemovedContentBox
 * gives the bounding box as the page had it, in its user space. Only between calls of the library's exports. */
TGX_HOST_EXPORT size_t TGXHost_RemovedContentCount(PDDoc document);
TGX_HOST_EXPORT int TGXHost_RemovedContent(PDDoc document, size_t index, TGXHostRemovedContent* content);
TGX_HOST_EXPORT int TGXHost_RemovedContentBox(PDDoc document, size_t index, ASFixedRect* box);

/* Code (kAS... of host.h) and UTF-8 text of the last failure of a function above; 0 and empty after a success. The text
 * is the host's, never null, good until the next call of a function above. */
TGX_HOST_EXPORT int TGXHost_LastErrorCode(void);
TGX_HOST_EXPORT const char* TGXHost_LastError(void);

#ifdef __cplusplus
}
#endif

#endif
