#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <qpdf/QPDFObjectHandle.hh>

namespace tgx::host {

// Entries of a dictionary by their plain names (see Names.h). Host code that looks for a fixed key without a number sign can
// as well ask qpdf for "/Key".

/// The value, or qpdf's null when there is none or it is null.
QPDFObjectHandle DictGet(QPDFObjectHandle dictionary, std::string_view key);
bool DictHas(QPDFObjectHandle dictionary, std::string_view key);

/// Sets the entry; qpdf's null removes it.
void DictSet(QPDFObjectHandle dictionary, std::string_view key, const QPDFObjectHandle& value);
void DictRemove(QPDFObjectHandle dictionary, std::string_view key);

struct DictEntry {
  std::string key;
  QPDFObjectHandle value;
};

/// The entries that are not null, in byte order of their plain names.
std::vector<DictEntry> DictEntries(QPDFObjectHandle dictionary);

}  // namespace tgx::host
