#include "src/forms/AcroFormSync.h"

#include <unordered_map>

#include "src/forms/AcroFormTree.h"

namespace tgx::acroform {
namespace {

/// How an entry crosses from one field to the other.
enum class Crossing { Name, String, Integer, Value, Dictionary, Array };

struct Entry {
  const char* key;
  Owner owner;
  Crossing crossing;
};

constexpr Entry kEntries[] = {
    {"AS", Owner::Widget, Crossing::Name},       {"A", Owner::Field, Crossing::Dictionary},
    {"AA", Owner::Field, Crossing::Dictionary},  {"H", Owner::Field, Crossing::Name},
    {"BS", Owner::Widget, Crossing::Dictionary}, {"TU", Owner::Field, Crossing::String},
    {"TM", Owner::Field, Crossing::String},      {"Ff", Owner::Field, Crossing::Integer},
    {"DV", Owner::Field, Crossing::Value},       {"V", Owner::Field, Crossing::Value},
    {"DA", Owner::Widget, Crossing::String},     {"Q", Owner::Field, Crossing::Integer},
    {"DS", Owner::Field, Crossing::String},      {"Opt", Owner::Field, Crossing::Array},
    {"MaxLen", Owner::Field, Crossing::Integer}, {"TI", Owner::Field, Crossing::Integer},
    {"I", Owner::Field, Crossing::Array},        {"F", Owner::Field, Crossing::Integer},
    {"MK", Owner::Widget, Crossing::Dictionary}, {"AP", Owner::Widget, Crossing::Dictionary},
};

/// What a pair of kids costs of the budget.
constexpr std::int64_t kCostOfPair = 8;

CosObj CopyOfDictionary(CosObj source, CosDoc document, CopyBudget& budget) {
  const CosObj copy = CosNewDict(document, CosObjIsIndirect(source), 0);
  DeepCopyDictionary(source, copy, KnownKeys::Overwrite, budget);
  return copy;
}

CosObj CopyOfArray(CosObj source, CosDoc document, CopyBudget& budget) {
  const CosObj copy = CosNewArray(document, CosObjIsIndirect(source), 0);
  DeepCopyArray(source, copy, budget);
  return copy;
}

/// Copies one entry; whether the source has it.
bool Copy(const Entry& entry, const AcroFormField& source, AcroFormField& target, CopyBudget& budget) {
  std::string text;
  std::int32_t number = 0;
  CosObj object;
  switch (entry.crossing) {
    case Crossing::Name:
      if (!source.ReadName(entry.owner, entry.key, text)) return false;
      target.WriteName(entry.owner, entry.key, text);
      return true;
    case Crossing::String:
      if (!source.ReadString(entry.owner, entry.key, text)) return false;
      target.WriteString(entry.owner, entry.key, text);
      return true;
    case Crossing::Integer:
      if (!source.ReadInteger(entry.owner, entry.key, number)) return false;
      target.WriteInteger(entry.owner, entry.key, number);
      return true;
    case Crossing::Value:
      if (!source.ReadValue(entry.key, text)) return false;
      if (source.Type() == FieldType::Button) {
        target.WriteName(entry.owner, entry.key, text);
      } else {
        target.WriteString(entry.owner, entry.key, text);
      }
      return true;
    case Crossing::Dictionary:
      if (!source.ReadObject(entry.owner, entry.key, CosDict, object)) return false;
      target.WriteObject(entry.owner, entry.key, CopyOfDictionary(object, CosObjGetDoc(target.Object()), budget));
      return true;
    case Crossing::Array:
      if (!source.ReadObject(entry.owner, entry.key, CosArray, object)) return false;
      target.WriteObject(entry.owner, entry.key, CopyOfArray(object, CosObjGetDoc(target.Object()), budget));
      return true;
  }
  return false;
}

std::string TypeText(const AcroFormField& field) {
  std::string text;
  field.ReadName(Owner::Field, "FT", text);
  return text;
}

void CopyCalculationOrder(CosObj source, CosObj target, CopyBudget& budget) {
  if (CosDictKnownKeyString(source, "CO") == 0) return;
  if (CosDictKnownKeyString(target, "CO") == 1) CosDictRemoveKeyString(target, "CO");
  CosDictPutKeyString(target, "CO", CopyOfArray(CosDictGetKeyString(source, "CO"), CosObjGetDoc(target), budget));
}

/// Adds the resources of one kind that the target lacks.
void AddResources(CosObj source, CosObj target, const char* kind, CopyBudget& budget) {
  if (CosDictKnownKeyString(source, kind) == 0 || CosDictKnownKeyString(target, kind) == 0) return;
  DeepCopyDictionary(CosDictGetKeyString(source, kind), CosDictGetKeyString(target, kind), KnownKeys::Keep, budget);
}

void CopyResources(CosObj source, CosObj target, CopyBudget& budget) {
  if (CosDictKnownKeyString(source, "DR") == 0) return;
  const CosObj sourceResources = CosDictGetKeyString(source, "DR");
  const CosObj targetResources = CosDictGetKeyString(target, "DR");
  if (CosObjGetType(targetResources) != CosDict) return;  // a form without resources of its own gets none
  AddResources(sourceResources, targetResources, "Font", budget);
  AddResources(sourceResources, targetResources, "Encoding", budget);
}

void CopySignatureFlags(CosObj source, CosObj target) {
  if (CosDictKnownKeyString(source, "SigFlags") == 0) return;
  const ASInt32 flags = CosIntegerValue(CosDictGetKeyString(source, "SigFlags"));
  ReplaceEntry(target, "SigFlags", CosNewInteger(CosObjGetDoc(target), 0, flags));
}

/// Finds the first field of a name. Names are read in order and only as far as a search needs them: a later name that the
/// host refuses to read does no harm.
class FieldsByName {
 public:
  explicit FieldsByName(const std::vector<std::unique_ptr<AcroFormField>>& fields) : fields_(fields) {}

