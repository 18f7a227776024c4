#pragma once

#include <string_view>

namespace tgx::tool {

/// What an exporter's mark stands for. Bits, so that several can be named at once.
enum Mark : unsigned {
  kAnchor = 0x1,      ///< where an anchored frame belongs
  kFrameStart = 0x2,  ///< begin and end of an anchored frame
  kFrameEnd = 0x4,
  kFrameHolder = 0x8,     ///< holds the frames that wait for their place
  kTextFrame = 0x10,      ///< begin or end of a text frame
  kContentsFrame = 0x20,  ///< the table of contents
  kTableData = 0x40,      ///< describes a table
  kFormula = 0x80,        ///< begin, end or source of a formula
  kFormulaHolder = 0x100,
  kBulletSpan = 0x200,  ///< one of the two spans of a list label
};

/// The mark that an alternate text or a title (UTF-8) makes of its element; 0 for none.
unsigned MarkOfAlt(std::string_view alt);
unsigned MarkOfTitle(std::string_view title);

/// Whether characters or words of any mark stand anywhere in an alternate text or a title (UTF-8).
bool HoldsMark(std::string_view text);

}  // namespace tgx::tool
