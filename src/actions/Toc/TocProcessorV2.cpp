#include "src/actions/Toc/TocProcessorV2.h"

#include <string_view>
#include <unordered_map>

#include <tinyxml2.h>

#include "src/actions/Toc/TocNesting.h"
#include "src/actions/Toc/TocTexts.h"
#include "src/api/HostException.h"
#include "src/common/ContentCommands.h"
#include "src/common/StructureUtils.h"
#include "src/common/XmlFile.h"
#include "src/logging/SimpleFileLogger.h"
#include "src/wrappers/ElementText.h"
#include "src/wrappers/PDS_MC.h"
#include "src/wrappers/PDS_TreeRoot.h"

namespace tgx {
namespace {

bool IsPlaceholder(PDSElement element) {
  if (PDSElementHasAlt(element) == 0) return false;
  std::vector<char> alt;
  GetAlt(element, alt);
  // Between the byte-order mark, which is not looked at, and the zero bytes behind the text.
  std::u16string text;
  for (std::size_t index = 2; index + 3 < alt.size(); index += 2) {
    text.push_back(
        static_cast<char16_t>(static_cast<unsigned char>(alt[index]) << 8U | static_cast<unsigned char>(alt[index + 1])));
  }
  return text.find(u"TOC_FRAME") != std::u16string::npos;
}

PDS_Element* findFrame(PDS_Element* element) {  // NOLINT(misc-no-recursion): as deep as the structure
  if (element == nullptr) return nullptr;
  if (IsPlaceholder(element->GetHandle())) return element;
  for (const auto& kid : element->GetKids()) {
    if (auto* found = findFrame(dynamic_cast<PDS_Element*>(kid.get()))) return found;
  }
  return nullptr;
}

/// An element that holds nothing but a link of at least two kids, the second of which is marked content.
bool HasShapeOfEntry(const PDS_Element& element) {
  if (element.GetNumKids() != 1) return false;
  const auto* link = dynamic_cast<const PDS_Element*>(element.GetKid(0));
  return link != nullptr && link->GetType() == ASAtomFromString("Link") && link->GetNumKids() >= 2 &&
         dynamic_cast<const PDS_MC*>(link->GetKid(1)) != nullptr;
}

/// Takes the content that the placeholder stands on off its page.
void EraseContentOf(const PDS_Element& frame, PageViews& views) {
  if (PDSElementGetNumKids(frame.GetHandle()) == 0) return;
  CosObj kid = CosNewNull();
  RemoveMarkedContentCmd command;
  const ASAtom type = PDSElementGetKidEx(frame.GetHandle(), 0, &kid, &command.mcid, nullptr, &command.cosPage);
  if (type != ASAtomFromString("MC") || command.mcid < 0 || CosObjGetType(command.cosPage) == CosNull) return;
  views.Forget(command.cosPage, command.mcid);
  command.Execute();
}

/// Rebuilds the contents of one container.
class TocBuilder {
 public:
  TocBuilder(PDS_Element& container, const TocTexts& texts, PageViews& views)
      : container_(container), texts_(texts), views_(views) {}

  void rebuild(PDS_Element& frame);

 private:
  std::string TextOf(const PDS_Element& element) const;
  void findEntries();
  PDS_Element* findTitle() const;
  void MakeItem(TocRecord& record) const;
  void AppendTitle(const std::shared_ptr<PDS_Element>& title) const;
  void AppendKids(const PDS_Kids& kids, const PDS_Element* title) const;

