#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <qpdf/QPDFObjectHandle.hh>

namespace tgx::host {

class Document;

/// A property dictionary of marked content as a Cos object: a resource that several containers may use, or the inline one of
/// one container.
struct Properties {
  QPDFObjectHandle dictionary;
  std::uint32_t container;  ///< of an inline one
  bool isEdited = false;    ///< since the last commit
  bool isNested = false;    ///< may hold arrays or dictionaries, whose edits do not tell where they stand
};

/// The dictionary of an inline operand as a direct object of the document; nothing when it cannot be understood.
std::optional<QPDFObjectHandle> ParseProperties(Document& document, std::string_view text);

/// "MCID" of a dictionary, -1 when it has none that is an integer from 0 up.
std::int32_t McidOf(QPDFObjectHandle dictionary);

/// The same from the text of an inline dictionary, without making objects.
std::int32_t McidOf(std::string_view dictionaryText);

bool HoldsContainers(QPDFObjectHandle dictionary);
/// The same from the text of an inline dictionary; also true for one with their brackets in a string.
bool MayHoldContainers(std::string_view text);

/// Whether a reference stands anywhere in a direct object.
bool HoldsReference(const QPDFObjectHandle& object);

}  // namespace tgx::host
