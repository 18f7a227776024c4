#include "host/core/TextObject.h"

#include "host/core/HandleTable.h"

namespace tgx::host {
namespace {

HandleTable<ASText, TextObject>& LivingTexts() {
  static HandleTable<ASText, TextObject> texts(7, "text object");
  return texts;
}

}  // namespace

ASText NewText(std::u16string units) {
  return LivingTexts().Add(std::make_unique<TextObject>(TextObject{std::move(units)}));
}

TextObject& TextOf(ASText text) { return LivingTexts().Of(text); }

void DestroyText(ASText text) noexcept { LivingTexts().Remove(text); }

}  // namespace tgx::host