  PDS_Element& container_;
  const TocTexts& texts_;
  PageViews& views_;
  std::vector<TocRecord> records_;
};

void TocBuilder::rebuild(PDS_Element& frame) {
  findEntries();
  const PDS_Element* title = findTitle();
  // A page that cannot be edited ends the run before the structure is touched.
  EraseContentOf(frame, views_);
  const PDS_Kids kids = container_.GetKids();
  container_.RemoveAllKids();
  dynamic_cast<PDS_Element&>(*frame.GetParent()).RemoveKid(&frame);
  for (TocRecord& record : records_) MakeItem(record);
  AppendKids(kids, title);
  const auto rootToc = container_.CreateChild("TOC");
  container_.AppendKid(rootToc);
  NestRecords(records_, *rootToc);
}

std::string TocBuilder::TextOf(const PDS_Element& element) const {
  std::vector<char> text;
  CollectElementText(&element, text, true, views_);
  return {text.begin(), text.end()};
}

void TocBuilder::findEntries() {
  for (const auto& kid : container_.GetKids()) {
    const auto element = std::dynamic_pointer_cast<PDS_Element>(kid);
    if (element == nullptr || !HasShapeOfEntry(*element)) continue;
    const std::int32_t level = texts_.matchLevel(TextOf(*element));
    if (level != -1) records_.push_back({level, element, element});
  }
}

PDS_Element* TocBuilder::findTitle() const {
  std::vector<PDS_Element*> elements;
  for (const auto& kid : container_.GetKids()) {
    if (auto* element = dynamic_cast<PDS_Element*>(kid.get())) elements.push_back(element);
  }
  const std::ptrdiff_t found =
      FindTitlePiece(texts_.Titles(), elements.size(), [&](std::size_t index) { return TextOf(*elements[index]); });
  return found < 0 ? nullptr : elements[static_cast<std::size_t>(found)];
}

void TocBuilder::MakeItem(TocRecord& record) const {
  record.source->SetType("Reference");
  const auto paragraph = container_.CreateChild("P");
  record.item = container_.CreateChild("TOCI");
  paragraph->AppendKid(record.source);
  record.item->AppendKid(paragraph);
}

void TocBuilder::AppendTitle(const std::shared_ptr<PDS_Element>& title) const {
  auto heading = title;
  if (title->GetNumKids() == 1) {
    if (auto* inner = dynamic_cast<PDS_Element*>(title->GetKid(0))) {
      heading = std::static_pointer_cast<PDS_Element>(title->RemoveKid(inner));
    }
  }
  heading->SetType("H1");
  container_.AppendKid(heading);
}

void TocBuilder::AppendKids(const PDS_Kids& kids, const PDS_Element* title) const {
  std::unordered_map<const PDS_Object*, const TocRecord*> recordsBySource;
  for (const TocRecord& record : records_) recordsBySource.emplace(record.source.get(), &record);
  PDS_Element* last = nullptr;
  for (const auto& kid : kids) {
    const auto element = std::dynamic_pointer_cast<PDS_Element>(kid);
    if (element != nullptr && element->GetNumKids() == 0) continue;
    if (element != nullptr && element.get() == title) {
      AppendTitle(element);
    } else if (const auto record = recordsBySource.find(kid.get()); record != recordsBySource.end()) {
      last = record->second->item.get();
    } else {
      (last == nullptr ? container_ : *last).AppendKid(kid);
    }
  }
}

}  // namespace

bool TocProcessorV2::LoadMetaData(const std::string& path) {
  SimpleFileLogger& log = *SimpleFileLogger::Instance();
  const SimpleFileLogger::Burst burst(log);
  log.Info("LoadMetaData");
  tinyxml2::XMLDocument file;
  if (LoadXmlFile(path, file)) {
    log.Info("XML file '%s' loaded", path.c_str());
  } else {
    log.Exception("failed to load XML file '%s'", path.c_str());
  }
  items_ = ReadTocItems(file);
  file.Clear();
  return run();
}

bool TocProcessorV2::run() {
  InExceptionFrame([this] {
    PDSTreeRoot root = CosNewNull();
    if (PDDocGetStructTreeRoot(GetDocument(), &root) == 0) return;
    const TocTexts texts(items_);
    PageViews views(GetDocument());
    const PDS_TreeRoot tree(root);
    for (const auto& kid : tree.GetKids()) {
      PDS_Element* frame = findFrame(dynamic_cast<PDS_Element*>(kid.get()));
      if (frame == nullptr || frame->GetParent() == nullptr) continue;
      // A placeholder in a top-level element has the tree root here, which is no container.
      auto* container = dynamic_cast<PDS_Element*>(frame->GetParent()->GetParent());
      if (container != nullptr) TocBuilder(*container, texts, views).rebuild(*frame);
    }
  });
  return true;
}

}  // namespace tgx
