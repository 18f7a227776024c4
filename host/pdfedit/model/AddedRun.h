#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/pdfedit/model/ContentState.h"

namespace tgx::host {

/// A run of text that a client made: everything that is needed to show it wherever it is put.
struct AddedRun {
  std::string bytes;
  DocumentFont* font = nullptr;
  GraphicsState text;     ///< text state; the matrix in it is not used
  Matrix matrix;          ///< from text space at size 1 to user space
  std::string operators;  ///< sets the graphics state
};

/// One run of an edited text: a shown string of the page, or an added run, without some of its characters.
struct EditedRun {
  int original = -1;  ///< number of the run in the text as the page has it, -1 for an added one
  std::shared_ptr<const AddedRun> added;
  std::vector<std::pair<int, int>> removed;  ///< [first, last) characters, in order, not touching

  bool IsWhole() const { return removed.empty(); }
  bool Removes(int character) const {
    for (const auto& [first, last] : removed) {
      if (character >= first && character < last) return true;
    }
    return false;
  }
};

}  // namespace tgx::host
