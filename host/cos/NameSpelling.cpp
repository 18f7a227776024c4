#include "host/cos/NameSpelling.h"

#include <algorithm>
#include <exception>
#include <new>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>

#include "host/cos/Names.h"
#include "host/pdmodel/Document.h"

namespace tgx::host {
namespace {

constexpr std::string_view kSpelledOut = "#23";

bool Contains(std::string_view bytes, std::string_view wanted) { return bytes.find(wanted) != std::string_view::npos; }

/// Searches what is not in object streams: the file as it stands.
bool SourceContains(InputSource& source, std::string_view wanted) {
  constexpr std::size_t kChunk = 1 << 18;
  std::string chunk(kChunk, '\0');
  std::size_t kept = 0;  // of the chunk before: the wanted bytes may begin there
  source.rewind();
  while (const std::size_t count = source.read(chunk.data() + kept, kChunk - kept)) {
    const std::string_view bytes(chunk.data(), kept + count);
    if (Contains(bytes, wanted)) return true;
    kept = std::min(bytes.size(), wanted.size() - 1);
    std::copy(bytes.end() - static_cast<std::ptrdiff_t>(kept), bytes.end(), chunk.begin());
  }
  return false;
}

std::set<int> ObjectStreams(QPDF& pdf) {
  constexpr int kInObjectStream = 2;
  std::set<int> numbers;
  for (const auto& [object, entry] : pdf.getXRefTable()) {
    if (entry.getType() == kInObjectStream) numbers.insert(entry.getObjStreamNumber());
  }
  return numbers;
}

bool ObjectStreamsContain(QPDF& pdf, std::string_view wanted) {
  for (const int number : ObjectStreams(pdf)) {
    QPDFObjectHandle stream = pdf.getObjectByID(number, 0);
    if (!stream.isStream()) continue;
    const std::shared_ptr<Buffer> data = stream.getStreamData(qpdf_dl_specialized);
    if (Contains({reinterpret_cast<const char*>(data->getBuffer()), data->getSize()}, wanted)) return true;
  }
  return false;
}

/// Renames what is to be renamed in an object and the direct objects in it.
class Renamer {
 public:
  explicit Renamer(Document& document) : document_(document) {}

  void Visit(const QPDFObjectHandle& object) {
    // A list in place of recursion, since a client may nest direct objects as deeply as it likes.
    pending_.push_back(object);
    while (!pending_.empty()) {
      QPDFObjectHandle next = pending_.back();
      pending_.pop_back();
      if (next.isStream()) next = next.getDict();
      if (next.isArray()) VisitArray(next);
      if (next.isDictionary()) VisitDictionary(next);
    }
  }

 private:
  void VisitArray(QPDFObjectHandle& array) {
    const int length = array.getArrayNItems();
    for (int i = 0; i < length; ++i) {
      const QPDFObjectHandle item = array.getArrayItem(i);
      if (auto renamed = Look(item)) array.setArrayItem(i, *renamed);
    }
  }

  void VisitDictionary(QPDFObjectHandle& dictionary) {
    for (const auto& [key, value] : dictionary.getDictAsMap()) {
      const std::string wanted = ToQpdfName(FromQpdfName(key));
      const auto renamed = Look(value);
      if (wanted != key) {
        dictionary.removeKey(key);
        if (dictionary.hasKey(wanted)) continue;  // two spellings of one name: the first counts
      }
      if (wanted != key || renamed) dictionary.replaceKey(wanted, renamed.value_or(value));
    }
  }

  /// What is to stand in the place of a direct name; other direct objects are put on the list.
  std::optional<QPDFObjectHandle> Look(const QPDFObjectHandle& item) {
    QPDFObjectHandle object = item;
    if (object.isIndirect()) return {};
    if (object.isName()) {
      const std::string name = object.getName();
      const std::string wanted = ToQpdfName(FromQpdfName(name));
      if (wanted == name) return {};
      const QPDFObjectHandle renamed = QPDFObjectHandle::newName(wanted);
      document_.Objects().Renew(object, renamed);
      return renamed;
    }
    const bool isContainer = object.isArray() || object.isDictionary();
    if (isContainer && seen_.insert(object.getObjectPtr()).second) pending_.push_back(object);
    return {};
  }

  Document& document_;
  std::vector<QPDFObjectHandle> pending_;
  std::unordered_set<const QPDFObject*> seen_;
};

}  // namespace

bool NameSpelling::FileMayHaveNumberSigns() {
  if (source_ == nullptr) return true;
  try {
    return SourceContains(*source_, kSpelledOut) || ObjectStreamsContain(document_.Pdf(), kSpelledOut);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception&) {  // an object stream that cannot be decoded: saving goes without it, so the search does
    return true;
  }
}

void NameSpelling::Settle() {
  if (isSettled_) return;
  if (FileMayHaveNumberSigns()) {
    QPDF& pdf = document_.Pdf();
    Renamer renamer(document_);
    renamer.Visit(pdf.getTrailer());
    for (QPDFObjectHandle& object : pdf.getAllObjects()) {
      if (object.isName()) {
        // Replaced in place: references and handles stay good.
        pdf.replaceObject(object.getObjGen(), QPDFObjectHandle::newName(ToQpdfName(FromQpdfName(object.getName()))));
      } else {
        renamer.Visit(object);
      }
    }
  }
  isSettled_ = true;
}

void NameSpelling::Settle(const QPDFObjectHandle& object) { Renamer(document_).Visit(object); }

}  // namespace tgx::host
