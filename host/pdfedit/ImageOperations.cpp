#include <algorithm>
#include <limits>
#include <string>

#include "host/core/HostError.h"
#include "host/core/Operations.h"
#include "host/pdfedit/Handles.h"

namespace tgx::host::operations {
namespace {

/// The samples are decoded once for the length and the data of an image, and forgotten when the data have been given out.
std::string& Samples(const ElementRef& image) { return image.page->Samples(image.number); }

/// What is told and given out: no more than a client can ask for.
ASInt32 LengthOf(const std::string& samples) {
  return static_cast<ASInt32>(std::min<std::size_t>(samples.size(), std::numeric_limits<ASInt32>::max()));
}

}  // namespace

void PDEImageGetAttrs(PDEImage image, PDEImageAttrs* attrs, ASUns32 size) {
  const ElementRef found = ElementOf(image, kPDEImage);
  if (size != sizeof(PDEImageAttrs)) throw HostError(kASBadParameter, "the record for image attributes has the wrong size");
  const PDEImageAttrs attributes = found.page->ImageOf(found.number).Attributes();
  if (attrs != nullptr) *attrs = attributes;
}

ASInt32 PDEImageGetDataLen(PDEImage image) { return LengthOf(Samples(ElementOf(image, kPDEImage))); }

void PDEImageGetData(PDEImage image, ASUns32, ASUns8* buffer) {
  const ElementRef found = ElementOf(image, kPDEImage);
  const std::string& samples = Samples(found);
  if (buffer != nullptr) std::copy_n(samples.begin(), LengthOf(samples), buffer);
  found.page->ForgetSamples();
}

}  // namespace tgx::host::operations
