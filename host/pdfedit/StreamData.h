#pragma once

#include <cstddef>
#include <string>

#include <qpdf/QPDFObjectHandle.hh>

namespace tgx::host {

/// What came out of a stream's filters.
struct StreamData {
  std::string bytes;
  bool isDecoded = true;     ///< no filter is left
  bool isTruncated = false;  ///< there was more than the limit, or the data broke off
};

/// Decodes a stream as far as its filters can be undone: where one of them cannot (JPXDecode, CCITTFaxDecode, JBIG2Decode,
/// damaged parameters), the bytes are those that this filter would have to read. Stops after `limit` bytes, so that a small
/// stream cannot fill the memory. Never throws for a damaged stream; gives nothing for what is not a stream.
StreamData DecodeStream(QPDFObjectHandle stream, std::size_t limit);

/// The same for bytes that are no stream of a document, with the "Filter" and "DecodeParms" of `dictionary`.
StreamData DecodeBytes(const std::string& bytes, const QPDFObjectHandle& dictionary, std::size_t limit);

}  // namespace tgx::host
