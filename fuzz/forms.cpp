// Reads two small form documents, synchronises the first with the second, turns its buttons into stamps and saves it. The
// input is the objects of both, in PDF syntax, with a line "%%%%" between them; object 4 of each is its form, object 3 its
// page.
// Ahead of the public headers, which it asks for the forwarders.
#include "src/api/HostBinding.h"

#include <tgx/embedded_host.h>
#include <tgx/tgx.h>

#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>

#include "src/api/HostException.h"
#include "src/forms/AcroFormSync.h"

namespace {

constexpr std::string_view kSeparator = "\n%%%%\n";
constexpr std::int64_t kMostCopies = 20000;

/// A file without a table of its objects, which opening finds by itself.
std::string FileOf(std::string_view objects) {
  return "%PDF-1.7\n1 0 obj\n<</Type/Catalog/Pages 2 0 R/AcroForm 4 0 R/StructTreeRoot<<>>>>\nendobj\n"
         "2 0 obj\n<</Type/Pages/Kids[3 0 R]/Count 1>>\nendobj\n" +
         std::string(objects) + "\ntrailer\n<</Root 1 0 R>>\nstartxref\n0\n%%EOF\n";
}

class Form {
 public:
  explicit Form(std::string_view objects) {
    const std::string file = FileOf(objects);
    handle_ = TGXHost_OpenMemory(file.data(), file.size(), "fuzz", nullptr);
  }
  ~Form() { TGXHost_Close(handle_); }
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  PDDoc Handle() const { return handle_; }

 private:
  PDDoc handle_ = nullptr;
};

/// The host may refuse values, and the worker too many of them.
void Synchronise(PDDoc target, PDDoc source) {
  const std::size_t frames = TGXHost_FrameDepth();
  try {
    tgx::InExceptionFrame([&] { tgx::acroform::AcroFormSync(kMostCopies).Run(target, source); });
  } catch (const tgx::APDFLException::ASExceptionInfo&) {
    const ASErrorCode code = ASGetExceptionErrorCode();
    if (code == kASInternalError || code == kASNoMemory) std::abort();
  } catch (const std::runtime_error&) {
  }
  TGXHost_CutFrames(frames);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const auto middle = input.find(kSeparator);
  if (middle == std::string_view::npos) return 0;
  const TGXInitParams init = {nullptr, &TGXHost_Tables};
  TGX_init(&init);
  const Form target(input.substr(0, middle));
  const Form source(input.substr(middle + kSeparator.size()));
  if (target.Handle() == nullptr || source.Handle() == nullptr) return 0;
  Synchronise(target.Handle(), source.Handle());
  const TGXFixupParams buttons = {0, 0x100};
  TGX_Fixups(target.Handle(), &buttons);
  void* saved = nullptr;
  std::size_t savedSize = 0;
  if (TGXHost_SaveMemory(target.Handle(), nullptr, &saved, &savedSize) == 0) TGXHost_FreeMemory(saved);
  return 0;
}
