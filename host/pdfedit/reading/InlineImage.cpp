#include "host/pdfedit/reading/InlineImage.h"

#include <algorithm>
#include <array>

#include <zlib.h>

#include "host/pdfedit/reading/Syntax.h"

namespace tgx::host {
namespace {

constexpr std::string_view kEnd = "EI";

/// The entries that tell where the data end.
struct Entries {
  std::optional<std::size_t> length;
  std::size_t width = 0;
  std::size_t height = 0;
  std::size_t bits = 8;
  std::size_t components = 0;  ///< 0: not known
  bool isMask = false;
  bool isFiltered = false;
  std::string filter;  ///< the outermost one
};

std::size_t SizeValue(std::string_view token) {
  constexpr double kMost = 1e9;
  return static_cast<std::size_t>(std::clamp(NumberValue(token), 0.0, kMost));
}

/// The first name in an array, or the name itself.
std::string FirstName(std::string_view content, const Token& value) {
  if (value.kind == Token::Kind::kName) return NameValue(value.In(content));
  if (value.kind != Token::Kind::kArray) return {};
  const Token first = NextToken(content.substr(0, value.end), value.begin + 1);
  return first.kind == Token::Kind::kName ? NameValue(first.In(content)) : std::string();
}

std::size_t ComponentsOf(const std::string& space) {
  if (space == "G" || space == "DeviceGray" || space == "I" || space == "Indexed" || space == "CalGray") return 1;
  if (space == "RGB" || space == "DeviceRGB" || space == "CalRGB") return 3;
  if (space == "CMYK" || space == "DeviceCMYK") return 4;
  return 0;
}

void ReadEntry(std::string_view content, const std::string& key, const Token& value, Entries& entries) {
  const std::string_view text = value.In(content);
  if (key == "W" || key == "Width") entries.width = SizeValue(text);
  if (key == "H" || key == "Height") entries.height = SizeValue(text);
  if (key == "BPC" || key == "BitsPerComponent") entries.bits = SizeValue(text);
  if ((key == "L" || key == "Length") && value.kind == Token::Kind::kNumber) entries.length = SizeValue(text);
  if (key == "IM" || key == "ImageMask") entries.isMask = text == "true";
  if (key == "CS" || key == "ColorSpace") entries.components = ComponentsOf(FirstName(content, value));
  if (key == "F" || key == "Filter") {
    entries.filter = FirstName(content, value);
    entries.isFiltered = !entries.filter.empty();
  }
}

/// Reads the entries up to ID and returns its token; another kind when something else than an entry stands there.
Token ReadEntries(std::string_view content, std::size_t position, Entries& entries) {
  std::string key;
  bool hasKey = false;
  for (Token token = NextToken(content, position);; token = NextToken(content, token.end)) {
    switch (token.kind) {
      case Token::Kind::kEnd:
        return token;
      case Token::Kind::kKeyword: {
        const std::string_view keyword = token.In(content);
        if (keyword == "ID") return token;
        if (keyword != "true" && keyword != "false" && keyword != "null")
          return {Token::Kind::kEnd, token.begin, token.begin};
        break;
      }
      default:
        break;
    }
    if (!hasKey && token.kind == Token::Kind::kName) {
      key = NameValue(token.In(content));
      hasKey = true;
    } else if (hasKey) {
      ReadEntry(content, key, token, entries);
      hasKey = false;
    }
  }
}

std::optional<std::size_t> EndOfSamples(const Entries& entries, std::size_t begin) {
  const std::size_t components = entries.isMask ? 1 : entries.components;
  const std::size_t bits = entries.isMask ? 1 : entries.bits;
  if (components == 0 || bits == 0 || bits > 16 || entries.width == 0 || entries.height == 0) return std::nullopt;
  const std::size_t row = (entries.width * components * bits + 7) / 8;
  return begin + row * entries.height;
}

bool EndsOperator(std::string_view content, std::size_t at) {
  return at >= content.size() || IsWhite(content[at]) || IsDelimiter(content[at]);
}

/// The position of EI at `at` or behind a little white space there.
std::optional<std::size_t> EndOperatorAt(std::string_view content, std::size_t at) {
  constexpr std::size_t kMostSpace = 16;
  for (std::size_t space = 0; space <= kMostSpace && at < content.size(); ++space, ++at) {
    if (content.substr(at, kEnd.size()) == kEnd && EndsOperator(content, at + kEnd.size())) return at;
    if (!IsWhite(content[at])) break;
  }
  return std::nullopt;
}

/// Whether the bytes behind an EI can be content: image data hardly go on for so long without a byte that content never has.
bool LooksLikeContent(std::string_view content, std::size_t at) {
  constexpr std::size_t kLook = 24;
  const std::string_view next = content.substr(std::min(at, content.size()), kLook);
  return std::all_of(next.begin(), next.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte >= ' ' && byte < 0x7F) || (byte != 0 && IsWhite(c));
  });
}

/// How far data are followed in search of their end, when the first place where it may be is `nearest`. Where the search
/// comes to nothing the image ends there or behind it, and the next image may begin. The reach is a multiple of the way to
/// that place, so that images whose data never end cost in proportion to the content, not each a walk over the rest of it.
/// It is a multiple since the data may hold what looks like an end.
std::size_t EndOfReach(std::string_view content, std::size_t begin, std::size_t nearest) {
  constexpr std::size_t kTimes = 32;
  constexpr std::size_t kLeast = 2048;
  return std::min(content.size(), begin + kTimes * (nearest - begin) + kLeast);
}

