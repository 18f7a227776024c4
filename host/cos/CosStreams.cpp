#include <algorithm>
#include <limits>
#include <string>

#include <qpdf/Pl_Buffer.hh>
#include <qpdf/Pl_Count.hh>
#include <qpdf/Pl_Discard.hh>

#include "host/core/HostError.h"
#include "host/core/Operations.h"
#include "host/core/Streams.h"
#include "host/cos/CosAccess.h"
#include "host/pdmodel/Document.h"

namespace tgx::host {
namespace {

std::shared_ptr<Buffer> Decoded(QPDFObjectHandle& stream) {
  Pl_Buffer buffer("decoded stream");
  bool canDecode = false;
  const bool isWhole = stream.pipeStreamData(&buffer, &canDecode, 0, qpdf_dl_all, true, false);
  if (!canDecode) throw HostError(kASNotSupported, Describe(stream) + ": a filter of the stream cannot be undone");
  if (!isWhole) throw HostError(kASDamagedDocument, Describe(stream) + ": the data of the stream are damaged");
  return buffer.getBufferSharedPointer();
}

/// The dictionary of a new stream: the entries of `attributes`, or none.
QPDFObjectHandle StreamDictionary(const Document& document, CosObj attributes) {
  if (IsNull(attributes)) return QPDFObjectHandle::newDictionary();
  QPDFObjectHandle dictionary = SlotOfType(attributes, CosDict).object;
  if (attributes.b != document.Serial()) {
    throw HostError(kASBadParameter, Describe(dictionary) + " belongs to another document than the new stream");
  }
  return dictionary.shallowCopy();  // an indirect or shared dictionary cannot be a stream's own
}

/// Takes the bytes from `start` on, counted from the present position, off the front of a stream.
std::string Drain(ByteStream& source, ASInt32 start, ASInt32 length) {
  const std::string_view rest = source.Rest();
  const auto skipped = static_cast<std::size_t>(std::max(start, 0));
  if (start < 0 || skipped > rest.size())
    throw HostError(kASBadParameter, "the source stream has no byte " + std::to_string(start));
  const std::size_t available = rest.size() - skipped;
  const std::size_t count = length == -1 ? available : static_cast<std::size_t>(std::max(length, 0));
  if (length < -1 || count > available) {
    throw HostError(kASBadParameter,
                    "the source stream has not the " + std::to_string(length) + " bytes that are asked for");
  }
  std::string data(rest.substr(skipped, count));
  source.Skip(skipped + count);
  return data;
}

}  // namespace

namespace operations {

CosObj CosNewStream(CosDoc doc, ASBool /*indirect*/, ASStm source, ASInt32 sourceStart, ASBool encode, CosObj attributes,
                    CosObj /*encodeParms*/, ASInt32 sourceLength) {
  Document& document = Document::Of(doc);
  ByteStream& bytes = StreamOf(source);
  if (encode != 0) throw HostError(kASNotSupported, "new streams take data that are encoded already");
  const QPDFObjectHandle dictionary = StreamDictionary(document, attributes);
  QPDFObjectHandle stream = document.Pdf().newStream();
  stream.replaceDict(dictionary);
  // Handles that are not initialised leave "Filter" and "DecodeParms" as they are.
  stream.replaceStreamData(Drain(bytes, sourceStart, sourceLength), QPDFObjectHandle(), QPDFObjectHandle());
  return document.HandleOf(stream);
}

CosObj CosStreamDict(CosObj stream) {
  const QPDFObjectHandle dictionary = StreamObjectOf(stream).getDict();
  return Document::Of(stream).HandleOf(dictionary);
}

ASInt32 CosStreamLength(CosObj stream) {
  QPDFObjectHandle object = StreamObjectOf(stream);
  // "Length" counts what encryption adds, and can be wrong: only reading tells.
  Pl_Discard discard;
  Pl_Count count("stored stream", &discard);
  if (!object.pipeStreamData(&count, 0, qpdf_dl_none, true, false)) {
    throw HostError(kASDamagedDocument, Describe(object) + ": the data of the stream cannot be read");
  }
  return static_cast<ASInt32>(std::min<qpdf_offset_t>(count.getCount(), std::numeric_limits<ASInt32>::max()));
}

ASStm CosStreamOpenStm(CosObj stream, ASInt32 mode) {
  QPDFObjectHandle object = StreamObjectOf(stream);
  switch (mode) {
    case cosOpenRaw:
    case cosOpenUnfiltered:
      return OpenStream(object.getRawStreamData());
    case cosOpenFiltered:
      return OpenStream(Decoded(object));
    default:
      throw HostError(kASBadParameter, "streams are not opened in a mode " + std::to_string(mode));
  }
}

}  // namespace operations
}  // namespace tgx::host
