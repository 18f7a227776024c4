#include "host/pdfedit/model/ContentBytes.h"

#include <algorithm>
#include <array>
#include <deque>
#include <exception>
#include <limits>
#include <vector>

#include <zlib.h>
#include <qpdf/Pipeline.hh>

#include "host/core/HostError.h"

namespace tgx::host {
namespace {

/// Bytes that arrive little by little. They are kept in blocks, since one string that grows takes three times its size for a
/// while, which shows where the content of a page is tens of megabytes.
class Blocks : public Pipeline {
 public:
  Blocks() : Pipeline("content", nullptr) {}

  void write(unsigned char const* data, std::size_t length) override {
    Append({reinterpret_cast<const char*>(data), length});
  }
  void finish() override {}

  std::size_t Size() const { return size_; }

  void Append(std::string_view bytes) {
    size_ += bytes.size();
    while (!bytes.empty()) {
      if (blocks_.empty() || blocks_.back().size() == kBlockSize) {
        blocks_.emplace_back();
        if (blocks_.size() > 1) blocks_.back().reserve(kBlockSize);
      }
      const std::string_view part = bytes.substr(0, kBlockSize - blocks_.back().size());
      blocks_.back() += part;
      bytes.remove_prefix(part.size());
    }
  }

  /// Hands the bytes on, block by block, and is empty then.
  template <typename Take>
  void MoveTo(Take&& take) {
    for (size_ = 0; !blocks_.empty(); blocks_.pop_front()) take(std::string_view(blocks_.front()));
  }

  std::string Join() {
    std::string bytes;
    bytes.reserve(size_);
    MoveTo([&bytes](std::string_view block) { bytes += block; });
    return bytes;
  }

  bool HasOnly(char c) const {
    return std::all_of(blocks_.begin(), blocks_.end(),
                       [c](const std::string& block) { return block.find_first_not_of(c) == std::string::npos; });
  }

 private:
  static constexpr std::size_t kBlockSize = 1 << 16;

  std::deque<std::string> blocks_;
  std::size_t size_ = 0;
};

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

bool Pipe(QPDFObjectHandle& stream, Blocks& data, qpdf_stream_decode_level_e level, bool& attempted) {
  try {
    return stream.pipeStreamData(&data, &attempted, 0, level, true, false);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception&) {
    return false;
  }
}

Decoded Append(QPDFObjectHandle& stream, Blocks& content) {
  Blocks data;
  bool attempted = false;
  const bool sound = Pipe(stream, data, qpdf_dl_specialized, attempted);
  const bool isFiltered = stream.getDict().hasKey("/Filter");
  if (sound && !attempted && isFiltered) return {false, false};
  if (!sound && IsPlainDeflate(stream)) {
    Blocks raw;
    Pipe(stream, raw, qpdf_dl_none, attempted);
    const std::string rescued = InflateWhatIsSound(raw.Join());
    if (rescued.size() > data.Size()) {
      content.Append(rescued);
      return {};
    }
  }
  const bool isEmpty = data.Size() == 0;
  data.MoveTo([&content](std::string_view block) { content.Append(block); });
  return {true, !sound && isEmpty};
}

}  // namespace

std::string ReadContentBytes(const QPDFObjectHandle& page, const std::string& place) {
  Blocks content;
  bool damaged = false;
  for (QPDFObjectHandle& stream : ContentStreams(page)) {
    if (content.Size() > 0) content.Append("\n");
    const Decoded decoded = Append(stream, content);
    if (!decoded.supported)
      throw HostError(kASNotSupported, place + ": the content stream has a filter that cannot be undone");
    damaged = damaged || decoded.damaged;
  }
  if (damaged && content.HasOnly('\n')) {
    throw HostError(kASDamagedDocument, place + ": no byte of the content stream can be decoded");
  }
  if (content.Size() >= std::numeric_limits<std::uint32_t>::max()) {
    throw HostError(kASNotSupported, place + ": the content is larger than 4 GB");
  }
  return content.Join();
}

}  // namespace tgx::host
