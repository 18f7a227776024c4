/* Calls every function of the public headers from C: that they compile and link as C is what this is about. Takes the path
 * of a tagged PDF file; tells the first call that did not do what it should. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <tgx/embedded_host.h>
#include <tgx/tgx.h>

#define CHECK(condition)                                                                                 \
  do {                                                                                                   \
    if (!(condition)) {                                                                                  \
      fprintf(stderr, "line %d: %s; host: %s; library: %s\n", __LINE__, #condition, TGXHost_LastError(), \
              TGX_GetLastError());                                                                       \
      exit(1);                                                                                           \
    }                                                                                                    \
  } while (0)

static void RunLibrary(PDDoc document) {
  const TGXActionParams unknown = {0, 19, {0}};
  const TGXActionParams removeEmptyTags = {0, 6, {0}};
  const TGXFixupParams nothing = {0, 0};
  const size_t frames = TGXHost_FrameDepth();
  CHECK(TGX_Action(document, &unknown) == TGX_UNKNOWN_ACTION);
  CHECK(TGX_Action(document, &removeEmptyTags) == TGX_OK);
  CHECK(TGX_Fixups(document, &nothing) == TGX_OK);
  CHECK(TGX_GetLastError()[0] == '\0');
  TGXHost_CutFrames(frames);
  CHECK(TGXHost_FrameDepth() == frames);
  TGXHost_DropUnchangedContent(document);
  CHECK(TGXHost_LastErrorCode() == kASNoError);
}

static void Save(PDDoc document) {
  TGXHostSaveOptions options = {sizeof(TGXHostSaveOptions), 0, 1, 0};
  TGXHostOpenOptions strict = {sizeof(TGXHostOpenOptions), 1, NULL};
  char folder[] = "/tmp/tgx-c-XXXXXX";
  char path[64];
  void* data = NULL;
  size_t size = 0;
  PDDoc again;

  CHECK(mkdtemp(folder) != NULL);
  snprintf(path, sizeof path, "%s/out.pdf", folder);
  CHECK(TGXHost_SaveFile(document, path, &options) == kASNoError);
  again = TGXHost_OpenFile(path, &strict);
  remove(path);
  rmdir(folder);
  CHECK(again != NULL);
  TGXHost_Close(again);

  CHECK(TGXHost_SaveMemory(document, NULL, &data, &size) == kASNoError);
  CHECK(size > 0 && memcmp(data, "%PDF-", 5) == 0);
  again = TGXHost_OpenMemory(data, size, "copy", NULL);
  TGXHost_FreeMemory(data);
  CHECK(again != NULL);
  TGXHost_Close(again);
}

int main(int count, char** arguments) {
  const TGXInitParams init = {NULL, TGXHost_Tables};
  PDDoc document;
  if (count != 2) return 2;
  CHECK(TGX_init(&init) == TGX_OK);
  CHECK(TGXHost_OpenFile("/nowhere/missing.pdf", NULL) == NULL);
  CHECK(TGXHost_LastErrorCode() == kASFileError);
  CHECK(strstr(TGXHost_LastError(), "missing.pdf") != NULL);

  document = TGXHost_OpenFile(arguments[1], NULL);
  CHECK(document != NULL);
  CHECK(TGXHost_WarningCount(document) == 0);
  CHECK(TGXHost_Warning(document, 0) == NULL);
  CHECK(TGXHost_EditCount(document) == 0);
  CHECK(TGXHost_RemovedContentCount(document) == 0);
  CHECK(TGXHost_RemovedContent(document, 0, NULL) == kASBadParameter);
  CHECK(TGXHost_RemovedContentBox(document, 0, NULL) == kASBadParameter);
  CHECK(TGXHost_Tables()->version == kHostTablesVersion);
  CHECK(TGXHost_Tables()->pdModel->PDDocGetNumPages(document) > 0);
  RunLibrary(document);
  CHECK(TGXHost_EditCount(document) > 0);
  Save(document);
  TGXHost_Close(document);
  TGXHost_Close(document);
  return 0;
}
