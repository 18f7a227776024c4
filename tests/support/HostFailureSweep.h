#pragma once

#include <functional>
#include <set>
#include <string>

#include "tests/support/OpenDocument.h"

namespace tgx::test {

struct SweepOptions {
  /// This many first calls are each made to fail; of the later ones `samples`, evenly spread, the last one always.
  std::size_t exhaustive = 1000;
  std::size_t samples = 60;
  /// Kinds of CountingHost that the operation is meant to leave open when the host fails, beside those that it always leaves
  /// open.
  std::set<std::string> mayStayOpen = {};
  std::set<std::string> staysOpen = {};
  /// The operation handles some host failures by itself, so that a failing call may also give a success or a soft failure.
  bool mayHandleFailures = false;
  /// The operation does not change the document. Any other must, else the calls with which it writes would not be tried.
  bool changesNothing = false;
};

/// Runs an operation on a fresh copy of the document again and again, with a host failure at call 1, 2, 3, ... until one run
/// meets none. Each failing run must give result 2 with the host's text, release what it acquired, and leave a document that
/// can be saved and read. The calls of `NeverRaises` are not made to fail.
void SweepHostFailures(const std::string& documentBytes, const std::function<Outcome(OpenDocument&)>& operation,
                       const SweepOptions& options = {});

}  // namespace tgx::test
