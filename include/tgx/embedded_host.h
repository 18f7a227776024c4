/* The embedded host for programs that have no PDF library of their own: open a document, hand its tables to TGX_init, run the
 * library's exports on it, save it. Plain C, usable from C++; nothing here throws.
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

/* How to open; zero-initialise, then set `size` and what differs. A null pointer in the place of a record means all zero, with
 * repair. */
typedef struct TGXHostOpenOptions {
  uint32_t size;        /* sizeof(TGXHostOpenOptions) */
  int32_t noRepair;     /* 1: a damaged file is refused, not repaired */
  const char* password; /* user or owner password, zero-terminated bytes; null: only the empty one is tried */
} TGXHostOpenOptions;

/* How to save; zero-initialise, then set `size` and what differs. Null means all zero. */
typedef struct TGXHostSaveOptions {
  uint32_t size;         /* sizeof(TGXHostSaveOptions) */
  int32_t linearize;     /* 1: laid out for reading over a network */
  int32_t deterministic; /* 1: the same input gives the same bytes; refused for encrypted output */
  int32_t decrypt;       /* 1: written without the input's encryption, which is otherwise kept */
} TGXHostSaveOptions;

/* The tables: the same bundle on every call. Has the type that TGXInitParams wants. */
TGX_HOST_EXPORT const HostTables* TGXHost_Tables(void);

/* Opens a document. Null on failure; see TGXHost_LastError. The bytes of OpenMemory are copied; `name` is what messages call
 * the document. */
TGX_HOST_EXPORT PDDoc TGXHost_OpenFile(const char* path, const TGXHostOpenOptions* options);
TGX_HOST_EXPORT PDDoc TGXHost_OpenMemory(const void* data, size_t size, const char* name, const TGXHostOpenOptions* options);

/* Saves a document, which stays open. 0, or the code of the failure; then the target is as it was and no temporary file is
 * left. The bytes of SaveMemory are the caller's, to be given back with TGXHost_FreeMemory. */
TGX_HOST_EXPORT int TGXHost_SaveFile(PDDoc document, const char* path, const TGXHostSaveOptions* options);
TGX_HOST_EXPORT int TGXHost_SaveMemory(PDDoc document, const TGXHostSaveOptions* options, void** data, size_t* size);
TGX_HOST_EXPORT void TGXHost_FreeMemory(void* data);

/* Closes a document without saving; every handle of it is dead from here on. A dead handle is ignored. */
TGX_HOST_EXPORT void TGXHost_Close(PDDoc document);

/* A failing call of the library can leave exception frames behind: note the depth before a call and cut back to it after. */
TGX_HOST_EXPORT size_t TGXHost_FrameDepth(void);
TGX_HOST_EXPORT void TGXHost_CutFrames(size_t depth);

/* Gives back the memory of the parsed content of pages that nobody changed. Only between calls of the library's exports. */
TGX_HOST_EXPORT void TGXHost_DropUnchangedContent(PDDoc document);

/* Code (kAS... of host.h) and UTF-8 text of the last failure of a function of this header; 0 and empty after a success. The
 * text is the host's, good until the next call of a function of this header. */
TGX_HOST_EXPORT int TGXHost_LastErrorCode(void);
TGX_HOST_EXPORT const char* TGXHost_LastError(void);

#ifdef __cplusplus
}
#endif

#endif
