#include <algorithm>

#include "host/core/HostError.h"
#include "host/pdfedit/PageContents.h"
#include "host/pdfedit/model/PageModel.h"
#include "host/pdfedit/writing/Syntax.h"
#include "host/pdmodel/Document.h"

namespace tgx::host {

void PageModel::Edited() {
  edited_ = true;
  uncommitted_ = true;
}

void PageModel::Touch(std::uint32_t list) {
  if (list == kNone) return;
  if (!lists_[list].isTouched) touched_.push_back(list);
  lists_[list].isTouched = true;
  Edited();
}

void PageModel::Remove(std::uint32_t list, ASInt32 index) {
  CheckIndex(list, index);
  ContentList& record = lists_[list];
  const std::uint32_t item = record.Item(static_cast<std::uint32_t>(index));
  if ((item & ContentList::kAdded) != 0) {
    Touch(list);
    CreatedText& text = AddedText(item);
    text.list = kNone;
    if (text.references > 0) --text.references;
  } else {
    removed_.push_back(item);
    At(item).flags |= Element::kRemoved;
    Edited();
  }
  record.Remove(static_cast<std::uint32_t>(index));
}

void PageModel::Add(std::uint32_t list, ASInt32 afterIndex, CreatedText& text) {
  if (afterIndex < -1) {
    throw HostError(kASOutOfRange, Place() + ": no content element can stand after index " + std::to_string(afterIndex));
  }
  if (text.list != kNone) throw HostError(kASBadParameter, Place() + ": the text element stands in a content list already");
  if (text.page != nullptr && text.page != this) {
    throw HostError(kASNotSupported, Place() + ": the text element belongs to another page");
  }
  for (const EditedRun& run : text.runs) {
    if (run.added->font->Document() != &contents_.Fonts()) {
      throw HostError(kASBadParameter, Place() + ": the text element has a font of another document");
    }
  }
  ContentList& record = lists_[list];
  Touch(list);
  if (text.page == nullptr) {
    text.addedAs = static_cast<std::uint32_t>(added_.size());
    added_.push_back(&text);
    text.page = this;
  }
  const std::uint32_t at = std::min(static_cast<std::uint32_t>(afterIndex + 1), record.size);
  record.Insert(at, text.addedAs | ContentList::kAdded);
  text.list = list;
  ++text.references;
}

void PageModel::SetTag(std::uint32_t container, std::string tag) {
  if (TagOf(container) == tag) return;
  containerEdits_[container].tag = std::move(tag);
  editedTags_.push_back(container);
  Edited();
}

void PageModel::ReplaceContent(std::uint32_t container, std::uint32_t list) {
  if (ListOf(container) == list) return;
  for (std::uint32_t around = container; around != kNone; around = At(around).parent) {
    if (lists_[list].owner == At(around).parent) {
      throw HostError(kASBadParameter, Place() + ": a container cannot hold the list that it lies in");
    }
  }
  if (lists_[list].size != 0) throw HostError(kASNotSupported, Place() + ": content cannot stand in two places");
  const std::uint32_t own = ListOf(container);
  while (lists_[own].size > 0) Remove(own, static_cast<ASInt32>(lists_[own].size - 1));
}

std::vector<EditedRun>& PageModel::EditText(std::uint32_t text) {
  const auto known = textEdits_.find(text);
  if (known != textEdits_.end()) return known->second.runs;
  auto runs = UneditedRuns(OriginalLayout(text));
  return textEdits_[text].runs = std::move(runs);
}

void PageModel::TextChanged(std::uint32_t text) {
  if (editedLayout_.text == text) editedLayout_.text = kNone;
  editedTexts_.push_back(text);
  Edited();
}

// Committing.

void PageModel::Commit() {
  CommitProperties();
  if (!uncommitted_) return;
  for (const std::uint32_t element : removed_) {
    NoteRemoval(element);
    At(element).flags |= Element::kGone;
  }
  gone_.insert(gone_.end(), removed_.begin(), removed_.end());
  removed_.clear();
  for (const std::uint32_t container : editedTags_) {
    ContainerEdit& edit = containerEdits_[container];
    edit.committedTag = edit.tag;
  }
  editedTags_.clear();
  for (const std::uint32_t text : editedTexts_) {
    NoteShortening(text);
    TextEdit& edit = textEdits_[text];
    edit.committed = edit.runs;
    edit.isCommitted = true;
  }
  editedTexts_.clear();
  for (const std::uint32_t list : touched_) {
    CommitAdditions(list);
    lists_[list].isTouched = false;
  }
  touched_.clear();
  uncommitted_ = false;
  waiting_ = true;
  contents_.Waits(*this);
}

/// What is to be committed is forgotten last: a commit that fails is tried again when the document is written.
void PageModel::CommitProperties() {
  if (nestedEditsSeen_ != contents_.UnknownEdits()) {
    for (std::uint32_t i = 0; i < properties_.size(); ++i) {
      if (properties_[i].isNested && properties_[i].container != kNone) CommitProperties(i);
    }
  }
  for (const std::uint32_t number : editedProperties_) {
    if (properties_[number].isEdited) CommitProperties(number);
    properties_[number].isEdited = false;
  }
  editedProperties_.clear();
  nestedEditsSeen_ = contents_.UnknownEdits();
}

void PageModel::CommitProperties(std::uint32_t number) {
  Properties& properties = properties_[number];
  const std::uint32_t container = properties.container;
  const auto known = containerEdits_.find(container);
  const bool wasWritten = known != containerEdits_.end() && known->second.committedProperties;
  std::string text;
  if (At(container).Is(Element::kSharedDictionary)) return;  // moved to the resources, where every edit shows at once
  if (HoldsReference(properties.dictionary)) {
    text = FormatName(resources_.NameFor("/Properties", properties.dictionary, "Pr", bytes_));
    At(container).flags |= Element::kSharedDictionary;
  } else {
    text = properties.dictionary.unparseResolved();
    if (!wasWritten) {
      ContentReader reader(bytes_, At(container).begin);
      reader.Next();
      auto original = ParseProperties(contents_.InDocument(), reader.Operand(0, 1).In(bytes_));
      if (original && original->unparseResolved() == text) return;
    } else if (*known->second.committedProperties == text) {
      return;
    }
  }
  containerEdits_[container].committedProperties = std::move(text);
  Edited();
}

std::uint32_t PageModel::EndOf(std::uint32_t list) {
  constexpr std::uint32_t kEndOperator = 3;  // EMC
  const std::uint32_t owner = lists_[list].owner;
  if (owner == kNone || !At(owner).Is(Element::kClosed)) return operatorsEnd_;
  return At(owner).end - kEndOperator;
}

void PageModel::CommitAdditions(std::uint32_t list) {
  const ContentList& record = lists_[list];
  std::uint32_t offset = 0;
  if (record.owner != kNone) {
    ContentReader reader(bytes_, At(record.owner).begin);
    reader.Next();
    offset = static_cast<std::uint32_t>(reader.End());
  }
  // Behind the last element the place is the end of the list, where clips and states of elements are over.
  std::uint32_t lastOwn = record.size;
  while (lastOwn > 0 && (record.Item(lastOwn - 1) & ContentList::kAdded) != 0) --lastOwn;
  std::vector<Addition> additions;
  for (std::uint32_t i = 0; i < record.size; ++i) {
    const std::uint32_t item = record.Item(i);
    if ((item & ContentList::kAdded) == 0) {
      offset = At(item).end;
    } else {
      additions.push_back({i < lastOwn ? offset : EndOf(list), AddedText(item).runs});
    }
  }
  additions_[list] = std::move(additions);
}

}  // namespace tgx::host
