#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/pdfedit/model/AddedRun.h"
#include "host/pdfedit/model/ContentState.h"

namespace tgx::host {

/// The runs and characters of a text element: what they are and where they stand.
class TextLayout {
 public:
  struct Run {
    std::uint32_t firstChar;
    std::uint32_t chars;
    std::uint32_t firstByte;
    std::uint32_t bytes;
    DocumentFont* font;
    Matrix glyph;       ///< from text space at size 1 to the space of the text position
    Matrix textToUser;  ///< at the run's start
  };
  struct Char {
    std::uint32_t firstByte;
    std::uint32_t run;
    std::uint8_t bytes;
    TextMove move;  ///< from the run's start
  };

  const std::vector<Run>& Runs() const { return runs_; }
  const std::vector<Char>& Chars() const { return chars_; }
  std::string_view Bytes(const Run& run) const { return std::string_view(bytes_).substr(run.firstByte, run.bytes); }
  std::string_view Bytes(const Char& c) const { return std::string_view(bytes_).substr(c.firstByte, c.bytes); }
  Matrix MatrixOf(const Run& run) const { return run.glyph * run.textToUser; }
  Matrix MatrixOf(const Char& c) const;

  /// The union of the runs' boxes: advance widths by the font's ascent and descent.
  Box Bounds() const;

  /// Appends the string that `op`, a show, shows at the state's text position, and moves the position over it.
  void AddShow(const ContentReader& op, ContentState& state);
  void AddRun(const AddedRun& run);
  /// Appends a run of another layout without the characters that the edit removes.
  void AddEdited(const TextLayout& from, std::uint32_t run, const EditedRun& edit);

 private:
  void AddString(std::string_view bytes, const GraphicsState& graphics, const Matrix& textToUser, TextMove& end);
  Font::Code CodeOf(const Char& c) const;

  std::vector<Run> runs_;
  std::vector<Char> chars_;
  std::string bytes_;
};

/// The layout of an edited text; `original` is the one that it had on the page.
TextLayout LayoutOf(const TextLayout& original, const std::vector<EditedRun>& runs);

}  // namespace tgx::host
