#include "host/cos/Dictionaries.h"

#include <algorithm>

#include "host/cos/Names.h"

namespace tgx::host {
namespace {

bool HasSeveralForms(std::string_view name) { return name.find('#') != std::string_view::npos; }

/// qpdf's key of an entry that is there and not null, else the form in which the host would make it. Of two entries with one
/// name it is the one that DictEntries gives.
std::string KeyIn(QPDFObjectHandle& dictionary, std::string_view name) {
  if (HasSeveralForms(name)) {
    for (std::string& form : QpdfFormsOf(name)) {
      if (dictionary.hasKey(form)) return std::move(form);
    }
  }
  return ToQpdfName(name);
}

}  // namespace

QPDFObjectHandle DictGet(QPDFObjectHandle dictionary, std::string_view key) {
  const std::string known = KeyIn(dictionary, key);
  // For a missing key qpdf makes a null that describes where it comes from; asking first is cheaper.
  return dictionary.hasKey(known) ? dictionary.getKey(known) : QPDFObjectHandle::newNull();
}

bool DictHas(QPDFObjectHandle dictionary, std::string_view key) { return dictionary.hasKey(KeyIn(dictionary, key)); }

void DictSet(QPDFObjectHandle dictionary, std::string_view key, const QPDFObjectHandle& value) {
  QPDFObjectHandle stored = value;
  if (HasSeveralForms(key) || stored.isNull()) DictRemove(dictionary, key);
  if (!stored.isNull()) dictionary.replaceKey(ToQpdfName(key), stored);
}

void DictRemove(QPDFObjectHandle dictionary, std::string_view key) {
  if (HasSeveralForms(key)) {
    for (const std::string& form : QpdfFormsOf(key)) dictionary.removeKey(form);
  } else {
    dictionary.removeKey(ToQpdfName(key));
  }
}

std::vector<DictEntry> DictEntries(QPDFObjectHandle dictionary) {
  std::vector<DictEntry> entries;
  for (auto& [form, value] : dictionary.getDictAsMap()) {
    if (!value.isNull()) entries.push_back({FromQpdfName(form), value});
  }
  // qpdf's order is that of the forms. Two forms of one name are one entry, and the first counts.
  const auto before = [](const DictEntry& a, const DictEntry& b) { return a.key < b.key; };
  if (!std::is_sorted(entries.begin(), entries.end(), before)) std::stable_sort(entries.begin(), entries.end(), before);
  const auto same = [](const DictEntry& a, const DictEntry& b) { return a.key == b.key; };
  entries.erase(std::unique(entries.begin(), entries.end(), same), entries.end());
  return entries;
}

}  // namespace tgx::host
