#include "host/pdmodel/SharedStreams.h"

#include <exception>
#include <unordered_set>

#include <qpdf/QPDF.hh>

#include "host/pdmodel/Document.h"

namespace tgx::host {
namespace {

bool IsForm(QPDFObjectHandle stream) { return stream.getDict().getKey("/Subtype").isNameAndEquals("/Form"); }

QPDFObjectHandle At(const NewStreams::Place& place) {
  QPDFObjectHandle container = place.container;
  return place.key.empty() ? container.getArrayItem(place.index) : container.getKey(place.key);
}

void Put(const NewStreams::Place& place, const QPDFObjectHandle& stream) {
  QPDFObjectHandle container = place.container;
  if (place.key.empty()) {
    container.setArrayItem(place.index, stream);
  } else {
    container.replaceKey(place.key, stream);
  }
}

/// What two streams must have alike besides their data. The length follows from the data.
std::string DictionaryText(QPDFObjectHandle stream) {
  QPDFObjectHandle dictionary = stream.getDict().shallowCopy();
  dictionary.removeKey("/Length");
  return dictionary.unparse();
}

/// The data that a stream of the file has in common with new streams, null if there are none or the stream is damaged.
const Buffer* CommonData(const NewStreams& newStreams, QPDFObjectHandle stream) {
  try {
    const auto data = stream.getRawStreamData();
    return newStreams.FindData({reinterpret_cast<const char*>(data->getBuffer()), data->getSize()}).get();
  } catch (const std::exception&) {
    return nullptr;
  }
}

}  // namespace

SharedStreams::SharedStreams(Document& document) {
  Streams streams;
  for (const NewStreams::NewStream& newStream : document.Streams().Streams()) {
    if (newStream.data->getSize() > 0 && !IsForm(newStream.stream)) streams.push_back(&newStream);
  }
  if (streams.empty()) return;
  FindInFile(document, streams);
  for (const NewStreams::NewStream* newStream : streams) {
    const auto [first, isFirst] = firsts_[newStream->data].emplace(DictionaryText(newStream->stream), newStream->stream);
    if (!isFirst) Replace(*newStream, first->second);
  }
}

SharedStreams::~SharedStreams() {
  for (const Replaced& replaced : replaced_) Put(replaced.place, replaced.stream);
}

/// Only streams of the right length are read. Those of an encrypted file are longer than their data and are not found.
void SharedStreams::FindInFile(Document& document, const Streams& streams) {
  std::unordered_set<long long> lengths;
  for (const NewStreams::NewStream* newStream : streams) lengths.insert(static_cast<long long>(newStream->data->getSize()));
  const NewStreams& newStreams = document.Streams();
  for (QPDFObjectHandle& object : document.Pdf().getAllObjects()) {
    if (!object.isStream() || newStreams.IsNew(object) || IsForm(object)) continue;
    QPDFObjectHandle length = object.getDict().getKey("/Length");
    if (!length.isInteger() || lengths.count(length.getIntValue()) == 0) continue;
    if (const Buffer* data = CommonData(newStreams, object)) firsts_[data].emplace(DictionaryText(object), object);
  }
}

void SharedStreams::Replace(const NewStreams::NewStream& newStream, const QPDFObjectHandle& first) {
  for (const NewStreams::Place& place : newStream.places) {
    if (At(place).getObjectPtr() != newStream.stream.getObjectPtr()) continue;  // a client has put something else there
    Put(place, first);
    replaced_.push_back({place, newStream.stream});
  }
}

}  // namespace tgx::host
