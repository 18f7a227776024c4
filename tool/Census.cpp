#include "tool/Census.h"

#include <algorithm>
#include <string>

#include "tool/Elements.h"
#include "tool/HostCalls.h"
#include "tool/Marks.h"
#include "tool/PageNumbers.h"
#include "tool/Roles.h"
#include "tool/TextString.h"
#include "tool/ToolSteps.h"

namespace tgx::tool {

const std::array<CountName, static_cast<std::size_t>(Counted::kCount)> kCountNames = {{
    {Counted::kElements, "elements", "elements of the structure tree"},
    {Counted::kAnchors, "anchors", "anchored frames out of their place"},
    {Counted::kTextFrameMarks, "textFrameMarks", "marks around text frames"},
    {Counted::kTableDescriptions, "tableDescriptions", "descriptions of tables"},
    {Counted::kFormulaMarks, "formulaMarks", "marks of formulas"},
    {Counted::kBracketLanguages, "bracketLanguages", "languages in brackets"},
    {Counted::kTables, "tables", "tables"},
    {Counted::kTablesWithHeaders, "tablesWithHeaders", "tables with header cells that say what they head"},
    {Counted::kHeaderCells, "headerCells", "header cells"},
    {Counted::kContentsEntries, "contentsEntries", "entries of tables of contents"},
    {Counted::kFormulas, "formulas", "formulas"},
    {Counted::kCaptions, "captions", "captions"},
    {Counted::kFigures, "figures", "figures"},
    {Counted::kDescribedFigures, "describedFigures", "figures with an alternate text"},
    {Counted::kLinks, "links", "links in the structure tree"},
    {Counted::kDescribedLinks, "describedLinks", "links with a description"},
    {Counted::kRoles, "roles", "entries of the role map"},
    {Counted::kFilledFields, "filledFields", "form fields with a value"},
}};

namespace {

/// What an element's kids need to know of it.
struct Surroundings {
  unsigned marks = 0;     ///< that the marked content of the element belongs to
  unsigned below = 0;     ///< the same for all that is below the element
  std::size_t table = 0;  ///< place in a list of tables, 0 outside of tables
  bool isLabel = false;
};

/// A dictionary of an element's attributes, or an array of them.
bool HasAttribute(CosObj attributes, const char* key) {
  if (CosObjGetType(attributes) == CosDict) return CosDictKnownKeyString(attributes, key) != 0;
  if (CosObjGetType(attributes) != CosArray) return false;
  const ASInt32 length = CosArrayLength(attributes);
  for (ASInt32 i = 0; i < length; ++i) {
    const CosObj item = CosArrayGet(attributes, i);
    if (CosObjGetType(item) == CosDict && CosDictKnownKeyString(item, key) != 0) return true;
  }
  return false;
}

bool HasText(CosObj dictionary, const char* key) {
  const CosObj text = CosDictGetKeyString(dictionary, key);
  return CosObjGetType(text) == CosString && !BytesOf(text).empty();
}

/// Whether a form field has a value that is more than an empty text or a box that is off.
bool IsFilled(CosObj field) {
  const CosObj value = CosDictGetKeyString(field, "V");
  switch (CosObjGetType(value)) {
    case CosNull:
      return false;
    case CosString:
      return !DecodeTextString(BytesOf(value)).empty();
    case CosName:
      return CosNameValue(value) != ASAtomFromString("Off");
    default:
      return true;
  }
}

class Counter {
 public:
  explicit Counter(PDDoc document) : document_(document), roles_(document) {}

  Census Take() {
    const auto enter = [this](PDSElement element, const Surroundings& around) { return Enter(element, around); };
    const auto other = [this](PDSElement element, ASInt32 index, ASAtom type, ASInt32 mcid, const Surroundings& around) {
      if (type == types_.markedContent && around.marks != 0) AddPlace(element, index, mcid, around.marks);
      if (type == types_.object) CountObject(KidOf(element, index));
    };
    ElementWalk<Surroundings, decltype(enter), decltype(other)>(enter, other).Walk(document_, Surroundings());
    census_[Counted::kElements] = census_.elements.size();
    census_[Counted::kTables] = tables_.size() - 1;
    census_[Counted::kTablesWithHeaders] = static_cast<std::size_t>(std::count(tables_.begin(), tables_.end(), true));
    census_[Counted::kRoles] = roles_.Entries().size();
    CountFields();
    std::sort(census_.elements.begin(), census_.elements.end());
    std::sort(census_.places.begin(), census_.places.end());
    return std::move(census_);
  }

 private:
  Surroundings Enter(PDSElement element, const Surroundings& around) {
    const ASAtom type = PDSElementGetType(element);
    const ASAtom role = roles_.Resolve(type);
    census_.elements.emplace_back(KeyOf(element), type);
    Surroundings own;
    own.table = around.table;
    own.isLabel = role == label_;
    own.marks = around.below | MarksOf(element, role);
    if (role == span_ && around.isLabel) own.marks |= kBulletSpan;
    own.below = own.marks & (kFormula | kFormulaHolder);
    CountRole(element, role, own);
    if (PDSElementHasLanguage(element) != 0 && !LanguageInBrackets(TextOf(element, PDSElementGetLanguage)).empty())
      ++census_[Counted::kBracketLanguages];
    return own;
  }

