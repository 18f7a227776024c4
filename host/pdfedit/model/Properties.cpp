#include "host/pdfedit/model/Properties.h"

#include <exception>
#include <limits>
#include <new>

#include "host/cos/NameSpelling.h"
#include "host/pdfedit/reading/ContentReader.h"
#include "host/pdmodel/Document.h"

namespace tgx::host {
namespace {

constexpr int kDeepestProperties = 64;

bool HoldsReference(const QPDFObjectHandle& object, int depth) {
  QPDFObjectHandle value = object;
  if (value.isIndirect()) return true;
  if (depth > kDeepestProperties) return false;
  if (value.isArray()) {
    for (const QPDFObjectHandle& item : value.aitems()) {
      if (HoldsReference(item, depth + 1)) return true;
    }
  } else if (value.isDictionary()) {
    for (const auto& entry : value.ditems()) {
      if (HoldsReference(entry.second, depth + 1)) return true;
    }
  }
  return false;
}

}  // namespace

std::optional<QPDFObjectHandle> ParseProperties(Document& document, std::string_view text) {
  try {
    QPDFObjectHandle dictionary = QPDFObjectHandle::parse(&document.Pdf(), std::string(text), "marked-content properties");
    if (!dictionary.isDictionary() || dictionary.isIndirect()) return std::nullopt;
    if (text.find('#') != std::string_view::npos) document.Names().Settle(dictionary);
    return dictionary;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception&) {  // damaged: the container counts as one without a dictionary
  }
  return std::nullopt;
}

std::int32_t McidOf(QPDFObjectHandle dictionary) {
  QPDFObjectHandle mcid = dictionary.getKey("/MCID");
  if (!mcid.isInteger()) return -1;
  const long long value = mcid.getIntValue();
  return value < 0 || value > std::numeric_limits<std::int32_t>::max() ? -1 : static_cast<std::int32_t>(value);
}

std::int32_t McidOf(std::string_view dictionaryText) {
  const Token dictionary = NextToken(dictionaryText, 0);
  std::int32_t mcid = -1;
  ForEachEntry(dictionaryText, dictionary, [&](const Token& key, const Token& value) {
    const std::string_view name = key.In(dictionaryText);
    if (name != "/MCID" && (name.find('#') == std::string_view::npos || NameValue(name) != "MCID")) return;
    const std::string_view number = value.In(dictionaryText);
    mcid = -1;
    if (value.kind != Token::Kind::kNumber || number.find('.') != std::string_view::npos) return;
    const double integer = NumberValue(number);
    if (integer >= 0 && integer <= std::numeric_limits<std::int32_t>::max()) mcid = static_cast<std::int32_t>(integer);
  });
  return mcid;
}

bool HoldsContainers(QPDFObjectHandle dictionary) {
  for (const auto& entry : dictionary.ditems()) {
    QPDFObjectHandle value = entry.second;
    if (!value.isIndirect() && (value.isArray() || value.isDictionary())) return true;
  }
  return false;
}

bool HoldsReference(QPDFObjectHandle object) { return HoldsReference(object, 0); }

}  // namespace tgx::host
