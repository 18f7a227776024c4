#pragma once

#include <cstdint>
#include <span>

#include "src/api/HostBinding.h"

namespace tgx {

/// An action: its number, and what builds its worker, runs it on the document, destroys it and gives the result code. `path`
/// is the text of the call's record; only actions that take a path look at it.
struct ActionRow {
  std::int32_t number;
  int (*run)(PDDoc document, const char* path);
};

/// A fix: its bit, and what builds its fixer, runs it on the document and destroys it. False is the fixer's failure.
struct FixRow {
  std::uint32_t bit;
  bool (*run)(PDDoc document);
};

/// The actions and the fixes that this library has, by number, and in the order in which the bits of a mask are served.
std::span<const ActionRow> Actions();
std::span<const FixRow> Fixes();

/// The result of the row with that number; TGX_UNKNOWN_ACTION without one.
int RunAction(std::span<const ActionRow> rows, std::int32_t number, PDDoc document, const char* path);

/// Runs the rows whose bits are set, in their order, up to the first failure. Bits without a row are ignored.
int RunFixes(std::span<const FixRow> rows, std::uint32_t mask, PDDoc document);

/// Builds a worker, gives it the document, and runs it. The verdict outlives the worker: nothing is decided before its
/// destructor has run.
template <typename Worker, auto kRun = &Worker::Run>
int RunWorker(PDDoc document, const char*) {
  const bool succeeded = [document] {
    Worker worker;
    worker.SetDocument(document);
    return (worker.*kRun)();
  }();
  return succeeded ? TGX_OK : TGX_FAILED;
}

}  // namespace tgx
