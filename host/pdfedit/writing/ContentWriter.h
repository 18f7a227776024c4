#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/pdfedit/model/PageModel.h"

namespace tgx::host {

/// Writes a page's content with its committed edits. What nobody changed is copied byte for byte; of what was removed the
/// operators stay whose effect reaches beyond it: state, clips, and the movement of the text position.
class ContentWriter {
 public:
  explicit ContentWriter(PageModel& page) : page_(page), content_(page.Bytes()) {}

  std::string Write();

  /// The content as its operators alone, a line each, without edits: what is left of it when everything that no operator
  /// needs is taken away.
  std::string WriteOperators() const;

 private:
  struct Change {
    enum class Kind { kGone, kText, kContainer } kind;
    std::uint32_t begin;
    std::uint32_t end;
    std::uint32_t element;
  };

  // Collecting what is to be done.
  void CollectChanges();
  void CollectAdditions();
  bool IsGone(std::uint32_t element) const;
  bool OnlyImagesGo() const;

  std::string WithoutImages();

  // Walking over the operators.
  void Visit(const ContentReader& op);
  void EnterChanges(std::size_t offset);
  bool IsSettled() const;
  void Track(const ContentReader& op);

  // Output. Content up to `copied_` has been dealt with.
  void CopyTo(std::size_t offset);
  void Put(std::string_view text);
  void Drop(const ContentReader& op);
  void Replace(const ContentReader& op, std::string_view text);
  void Keep(const ContentReader& op);
  void PutMove();
  std::string FontName(DocumentFont& font);
  bool IsMoveSeen(std::size_t offset);
  bool IsPositionUsed(std::size_t offset) const;
  static double AdjustmentFor(const GraphicsState& graphics, const TextMove& move);

  // Removed stretches.
  void VisitGone(const ContentReader& op);
  void VisitGonePath(const ContentReader& op);
  void VisitGoneText(const ContentReader& op);
  void BeginGoneText(const ContentReader& op);
  void SaveInGone(const ContentReader& op);
  void RestoreInGone(const ContentReader& op);
  void RemoveShow(const ContentReader& op);
  static std::string LineMoveOf(const ContentReader& op);

  // Edited texts.
  void RewriteShow(const ContentReader& op);
  void RewriteString(const Token& string, std::string& array);
  void Owe(const TextMove& move);
  void PutString(const std::string& string, const TextMove& move, std::string& array);
  void PutArray(std::string& array);
  void PutAddedRuns(std::string& array);
  void RewriteContainer(const ContentReader& op);

  // Additions.
  void PutAdditionsUpTo(std::size_t offset);
  void PutAddition(const Addition& addition);
  void PutRun(const EditedRun& run);
  std::string TextPositionOperators() const;

  PageModel& page_;
  std::string_view content_;
  std::string out_;
  std::size_t copied_ = 0;
  bool seam_ = false;  ///< two texts meet that did not stand together before

  std::vector<Change> changes_;  ///< by begin, without those inside removed containers
  std::size_t nextChange_ = 0;
  std::vector<const Addition*> additions_;  ///< by offset
  std::size_t nextAddition_ = 0;
  bool needsPosition_ = false;  ///< additions need the exact text position

  ContentState state_;
  bool clipsText_ = false;      ///< the text object has text that clips what follows it
  TextMove move_;               ///< of removed text, owed to the next show
  std::size_t unseenUpTo_ = 0;  ///< nothing is shown before this place and in front of a new position

  std::size_t goneEnd_ = 0;         ///< end of the removed stretch that the walk is in
  std::vector<std::size_t> saves_;  ///< where the output stood at each q of the removed stretch
  std::size_t emptyTextEnd_ = 0;    ///< end of a text object that is removed whole
  std::size_t pathOut_ = kNoPath;   ///< where the output stood when the removed path began
  bool pathHasOthers_ = false;
  bool pathClips_ = false;
  bool pathIsOpen_ = false;  ///< the walk is behind the beginning of a path

  const TextEdit* edit_ = nullptr;  ///< of the text that the walk is in
  std::size_t editEnd_ = 0;
  std::size_t nextEdited_ = 0;
  int nextOriginal_ = 0;

  static constexpr std::size_t kNoPath = static_cast<std::size_t>(-1);
};

}  // namespace tgx::host
