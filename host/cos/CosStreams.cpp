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

/// Sends the data of a stream down a pipeline, decrypted, and decoded if asked for.
void Pipe(CosObj stream, Pipeline& sink, bool decode) {
  bool canDecode = false;
  const bool isWhole =
      StreamObjectOf(stream).pipeStreamData(&sink, &canDecode, 0, decode ? qpdf_dl_all : qpdf_dl_none, true, false);
  // qpdf also says that it cannot decode when it tried and failed, so the failure comes first.
  if (!isWhole) throw HostError(kASDamagedDocument, Describe(stream) + ": the data of the stream are damaged");
  if (decode && !canDecode) throw HostError(kASNotSupported, Describe(stream) + ": a filter of the stream cannot be undone");
}

/// The dictionary of a new stream: the entries of `attributes`, or none.
QPDFObjectHandle StreamDictionary(const Document& document, CosObj attributes) {
  if (IsNull(attributes)) return QPDFObjectHandle::newDictionary();
  QPDFObjectHandle dictionary = SlotOfType(attributes, CosDict).object;
  if (attributes.b != document.Serial()) {
    throw HostError(kASBadParameter, Describe(attributes) + " belongs to another document than the new stream");
  }
  return dictionary.shallowCopy();  // an indirect or shared dictionary cannot be a stream's own
}

/// Takes the bytes from `start` on, counted from the present position, off the front of a stream, which keeps them alive.
std::string_view Drain(ByteStream& source, ASInt32 start, ASInt32 length) {
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
  source.Skip(skipped + count);
  return rest.substr(skipped, count);
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
  const auto data = document.Streams().DataOf(Drain(bytes, sourceStart, sourceLength));
  stream.replaceStreamData(data, QPDFObjectHandle(), QPDFObjectHandle());
  document.Streams().Add(stream, data);
  return document.HandleOf(stream);
}

CosObj CosStreamDict(CosObj stream) {
  const QPDFObjectHandle dictionary = StreamObjectOf(stream).getDict();
  ObjectTable& objects = Document::Of(stream).Objects();
  const CosObj handle = objects.HandleOf(dictionary, stream);
  objects.FollowInto(stream, handle);
  return handle;
}

ASInt32 CosStreamLength(CosObj stream) {
  // "Length" counts what encryption adds, and can be wrong: only reading tells.
  Pl_Discard discard;
  Pl_Count count("stored stream", &discard);
  Pipe(stream, count, false);
  return static_cast<ASInt32>(std::min<qpdf_offset_t>(count.getCount(), std::numeric_limits<ASInt32>::max()));
}

ASStm CosStreamOpenStm(CosObj stream, ASInt32 mode) {
  if (mode != cosOpenRaw && mode != cosOpenUnfiltered && mode != cosOpenFiltered) {
    throw HostError(kASBadParameter, "streams are not opened in a mode " + std::to_string(mode));
  }
  Pl_Buffer buffer("stream data");
  Pipe(stream, buffer, mode == cosOpenFiltered);
  return OpenStream(buffer.getBufferSharedPointer());
}

}  // namespace operations
}  // namespace tgx::host
