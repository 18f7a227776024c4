#include "host/pdfedit/model/ContentBytes.h"

#include <array>
#include <exception>
#include <limits>
#include <vector>

#include <zlib.h>
#include <qpdf/Pl_String.hh>

#include "host/core/HostError.h"

namespace tgx::host {
namespace {

struct Decoded {
  bool supported = true;
  bool damaged = false;
};

std::vector<QPDFObjectHandle> ContentStreams(QPDFObjectHandle page) {
  QPDFObjectHandle contents = page.getKey("/Contents");
  if (contents.isStream()) return {contents};
  std::vector<QPDFObjectHandle> streams;
  if (!contents.isArray()) return streams;
  for (int i = 0; i < contents.getArrayNItems(); ++i) {
    const QPDFObjectHandle item = contents.getArrayItem(i);
    if (QPDFObjectHandle(item).isStream()) streams.push_back(item);
  }
  return streams;
}

bool IsPlainDeflate(QPDFObjectHandle stream) {
  QPDFObjectHandle dictionary = stream.getDict();
  QPDFObjectHandle filter = dictionary.getKey("/Filter");
  QPDFObjectHandle parameters = dictionary.getKey("/DecodeParms");
  if (filter.isArray() && filter.getArrayNItems() == 1) filter = filter.getArrayItem(0);
  if (parameters.isArray() && parameters.getArrayNItems() == 1) parameters = parameters.getArrayItem(0);
  const bool predicted = parameters.isDictionary() && parameters.hasKey("/Predictor");
  return !predicted && filter.isName() && (filter.getName() == "/FlateDecode" || filter.getName() == "/Fl");
}

/// Inflates as far as the data are sound, to the last byte.
std::string InflateWhatIsSound(const std::string& data) {
  std::string result;
  z_stream stream{};
  if (data.size() > std::numeric_limits<uInt>::max() || inflateInit(&stream) != Z_OK) return result;
  std::array<unsigned char, 32768> buffer{};
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.data()));
  stream.avail_in = static_cast<uInt>(data.size());
  int status = Z_OK;
  while (status == Z_OK) {
    stream.next_out = buffer.data();
    stream.avail_out = buffer.size();
    status = inflate(&stream, Z_NO_FLUSH);
    result.append(reinterpret_cast<const char*>(buffer.data()), buffer.size() - stream.avail_out);
  }
  inflateEnd(&stream);
  return result;
}

bool Pipe(QPDFObjectHandle& stream, std::string& data, qpdf_stream_decode_level_e level, bool& attempted) {
  Pl_String pipeline("content", nullptr, data);
  try {
    return stream.pipeStreamData(&pipeline, &attempted, 0, level, true, false);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception&) {
    return false;
  }
}

Decoded Append(QPDFObjectHandle& stream, std::string& content) {
  const std::size_t before = content.size();
  bool attempted = false;
  const bool sound = Pipe(stream, content, qpdf_dl_specialized, attempted);
  const bool isFiltered = stream.getDict().hasKey("/Filter");
  if (sound && (attempted || !isFiltered)) return {};
  if (sound && !attempted) {
    content.resize(before);
    return {false, false};
  }
  if (IsPlainDeflate(stream)) {
    std::string raw;
    Pipe(stream, raw, qpdf_dl_none, attempted);
    std::string rescued = InflateWhatIsSound(raw);
    if (rescued.size() > content.size() - before) content.replace(before, std::string::npos, rescued);
  }
  return {true, content.size() == before};
}

}  // namespace

std::string ReadContentBytes(QPDFObjectHandle page, const std::string& place) {
  std::string content;
  bool damaged = false;
  for (QPDFObjectHandle& stream : ContentStreams(page)) {
    if (!content.empty()) content += '\n';
    const Decoded decoded = Append(stream, content);
    if (!decoded.supported)
      throw HostError(kASNotSupported, place + ": the content stream has a filter that cannot be undone");
    damaged = damaged || decoded.damaged;
  }
  if (damaged && content.find_first_not_of('\n') == std::string::npos) {
    throw HostError(kASDamagedDocument, place + ": no byte of the content stream can be decoded");
  }
  if (content.size() >= std::numeric_limits<std::uint32_t>::max()) {
    throw HostError(kASNotSupported, place + ": the content is larger than 4 GB");
  }
  content.shrink_to_fit();
  return content;
}

}  // namespace tgx::host
