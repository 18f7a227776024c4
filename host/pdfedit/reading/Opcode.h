#pragma once

#include <cstdint>
#include <string_view>

namespace tgx::host {

/// The operators of a content stream: X(name, keyword). BI stands for a whole inline image, BI to EI.
// clang-format off
#define TGX_CONTENT_OPERATORS(X)                                                                                       \
  X(CloseFillStroke, "b") X(FillStroke, "B") X(CloseEvenOddFillStroke, "b*") X(EvenOddFillStroke, "B*")                \
  X(BeginContainerWithProperties, "BDC") X(InlineImage, "BI") X(BeginContainer, "BMC") X(BeginText, "BT")              \
  X(BeginCompatibility, "BX") X(CurveTo, "c") X(ConcatMatrix, "cm") X(StrokeColorSpace, "CS")                          \
  X(FillColorSpace, "cs") X(Dash, "d") X(GlyphWidth, "d0") X(GlyphWidthAndBox, "d1") X(XObject, "Do")                  \
  X(PlaceWithProperties, "DP") X(InlineImageEnd, "EI") X(EndContainer, "EMC") X(EndText, "ET")                         \
  X(EndCompatibility, "EX") X(Fill, "f") X(FillOld, "F") X(EvenOddFill, "f*") X(StrokeGray, "G") X(FillGray, "g")      \
  X(ExtGState, "gs") X(ClosePath, "h") X(Flatness, "i") X(InlineImageData, "ID") X(LineJoin, "j") X(LineCap, "J")      \
  X(StrokeCmyk, "K") X(FillCmyk, "k") X(LineTo, "l") X(MoveTo, "m") X(MiterLimit, "M") X(Place, "MP")                  \
  X(EndPath, "n") X(Save, "q") X(Restore, "Q") X(Rectangle, "re") X(StrokeRgb, "RG") X(FillRgb, "rg")                  \
  X(RenderIntent, "ri") X(CloseStroke, "s") X(Stroke, "S") X(StrokeColor, "SC") X(FillColor, "sc")                     \
  X(StrokeColorN, "SCN") X(FillColorN, "scn") X(Shading, "sh") X(NextLine, "T*") X(CharSpacing, "Tc")                  \
  X(MoveText, "Td") X(MoveTextSetLeading, "TD") X(TextFont, "Tf") X(ShowText, "Tj") X(ShowTextAdjusted, "TJ")          \
  X(Leading, "TL") X(TextMatrix, "Tm") X(TextRender, "Tr") X(TextRise, "Ts") X(WordSpacing, "Tw")                      \
  X(TextScale, "Tz") X(CurveToFromCurrent, "v") X(LineWidth, "w") X(Clip, "W") X(EvenOddClip, "W*")                    \
  X(CurveToFinal, "y") X(NextLineShow, "'") X(NextLineShowSpaced, "\"")
// clang-format on

enum class Opcode : std::uint8_t {
  kUnknown,
#define TGX_OPCODE(name, keyword) k##name,
  TGX_CONTENT_OPERATORS(TGX_OPCODE)
#undef TGX_OPCODE
};

/// The operator of a keyword, kUnknown for any other.
Opcode OpcodeOf(std::string_view keyword) noexcept;

constexpr bool IsShow(Opcode code) {
  return code == Opcode::kShowText || code == Opcode::kShowTextAdjusted || code == Opcode::kNextLineShow ||
         code == Opcode::kNextLineShowSpaced;
}

constexpr bool IsPathConstruction(Opcode code) {
  switch (code) {
    case Opcode::kMoveTo:
    case Opcode::kLineTo:
    case Opcode::kCurveTo:
    case Opcode::kCurveToFromCurrent:
    case Opcode::kCurveToFinal:
    case Opcode::kClosePath:
    case Opcode::kRectangle:
      return true;
    default:
      return false;
  }
}

constexpr bool IsClip(Opcode code) { return code == Opcode::kClip || code == Opcode::kEvenOddClip; }

/// Whether the operator ends a path and puts it on the page; `n` ends one without painting.
constexpr bool IsPathPainting(Opcode code) {
  switch (code) {
    case Opcode::kStroke:
    case Opcode::kCloseStroke:
    case Opcode::kFill:
    case Opcode::kFillOld:
    case Opcode::kEvenOddFill:
    case Opcode::kFillStroke:
    case Opcode::kCloseFillStroke:
    case Opcode::kEvenOddFillStroke:
    case Opcode::kCloseEvenOddFillStroke:
      return true;
    default:
      return false;
  }
}

}  // namespace tgx::host
