#include "host/core/Raise.h"

#include <cerrno>
#include <new>
#include <stdexcept>
#include <vector>

#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFSystemError.hh>

namespace tgx::host {
namespace {

struct RaiseState {
  std::vector<ASRestoreProc> frames;
  std::size_t outermostFrames = 0;
  ASErrorCode code = kASNoError;
  std::string text;
};

RaiseState& State() {
  static RaiseState state;
  return state;
}

ASErrorCode CodeOf(const QPDFExc& e) {
  switch (e.getErrorCode()) {
    case qpdf_e_password:
      return kASBadPassword;
    case qpdf_e_unsupported:
      return kASNotSupported;
    case qpdf_e_system:
      return kASFileError;
    case qpdf_e_damaged_pdf:
    case qpdf_e_pages:
    case qpdf_e_object:
      return kASDamagedDocument;
    default:
      return kASInternalError;
  }
}

/// What qpdf says, with the place in front and the file behind, so that a cut text still tells what was wrong.
std::string TextOf(const QPDFExc& e) {
  std::string text = e.getObject().empty() ? e.getMessageDetail() : e.getObject() + ": " + e.getMessageDetail();
  const bool hasOffset = e.getFilePosition() > 0;
  if (e.getFilename().empty() && !hasOffset) return text;
  text += " (" + e.getFilename();
  if (hasOffset) text += (e.getFilename().empty() ? "offset " : ", offset ") + std::to_string(e.getFilePosition());
  return text + ")";
}

/// The exception being handled, as the host's own.
HostError Translate() {
  try {
    throw;
  } catch (const HostError& e) {
    return e;
  } catch (const QPDFExc& e) {
    return {CodeOf(e), TextOf(e)};
  } catch (const QPDFSystemError& e) {
    return {e.getErrno() == ENOMEM ? kASNoMemory : kASFileError, e.what()};
  } catch (const std::bad_alloc&) {
    return {kASNoMemory, "out of memory"};
  } catch (const std::range_error& e) {
    return {kASDamagedDocument, e.what()};  // a number in the file that qpdf cannot work with
  } catch (const std::exception& e) {
    return {kASInternalError, e.what()};
  } catch (...) {
    return {kASInternalError, "unknown failure inside the host"};
  }
}

}  // namespace

void PushFrame(ASRestoreProc restore) {
  RaiseState& state = State();
  if (state.frames.empty()) ++state.outermostFrames;
  state.frames.push_back(restore);
}

void PopFrame() noexcept {
  auto& frames = State().frames;
  if (!frames.empty()) frames.pop_back();
}

std::size_t FrameDepth() noexcept { return State().frames.size(); }
std::size_t OutermostFrames() noexcept { return State().outermostFrames; }

void CutFrames(std::size_t depth) noexcept {
  auto& frames = State().frames;
  if (frames.size() > depth) frames.resize(depth);
}

ASErrorCode LastRaiseCode() noexcept { return State().code; }
const std::string& LastRaiseText() noexcept { return State().text; }

void Raise(HostError error) {
  RaiseState& state = State();
  state.code = error.Code();
  state.text = error.Text();
  if (!state.frames.empty()) {
    const ASRestoreProc restore = state.frames.back();
    state.frames.pop_back();
    restore();
  }
  throw error;
}

HostError CurrentFailure() noexcept {
  try {
    return Translate();
  } catch (...) {  // only for want of memory
    return {kASNoMemory, "out of memory"};
  }
}

}  // namespace tgx::host