  unsigned MarksOf(PDSElement element, ASAtom role) {
    unsigned marks = MarkOfTitle(DecodeTextString(TextOf(element, PDSElementGetTitle)));
    if (PDSElementHasAlt(element) != 0) {
      const std::string alt = TextOf(element, PDSElementGetAlt);
      const unsigned markOfAlt = MarkOfAlt(DecodeTextString(alt));
      marks |= markOfAlt;
      if (role == figure_ && markOfAlt == 0 && !alt.empty()) ++census_[Counted::kDescribedFigures];
    }
    census_.marks |= marks;
    if ((marks & kAnchor) != 0) ++census_[Counted::kAnchors];
    if ((marks & kTextFrame) != 0) ++census_[Counted::kTextFrameMarks];
    if ((marks & kTableData) != 0) ++census_[Counted::kTableDescriptions];
    if ((marks & kFormula) != 0) ++census_[Counted::kFormulaMarks];
    if (role == figure_ && marks == 0) ++census_[Counted::kFigures];
    return marks;
  }

  void CountRole(PDSElement element, ASAtom role, Surroundings& own) {
    if (role == table_) {
      own.table = tables_.size();
      tables_.push_back(false);
    } else if (role == headerCell_ || role == cell_) {
      if (role == headerCell_) ++census_[Counted::kHeaderCells];
      const CosObj attributes = CosDictGetKeyString(PDSElementGetCosObj(element), "A");
      if (own.table != 0 && HasAttribute(attributes, role == cell_ ? "Headers" : "Scope")) tables_[own.table] = true;
    } else if (role == contentsEntry_) {
      ++census_[Counted::kContentsEntries];
    } else if (role == formula_) {
      ++census_[Counted::kFormulas];
    } else if (role == caption_) {
      ++census_[Counted::kCaptions];
    }
  }

  void AddPlace(PDSElement element, ASInt32 index, ASInt32 mcid, unsigned marks) {
    CosObj page = {};
    PDSElementGetKid(element, index, nullptr, nullptr, &page);
    census_.places.push_back({pages_.NumberOf(page), mcid, marks});
  }

  void CountObject(CosObj object) {
    if (CosObjGetType(object) != CosDict) return;
    const CosObj subtype = CosDictGetKeyString(object, "Subtype");
    if (CosObjGetType(subtype) != CosName || CosNameValue(subtype) != link_) return;
    ++census_[Counted::kLinks];
    if (HasText(object, "Contents")) ++census_[Counted::kDescribedLinks];
  }

  void CountFields() {
    const CosObj form = CosDictGetKeyString(CosDocGetRoot(PDDocGetCosDoc(document_)), "AcroForm");
    if (CosObjGetType(form) == CosDict) CountFields(CosDictGetKeyString(form, "Fields"), 0);
  }

  /// Forms refer to each other in circles, in damaged files.
  void CountFields(CosObj fields, int depth) {  // NOLINT(misc-no-recursion)
    constexpr int kDeepest = 32;
    if (depth == kDeepest || CosObjGetType(fields) != CosArray) return;
    const ASInt32 length = CosArrayLength(fields);
    for (ASInt32 i = 0; i < length; ++i) {
      const CosObj field = CosArrayGet(fields, i);
      if (CosObjGetType(field) != CosDict || !fields_.insert(KeyOf(field)).second) continue;
      if (IsFilled(field)) ++census_[Counted::kFilledFields];
      CountFields(CosDictGetKeyString(field, "Kids"), depth + 1);
    }
  }

  PDDoc document_;
  Census census_;
  Roles roles_;
  PageNumbers pages_;
  KidTypes types_;
  std::vector<bool> tables_ = {false};  ///< whether a table has headers; the first stands for none
  std::unordered_set<std::uint64_t> fields_;
  ASAtom label_ = ASAtomFromString("Lbl"), span_ = ASAtomFromString("Span"), figure_ = ASAtomFromString("Figure");
  ASAtom table_ = ASAtomFromString("Table"), headerCell_ = ASAtomFromString("TH"), cell_ = ASAtomFromString("TD");
  ASAtom contentsEntry_ = ASAtomFromString("TOCI"), formula_ = ASAtomFromString("Formula");
  ASAtom caption_ = ASAtomFromString("Caption"), link_ = ASAtomFromString("Link");
};

}  // namespace

Census TakeCensus(PDDoc document) {
  const HostFrame frame;
  return Counter(document).Take();
}

ElementChanges Compare(const Census& before, const Census& after) {
  ElementChanges changes;
  auto b = before.elements.begin();
  auto a = after.elements.begin();
  while (b != before.elements.end() || a != after.elements.end()) {
    if (a == after.elements.end() || (b != before.elements.end() && b->first < a->first)) {
      ++changes.removed;
      ++b;
    } else if (b == before.elements.end() || a->first < b->first) {
      ++changes.added;
      ++a;
    } else {
      if (a->second != b->second) ++changes.renamed;
      ++a;
      ++b;
    }
  }
  return changes;
}

}  // namespace tgx::tool
