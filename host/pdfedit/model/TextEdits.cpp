#include "host/pdfedit/model/TextEdits.h"

#include <algorithm>

#include "host/core/Atoms.h"
#include "host/core/HostError.h"
#include "host/pdfedit/model/ColorSpaces.h"
#include "host/pdfedit/writing/Syntax.h"

namespace tgx::host {
namespace {

/// Marks `count` of the characters that are left, from the `first` of them, as removed.
void RemoveFrom(EditedRun& run, int first, int count) {
  std::vector<std::pair<int, int>> removed;
  const auto add = [&removed](int from, int to) {
    if (!removed.empty() && removed.back().second == from) {
      removed.back().second = to;
    } else {
      removed.emplace_back(from, to);
    }
  };
  // Walks over the gaps between the ranges that are removed already.
  int left = 0;      // characters left in front of `position`
  int position = 0;  // in the whole run
  std::size_t next = 0;
  while (count > 0) {
    const bool hasNext = next < run.removed.size();
    const int gap = hasNext ? run.removed[next].first - position : first + count - left;
    if (left + gap > first) {
      const int from = position + std::max(0, first - left);
      const int taken = std::min(count, position + gap - from);
      add(from, from + taken);
      first += taken;
      count -= taken;
    }
    left += gap;
    if (!hasNext) break;
    add(run.removed[next].first, run.removed[next].second);
    position = run.removed[next++].second;
  }
  for (; next < run.removed.size(); ++next) add(run.removed[next].first, run.removed[next].second);
  run.removed = std::move(removed);
}

void AppendColor(const PDEColorSpec& spec, const char* gray, const char* rgb, const char* cmyk, std::string& operators) {
  if (spec.space == nullptr) return;
  if (spec.value.colorObj != nullptr || spec.value.colorObj2 != nullptr) {
    throw HostError(kASNotSupported, "added text cannot be painted with a pattern");
  }
  const int components = ComponentsOf(spec.space);
  for (int i = 0; i < components; ++i) operators += FormatNumber(FromFixed(spec.value.color[i])) + ' ';
  operators += components == 1 ? gray : components == 3 ? rgb : cmyk;
  operators += '\n';
}

std::string StateOperators(const PDEGraphicState& state) {
  constexpr ASInt32 kMostDashes = 11;
  if (state.extGState != nullptr) throw HostError(kASNotSupported, "added text cannot have an extended graphics state");
  if (state.dash.dashLen < 0 || state.dash.dashLen > kMostDashes)
    throw HostError(kASBadParameter, "a dash of impossible length");
  std::string operators;
  AppendColor(state.fillColorSpec, "g", "rg", "k", operators);
  AppendColor(state.strokeColorSpec, "G", "RG", "K", operators);
  operators += FormatNumber(FromFixed(state.lineWidth)) + " w " + FormatNumber(FromFixed(state.miterLimit)) + " M " +
               FormatNumber(FromFixed(state.flatness)) + " i " + std::to_string(state.lineCap) + " J " +
               std::to_string(state.lineJoin) + " j [";
  for (ASInt32 i = 0; i < state.dash.dashLen; ++i) operators += FormatNumber(FromFixed(state.dash.dashes[i])) + ' ';
  operators += "] " + FormatNumber(FromFixed(state.dash.dashPhase)) + " d\n";
  const std::string_view intent = AtomView(state.renderIntent);
  if (!intent.empty()) operators += FormatName(intent) + " ri\n";
  return operators;
}

}  // namespace

std::vector<EditedRun> UneditedRuns(const TextLayout& original) {
  std::vector<EditedRun> runs(original.Runs().size());
  for (std::size_t i = 0; i < runs.size(); ++i) runs[i].original = static_cast<int>(i);
  return runs;
}

void RemoveChars(std::vector<EditedRun>& runs, const TextLayout& layout, int first, int count) {
  if (count == 0) return;
  const auto all = static_cast<int>(layout.Chars().size());
  if (first == 0 && count == all) {
    runs.clear();
    return;
  }
  std::vector<EditedRun> kept;
  kept.reserve(runs.size());
  for (std::size_t i = 0; i < runs.size(); ++i) {
    const auto begin = static_cast<int>(layout.Runs()[i].firstChar);
    const auto chars = static_cast<int>(layout.Runs()[i].chars);
    const int from = std::max(first, begin);
    const int taken = std::min(first + count, begin + chars) - from;
    if (taken > 0 && taken == chars) continue;
    if (taken > 0) RemoveFrom(runs[i], from - begin, taken);
    kept.push_back(std::move(runs[i]));
  }
  runs = std::move(kept);
}

AddedRun MakeAddedRun(std::string_view bytes, PDEFont font, const PDEGraphicState* state, ASInt32 stateSize,
                      const void* textState, const ASFixedMatrix* matrix) {
  if (font == nullptr) throw HostError(kASBadParameter, "text cannot be added without a font");
  if (state == nullptr || stateSize != static_cast<ASInt32>(sizeof(PDEGraphicState))) {
    throw HostError(kASBadParameter, "the graphics state of added text has the wrong size");
  }
  if (matrix == nullptr) throw HostError(kASBadParameter, "text cannot be added without a matrix");
  if (textState != nullptr) throw HostError(kASNotSupported, "added text takes no text state but the plain one");
  AddedRun run;
  run.bytes = bytes;
  run.font = &FontOf(font);
  run.text.size = 1;
  run.matrix = FromFixed(*matrix);
  run.operators = StateOperators(*state);
  return run;
}

}  // namespace tgx::host
