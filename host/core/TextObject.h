#pragma once

#include <string>

#include <tgx/host.h>

namespace tgx::host {

/// What an ASText names: UTF-16 code units in the processor's order. Lone surrogates are kept as they are.
struct TextObject {
  std::u16string units;
};

ASText NewText(std::u16string units);

/// Throws kASBadParameter for null and for a text that was destroyed.
TextObject& TextOf(ASText text);

/// Nothing happens for null or a text that is gone already: clients destroy texts in their destructors.
void DestroyText(ASText text) noexcept;

}  // namespace tgx::host
