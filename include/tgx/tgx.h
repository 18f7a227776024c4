/* The exported functions of libtgx, their records and their result codes. Plain C, usable from C++.
 *
 * An application hands over the function tables of its PDF library once with TGX_init, and then calls TGX_Action or
 * TGX_Fixups on documents that it keeps open. The library edits a document in place and never saves it. All calls are
 * made on one thread, one at a time. */
#ifndef TGX_TGX_H
#define TGX_TGX_H

#include <stddef.h>
#include <stdint.h>

#include "host.h"

#if defined(_WIN32)
#define TGX_EXPORT __declspec(dllexport)
#else
#define TGX_EXPORT __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Results of TGX_Action and TGX_Fixups. */
enum {
  TGX_OK = 0,             /* ran, and where the operation gives a verdict, the verdict was success */
  TGX_FAILED = 2,         /* the operation reported failure, or an exception ended it; only then is there an error text */
  TGX_UNKNOWN_ACTION = 3, /* TGX_Action: the number is outside 0 to 18, or this version has no operation of that number */
  TGX_NO_PATH = 4         /* TGX_Action: the operation takes a path, and its address is null */
};

/* What TGX_init takes; copied by the call, so the record may die after it. */
typedef struct TGXInitParams {
  ASExtension extensionId; /* 0: the client's identity; handed back to every host operation that asks for it */
  const HostTables* (*getHostTables)(void); /* 8: gives the host's tables; called anew for every host operation */
} TGXInitParams;

/* What TGX_Action takes. Allocate the record with room for the whole path behind `action`. */
typedef struct TGXActionParams {
  uint32_t reserved; /* 0: never read */
  int32_t action;    /* 4: 0 to 18 */
  char path[1]; /* 8: zero-terminated path in the operating system's bytes, stored in the record itself; read only by the
                      actions that take one */
} TGXActionParams;

/* What TGX_Fixups takes. */
typedef struct TGXFixupParams {
  uint32_t reserved; /* 0: never read */
  uint32_t mask;     /* 4: a bit a fix; unknown bits are ignored */
} TGXFixupParams;

#ifdef __cplusplus
static_assert(offsetof(TGXInitParams, extensionId) == 0 && offsetof(TGXInitParams, getHostTables) == 8);
static_assert(sizeof(TGXInitParams) == 16);
static_assert(offsetof(TGXActionParams, reserved) == 0 && offsetof(TGXActionParams, action) == 4);
static_assert(offsetof(TGXActionParams, path) == 8);
static_assert(offsetof(TGXFixupParams, reserved) == 0 && offsetof(TGXFixupParams, mask) == 4);
static_assert(sizeof(TGXFixupParams) == 8);
#endif

/* Stores the client's identity and the way to the host's tables. Checks nothing and always returns 0; a later call replaces
 * both. Must come before the first TGX_Action or TGX_Fixups. `params` may not be null. */
TGX_EXPORT int TGX_init(const TGXInitParams* params);

/* Runs one action on an open document. Returns one of the result codes above; what was changed before a failure stays in the
 * document. The document stays the caller's; the library opens, closes and saves nothing of it. */
TGX_EXPORT int TGX_Action(PDDoc document, const TGXActionParams* params);

/* Runs the fixes whose bits are set in `params->mask`, in a fixed order, and stops at the first that fails (result 2). */
TGX_EXPORT int TGX_Fixups(PDDoc document, const TGXFixupParams* params);

/* The text of the last hard failure in UTF-8; empty after a success and after an operation that reported failure without a
 * text. Never null. Owned by the library, good until the next TGX_Action or TGX_Fixups. */
TGX_EXPORT const char* TGX_GetLastError(void);

#ifdef __cplusplus
}
#endif

#endif
