#include "host/pdfedit/model/Properties.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <limits>
#include <map>
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

bool IsInteger(std::string_view number) {
  constexpr std::size_t kSafeDigits = 18;
  if (number.front() == '+' || number.front() == '-') number.remove_prefix(1);
  return !number.empty() && number.size() <= kSafeDigits &&
         std::all_of(number.begin(), number.end(), [](char c) { return c >= '0' && c <= '9'; });
}

/// A value that reads the same to everybody; nothing for one that had better be qpdf's to read.
std::optional<QPDFObjectHandle> PlainValue(const Token& value, std::string_view text) {
  const std::string_view token = value.In(text);
  if (value.kind == Token::Kind::kNumber && IsInteger(token)) {
    return QPDFObjectHandle::newInteger(std::strtoll(std::string(token).c_str(), nullptr, 10));
  }
  if (value.kind == Token::Kind::kName && token.size() > 1 && token.find('#') == std::string_view::npos) {
    return QPDFObjectHandle::newName(std::string(token));
  }
  const bool isClosed = std::count(token.begin(), token.end(), '(') == std::count(token.begin(), token.end(), ')');
  if (value.kind == Token::Kind::kString && isClosed && token.find_first_of("\\\r") == std::string_view::npos) {
    return QPDFObjectHandle::newString(std::string(token.substr(1, token.size() - 2)));
  }
  return std::nullopt;
}

/// A dictionary of plain values, which nearly all are that stand in content. Reading them with qpdf would take longer than
/// all the rest of the content.
std::optional<QPDFObjectHandle> ParsePlain(std::string_view text) {
  if (!text.starts_with("<<") || !text.ends_with(">>")) return std::nullopt;
  const std::string_view entries = text.substr(0, text.size() - 2);
  std::map<std::string, QPDFObjectHandle> values;
  for (std::size_t at = 2;;) {
    const Token key = NextToken(entries, at);
    if (key.kind == Token::Kind::kEnd) return QPDFObjectHandle::newDictionary(values);
    const Token value = NextToken(entries, key.end);
    const std::string_view name = key.In(entries);
    if (key.kind != Token::Kind::kName || name.size() < 2 || name.find('#') != std::string_view::npos) return std::nullopt;
    std::optional<QPDFObjectHandle> plain = PlainValue(value, entries);
    if (!plain || !values.emplace(name, std::move(*plain)).second) return std::nullopt;
    at = value.end;
  }
}

}  // namespace

std::optional<QPDFObjectHandle> ParseProperties(Document& document, std::string_view text) {
  if (auto plain = ParsePlain(text)) return plain;
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

bool MayHoldContainers(std::string_view text) {
  return text.find('[') != std::string_view::npos || text.find("<<", 2) != std::string_view::npos;
}

bool HoldsReference(const QPDFObjectHandle& object) { return HoldsReference(object, 0); }

}  // namespace tgx::host
