#pragma once

#include <stdexcept>
#include <string>
#include <utility>

// The tool calls host operations by their own names, through the embedded host's tables.
#define TGX_HOST_FORWARDERS
#include <tgx/embedded_host.h>
#include <tgx/host.h>

namespace tgx::tool {

/// A raise of the host, as an exception of the tool.
class HostFailure : public std::runtime_error {
 public:
  HostFailure(ASErrorCode code, const std::string& text) : std::runtime_error(text), code_(code) {}
  ASErrorCode Code() const noexcept { return code_; }

 private:
  ASErrorCode code_;
};

/// Puts an exception frame around host operations whose raise throws HostFailure, and takes away on every way out what was
/// pushed above it.
class HostFrame {
 public:
  HostFrame();
  ~HostFrame() { TGXHost_CutFrames(depth_); }
  HostFrame(const HostFrame&) = delete;
  HostFrame& operator=(const HostFrame&) = delete;

 private:
  std::size_t depth_;
};

inline bool IsNull(CosObj object) { return object.a == 0 && object.b == 0; }

/// The object as one number, to be a key.
inline std::uint64_t KeyOf(CosObj object) { return static_cast<std::uint64_t>(object.b) << 32 | object.a; }

}  // namespace tgx::tool
