/* repair INPUT OUTPUT: opens a document with the embedded host, runs some repairs and saves. Plain C. */
#include <stdio.h>

#include <tgx/embedded_host.h>
#include <tgx/tgx.h>

enum { kTableMetadata = 12, kReshuffleFrames = 14, kGroupTags = 16, kRemoveEmptyTags = 6 };
enum { kDoubleBullets = 0x1, kExtraParagraphs = 0x2, kRoleMap = 0x200 };

static int Report(const char* what, int result) {
  if (result != TGX_OK) fprintf(stderr, "%s gave %d: %s\n", what, result, TGX_GetLastError());
  return result;
}

static int RunAction(PDDoc document, int number, const char* name) {
  const TGXActionParams action = {0, number, {0}};
  const size_t frames = TGXHost_FrameDepth();
  const int result = TGX_Action(document, &action);
  TGXHost_CutFrames(frames);
  return Report(name, result);
}

static int RunFixes(PDDoc document, uint32_t mask) {
  const TGXFixupParams fixes = {0, mask};
  const size_t frames = TGXHost_FrameDepth();
  const int result = TGX_Fixups(document, &fixes);
  TGXHost_CutFrames(frames);
  return Report("the fixes", result);
}

static int Repair(PDDoc document) {
  int result = RunAction(document, kTableMetadata, "table metadata");
  if (result == TGX_OK) result = RunAction(document, kReshuffleFrames, "reshuffle frames");
  if (result == TGX_OK) result = RunAction(document, kGroupTags, "group tags");
  if (result == TGX_OK) result = RunFixes(document, kDoubleBullets | kExtraParagraphs | kRoleMap);
  if (result == TGX_OK) result = RunAction(document, kRemoveEmptyTags, "remove empty tags");
  return result;
}

int main(int count, char** arguments) {
  const TGXInitParams init = {NULL, TGXHost_Tables};
  PDDoc document;
  int result;
  if (count != 3) {
    fprintf(stderr, "repair INPUT OUTPUT\n");
    return 1;
  }
  TGX_init(&init);
  document = TGXHost_OpenFile(arguments[1], NULL);
  if (document == NULL) {
    fprintf(stderr, "%s\n", TGXHost_LastError());
    return 1;
  }
  result = Repair(document);
  if (result == TGX_OK && TGXHost_SaveFile(document, arguments[2], NULL) != kASNoError) {
    fprintf(stderr, "%s\n", TGXHost_LastError());
    result = 1;
  }
  TGXHost_Close(document);
  return result;
}
