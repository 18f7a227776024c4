#include "src/fixes/RoleMap/RoleMapFix.h"

#include <memory>
#include <vector>

#include "src/api/HostException.h"
#include "src/logging/FileLogger.h"
#include "src/logging/LogService.h"

namespace tgx {
namespace {

constexpr char kServiceName[] = "tag93";

/// A logger in the service for as long as the fix runs: the service does not own it, and one that stayed behind would be
/// used after its end.
class ServiceLogger {
 public:
  explicit ServiceLogger(const char* fileName) : logger_(fileName) { LogService::Get(kServiceName)->AddLogger(&logger_); }
  ServiceLogger(const ServiceLogger&) = delete;
  ServiceLogger& operator=(const ServiceLogger&) = delete;
  ~ServiceLogger() { LogService::Get(kServiceName)->RemoveLogger(&logger_); }

 private:
  FileLogger logger_;
};

struct CallbackDestroyer {
  void operator()(void* callback) const { ASCallbackDestroy(callback); }
};

// Anything but a name ends the enumeration.
ASBool CollectKey(CosObj key, CosObj /*value*/, void* keys) {
  if (CosObjGetType(key) != CosName) return 0;
  static_cast<std::vector<ASAtom>*>(keys)->push_back(CosNameValue(key));
  return 1;
}

std::vector<ASAtom> RoleMapKeys(PDSRoleMap map) {
  std::vector<ASAtom> keys;
  const std::unique_ptr<void, CallbackDestroyer> callback(
      ASCallbackCreate(ExtensionId(), reinterpret_cast<void*>(&CollectKey)));
  CosObjEnum(map, reinterpret_cast<CosObjEnumProc>(callback.get()), &keys);
  return keys;
}

// False without a structure tree.
bool UnmapSelfMappings(PDDoc document) {
  PDSTreeRoot root = CosNewNull();
  if (PDDocGetStructTreeRoot(document, &root) == 0) return false;
  PDSRoleMap map = CosNewNull();
  if (PDSTreeRootGetRoleMap(root, &map) == 0) return true;
  for (const ASAtom key : RoleMapKeys(map)) {
    if (PDSRoleMapGetDirectMap(map, key) == key) PDSRoleMapUnMapSrc(map, key, 1);
  }
  return true;
}

}  // namespace

bool RoleMapFix::ApplyFix() {
  const PDDoc document = GetDocument();
  if (document == nullptr) return false;
  const ServiceLogger logger("tgxlib_tag93.log");
  try {
    return InExceptionFrame([document] {
      LogService::Get(kServiceName)->Debug("ApplyFix");
      return UnmapSelfMappings(document);
    });
  } catch (const APDFLException::ASExceptionInfo&) {
    // The raise has used up the frame. The code is read and has no effect.
    static_cast<void>(ASGetExceptionErrorCode());
    return false;
  }
}

}  // namespace tgx
