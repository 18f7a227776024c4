#include <algorithm>
#include <cstring>
#include <limits>

#include "host/core/HostError.h"
#include "host/core/Operations.h"
#include "host/pdfedit/Handles.h"

namespace tgx::host::operations {
namespace {

/// The samples are decoded once for the length and the data of an image, and forgotten when the data have been given out.
std::string& Samples(const ElementRef& image) { return image.page->Samples(image.number); }

}  // namespace

void PDEImageGetAttrs(PDEImage image, PDEImageAttrs* attrs, ASUns32 size) {
  const ElementRef found = ElementOf(image, kPDEImage);
  if (size != sizeof(PDEImageAttrs)) throw HostError(kASBadParameter, "the record for image attributes has the wrong size");
  const PDEImageAttrs attributes = found.page->ImageOf(found.number).Attributes();
  if (attrs != nullptr) *attrs = attributes;
}

ASInt32 PDEImageGetDataLen(PDEImage image) {
  const std::size_t size = Samples(ElementOf(image, kPDEImage)).size();
  return static_cast<ASInt32>(std::min<std::size_t>(size, std::numeric_limits<ASInt32>::max()));
}

void PDEImageGetData(PDEImage image, ASUns32, ASUns8* buffer) {
  const ElementRef found = ElementOf(image, kPDEImage);
  std::string& samples = Samples(found);
  if (buffer != nullptr && !samples.empty()) std::memcpy(buffer, samples.data(), samples.size());
  found.page->ForgetSamples();
}

}  // namespace tgx::host::operations