  AcroFormField* First(const std::string& name) {
    if (const auto known = firstOfName_.find(name); known != firstOfName_.end()) return known->second;
    while (read_ < fields_.size()) {
      AcroFormField* field = fields_[read_++].get();
      const auto entry = firstOfName_.emplace(field->Name(), field).first;
      if (entry->first == name) return entry->second;
    }
    return nullptr;
  }

 private:
  const std::vector<std::unique_ptr<AcroFormField>>& fields_;
  std::size_t read_ = 0;
  std::unordered_map<std::string, AcroFormField*> firstOfName_;
};

}  // namespace

void AcroFormSync::Run(PDDoc target, PDDoc source) {
  AcroFormTree targetTree;
  AcroFormTree sourceTree;
  targetTree.Load(target);
  sourceTree.Load(source);
  PairFields(targetTree, sourceTree);
  for (const FieldPair& pair : pairs_) SynchronisePair(pair);
  const CosObj targetForm = FindForm(target);
  const CosObj sourceForm = FindForm(source);
  if (CosObjGetType(targetForm) != CosDict || CosObjGetType(sourceForm) != CosDict) return;
  CopyCalculationOrder(sourceForm, targetForm, budget_);
  CopyResources(sourceForm, targetForm, budget_);
  CopySignatureFlags(sourceForm, targetForm);
}

void AcroFormSync::PairFields(const AcroFormTree& target, const AcroFormTree& source) {
  FieldsByName partners(source.Fields());
  for (const auto& field : target.Fields()) {
    AcroFormField* partner = partners.First(field->Name());
    if (partner == nullptr) continue;
    pairs_.push_back({partner, field.get()});
    PairKids(*partner, *field);
  }
}

void AcroFormSync::PairKids(const AcroFormField& source, const AcroFormField& target) {
  const std::vector<CosObj> sourceKids = source.Kids();
  const std::vector<CosObj> targetKids = target.Kids();
  if (sourceKids.size() != targetKids.size()) return;
  // Many fields can have one array of kids.
  budget_.Spend(kCostOfPair * static_cast<std::int64_t>(sourceKids.size()));
  for (std::size_t i = 0; i < sourceKids.size(); ++i) {
    AcroFormField* targetKid = kids_.emplace_back(std::make_unique<AcroFormField>(targetKids[i])).get();
    AcroFormField* sourceKid = kids_.emplace_back(std::make_unique<AcroFormField>(sourceKids[i])).get();
    pairs_.push_back({sourceKid, targetKid});
  }
}

void AcroFormSync::SynchronisePair(const FieldPair& pair) {
  if (TypeText(*pair.source) != TypeText(*pair.target) && pair.source->Name() != pair.target->Name()) return;
  log_.str({});
  log_.clear();
  for (const Entry& entry : kEntries) {
    if (Copy(entry, *pair.source, *pair.target, budget_)) log_ << '/' << entry.key << " modified" << std::endl;
  }
}

}  // namespace tgx::acroform
