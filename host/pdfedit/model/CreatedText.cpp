#include "host/pdfedit/model/CreatedText.h"

#include <algorithm>

namespace tgx::host {
namespace {

/// Texts belong to no document at first, so their handles are the process's. Those of freed texts are used again.
struct Texts {
  Slabs<TextRecord> records{RecordKind::kText, nullptr};
  std::vector<std::uint32_t> free;  // has room for all
};

Texts& AllTexts() {
  static Texts& texts = *new Texts;
  return texts;
}

}  // namespace

CreatedText& CreatedText::Make() {
  Texts& texts = AllTexts();
  auto text = std::make_unique<CreatedText>();
  if (texts.free.empty()) {
    if (texts.free.capacity() <= texts.records.Size()) texts.free.reserve(2 * texts.records.Size() + 16);
    texts.records.Add({nullptr, {}});
    texts.free.push_back(texts.records.Size() - 1);
  }
  text->record_ = texts.free.back();
  texts.free.pop_back();
  texts.records[text->record_].text = text.get();
  return *text.release();
}

void CreatedText::Free(CreatedText& text) noexcept {
  Texts& texts = AllTexts();
  texts.records[text.record_].text = nullptr;
  texts.free.push_back(text.record_);
  delete &text;
}

void CreatedText::Release(CreatedText& text) noexcept {
  if (text.references > 0) --text.references;
  if (text.references == 0 && text.page == nullptr) Free(text);
}

void CreatedText::ForgetFonts(const void* document) noexcept {
  Slabs<TextRecord>& records = AllTexts().records;
  for (std::uint32_t i = 0; i < records.Size(); ++i) {
    CreatedText* text = records[i].text;
    if (text == nullptr || text->page != nullptr) continue;
    const auto hasItsFont = [document](const EditedRun& run) { return run.added->font->Document() == document; };
    text->runs.erase(std::remove_if(text->runs.begin(), text->runs.end(), hasItsFont), text->runs.end());
    text->Changed();
  }
}

PDEText CreatedText::Handle() const noexcept { return AllTexts().records.Handle(record_); }

const TextLayout& CreatedText::Layout() {
  if (!layout_) layout_ = std::make_unique<TextLayout>(LayoutOf({}, runs));
  return *layout_;
}

}  // namespace tgx::host