/// Visits every EI that ends like an operator, `visit(position, stands alone, is followed by content)`, until it returns
/// true.
template <typename Visit>
void ForEachEnd(std::string_view content, std::size_t begin, Visit&& visit) {
  constexpr int kMostEnds = 256;
  int ends = 0;
  bool isNear = false;
  std::string_view reach = content;
  for (std::size_t at = reach.find(kEnd, begin); at != std::string_view::npos; at = reach.find(kEnd, at + 1)) {
    if (!EndsOperator(content, at + kEnd.size())) continue;
    if (++ends > kMostEnds) return;
    const bool isAlone = at == begin || IsWhite(content[at - 1]);
    const bool isFollowed = LooksLikeContent(content, at + kEnd.size());
    if (visit(at, isAlone, isFollowed)) return;
    if (isNear || (!isAlone && !isFollowed)) continue;
    isNear = true;
    reach = content.substr(0, EndOfReach(content, begin, at));
  }
}

/// The first EI that stands alone and is followed by content; one that stands alone; one that only ends like an operator.
std::optional<std::size_t> SearchEnd(std::string_view content, std::size_t begin) {
  std::optional<std::size_t> best;
  std::optional<std::size_t> alone;
  std::optional<std::size_t> attached;
  ForEachEnd(content, begin, [&](std::size_t at, bool isAlone, bool isFollowed) {
    if (isAlone && isFollowed) best = at;
    if (isAlone && !alone) alone = at;
    if (isFollowed && !attached) attached = at;
    return best.has_value();
  });
  if (best) return best;
  return alone ? alone : attached;
}

/// How far compressed data are followed in search of their end.
struct Reach {
  std::size_t end;     ///< in the content
  std::size_t output;  ///< decoded bytes
};

Reach ReachOfData(std::string_view content, std::size_t begin) {
  constexpr std::size_t kMostExpansion = 1032;  // of deflate
  constexpr std::size_t kLeastOutput = 2048;
  std::optional<std::size_t> nearest;
  ForEachEnd(content, begin, [&nearest](std::size_t at, bool isAlone, bool isFollowed) {
    if (isAlone || isFollowed) nearest = at;
    return nearest.has_value();
  });
  const std::size_t first = nearest.value_or(content.size());
  return {EndOfReach(content, begin, first), kMostExpansion * (first - begin) + kLeastOutput};
}

std::optional<std::size_t> EndOfDeflated(std::string_view content, std::size_t begin) {
  const Reach reach = ReachOfData(content, begin);
  z_stream stream{};
  if (inflateInit(&stream) != Z_OK) return std::nullopt;
  std::array<unsigned char, 16384> sink{};
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(content.data() + begin));
  stream.avail_in = static_cast<uInt>(std::min<std::size_t>(reach.end - begin, UINT32_MAX));
  int status = Z_OK;
  while (status == Z_OK && stream.total_out < reach.output) {
    stream.next_out = sink.data();
    stream.avail_out = static_cast<uInt>(std::min<std::size_t>(sink.size(), reach.output - stream.total_out));
    status = inflate(&stream, Z_NO_FLUSH);
  }
  const std::size_t used = stream.total_in;
  inflateEnd(&stream);
  if (status != Z_STREAM_END) return std::nullopt;
  return begin + used;
}

std::optional<std::size_t> EndOfRunLength(std::string_view content, std::size_t begin) {
  constexpr unsigned kEndOfData = 128;
  const std::size_t end = ReachOfData(content, begin).end;
  for (std::size_t at = begin; at < end;) {
    const auto count = static_cast<unsigned char>(content[at]);
    if (count == kEndOfData) return at + 1;
    at += count < kEndOfData ? count + 2U : 2U;
  }
  return std::nullopt;
}

std::optional<std::size_t> ExpectedEnd(std::string_view content, const Entries& entries, std::size_t begin) {
  if (!entries.isFiltered) return EndOfSamples(entries, begin);
  const std::string& filter = entries.filter;
  if (filter == "Fl" || filter == "FlateDecode") return EndOfDeflated(content, begin);
  if (filter == "RL" || filter == "RunLengthDecode") return EndOfRunLength(content, begin);
  return std::nullopt;
}

}  // namespace

std::optional<InlineImage> FindInlineImage(std::string_view content, std::size_t position) {
  Entries entries;
  const Token id = ReadEntries(content, position, entries);
  if (id.kind != Token::Kind::kKeyword) return std::nullopt;
  InlineImage image{position, id.begin, id.end, 0, 0};
  if (image.dataBegin < content.size() && IsWhite(content[image.dataBegin])) {
    const bool isPair = content.substr(image.dataBegin, 2) == "\r\n";
    image.dataBegin += isPair ? 2 : 1;
  }
  for (const auto& expected : {entries.length ? std::optional(image.dataBegin + *entries.length) : std::nullopt,
                               ExpectedEnd(content, entries, image.dataBegin)}) {
    const auto end = expected ? EndOperatorAt(content, *expected) : std::nullopt;
    if (!end) continue;
    image.dataEnd = *expected;
    image.end = *end + kEnd.size();
    return image;
  }
  const auto end = SearchEnd(content, image.dataBegin);
  image.dataEnd = end.value_or(content.size());
  image.end = end ? *end + kEnd.size() : content.size();
  if (end && image.dataEnd > image.dataBegin && IsWhite(content[image.dataEnd - 1])) --image.dataEnd;
  return image;
}

}  // namespace tgx::host
