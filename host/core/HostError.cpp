#include "host/core/HostError.h"

#include "host/core/Utf.h"

namespace tgx::host {
namespace {

// Clients fetch the text of a failure into 500 bytes, one of them the zero at the end.
constexpr std::size_t kLongestText = 499;

}  // namespace

HostError::HostError(ASErrorCode code, std::string text) : code_(code), text_(WellFormedUtf8(std::move(text))) {
  text_.resize(CutUtf8(text_, kLongestText).size());
}

}  // namespace tgx::host
