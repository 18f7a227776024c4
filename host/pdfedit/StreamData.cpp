#include "host/pdfedit/StreamData.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <vector>

#include <qpdf/Pipeline.hh>
#include <qpdf/QPDF.hh>

namespace tgx::host {
namespace {

/// Keeps at most `limit` bytes and breaks off the decoding when more come.
class BoundedSink : public Pipeline {
 public:
  BoundedSink(std::string& bytes, std::size_t limit) : Pipeline("decoded data", nullptr), bytes_(bytes), limit_(limit) {}

  void write(const unsigned char* data, std::size_t length) override {
    const std::size_t room = limit_ - bytes_.size();
    bytes_.append(reinterpret_cast<const char*>(data), std::min(room, length));
    if (length <= room) return;
    isFull_ = true;
    throw std::length_error("more decoded data than wanted");
  }
  void finish() override {}
  bool IsFull() const { return isFull_; }

 private:
  std::string& bytes_;
  std::size_t limit_;
  bool isFull_ = false;
};

StreamData Pipe(QPDFObjectHandle stream, qpdf_stream_decode_level_e level, std::size_t limit) {
  StreamData data;
  BoundedSink sink(data.bytes, limit);
  bool isFiltered = false;
  bool isWhole = false;
  try {
    isWhole = stream.pipeStreamData(&sink, &isFiltered, 0, level, /*suppress_warnings=*/true);
  } catch (const std::exception&) {  // what came through before stays
  }
  data.isDecoded = isFiltered;
  data.isTruncated = !isWhole || sink.IsFull();
  return data;
}

bool CanUndo(const std::string& filter) {
  constexpr std::string_view kNames[] = {"/FlateDecode", "/Fl",  "/LZWDecode",     "/LZW", "/ASCIIHexDecode",
                                         "/AHx",         "/A85", "/ASCII85Decode", "/RL",  "/RunLengthDecode",
                                         "/DCTDecode",   "/DCT", "/Crypt"};
  return std::find(std::begin(kNames), std::end(kNames), filter) != std::end(kNames);
}

/// The items of an entry that may be one value or an array of them.
std::vector<QPDFObjectHandle> Items(QPDFObjectHandle dictionary, const char* key, const char* abbreviation) {
  QPDFObjectHandle value = dictionary.getKey(key);
  if (value.isNull()) value = dictionary.getKey(abbreviation);
  if (value.isNull()) return {};
  return value.isArray() ? value.getArrayAsVector() : std::vector<QPDFObjectHandle>{value};
}

/// A copy of the numbers in a parameter dictionary, free of the document that it came from.
QPDFObjectHandle CopyNumbers(QPDFObjectHandle parameters) {
  QPDFObjectHandle copy = QPDFObjectHandle::newDictionary();
  for (const std::string& key : parameters.getKeys()) {
    QPDFObjectHandle value = parameters.getKey(key);
    if (value.isInteger()) copy.replaceKey(key, QPDFObjectHandle::newInteger(value.getIntValue()));
  }
  return copy;
}

/// Decodes the filters in front of the first one that cannot be undone.
StreamData Peel(const std::string& raw, const QPDFObjectHandle& dictionary, std::size_t limit) {
  const std::vector<QPDFObjectHandle> filters = Items(dictionary, "/Filter", "/F");
  const std::vector<QPDFObjectHandle> parameters = Items(dictionary, "/DecodeParms", "/DP");
  QPDFObjectHandle leading = QPDFObjectHandle::newArray();
  QPDFObjectHandle leadingParameters = QPDFObjectHandle::newArray();
  std::size_t count = 0;
  for (QPDFObjectHandle filter : filters) {
    if (!filter.isName() || !CanUndo(filter.getName())) break;
    if (filter.getName() != "/Crypt") {  // the raw bytes are decrypted
      QPDFObjectHandle own = count < parameters.size() ? parameters[count] : QPDFObjectHandle::newNull();
      leading.appendItem(QPDFObjectHandle::newName(filter.getName()));
      leadingParameters.appendItem(own.isDictionary() ? CopyNumbers(own) : QPDFObjectHandle::newNull());
    }
    ++count;
  }
  if (leading.getArrayNItems() == 0) {
    return {raw.substr(0, limit), filters.empty(), raw.size() > limit};
  }
  QPDF scratch;
  scratch.setSuppressWarnings(true);
  scratch.emptyPDF();
  QPDFObjectHandle stream = scratch.newStream(raw);
  stream.getDict().replaceKey("/Filter", leading);
  stream.getDict().replaceKey("/DecodeParms", leadingParameters);
  StreamData data = Pipe(stream, qpdf_dl_all, limit);
  data.isDecoded = data.isDecoded && count == filters.size();
  return data;
}

}  // namespace

StreamData DecodeStream(QPDFObjectHandle stream, std::size_t limit) {
  try {
    if (!stream.isStream()) return {};
    StreamData data = Pipe(stream, qpdf_dl_all, limit);
    if (data.isDecoded || stream.getDict().getKey("/Filter").isNull()) {
      data.isDecoded = true;
      return data;
    }
    data = {};
    return Peel(Pipe(stream, qpdf_dl_none, std::string().max_size()).bytes, stream.getDict(), limit);
  } catch (const std::exception&) {
    return {{}, true, true};
  }
}

StreamData DecodeBytes(const std::string& bytes, const QPDFObjectHandle& dictionary, std::size_t limit) {
  try {
    return Peel(bytes, dictionary, limit);
  } catch (const std::exception&) {
    return {{}, true, true};
  }
}

}  // namespace tgx::host
