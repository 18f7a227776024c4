#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include <tgx/host.h>
#include <qpdf/QPDFObjectHandle.hh>

namespace tgx::host {

/// An image that page content shows: an image XObject, or an inline one. Reads what is asked for when it is asked for; knows
/// no failure, damaged entries are taken as missing.
class ImageData {
 public:
  static ImageData OfXObject(QPDFObjectHandle stream);

  /// An inline image: the dictionary between BI and ID, whose keys and values may be abbreviated, the bytes between ID and
  /// EI, and the resources that its colour space may be named in.
  static ImageData OfInline(QPDFObjectHandle dictionary, std::string bytes, const QPDFObjectHandle& resources);

  PDEImageAttrs Attributes() const;

  /// The samples, each row padded to whole bytes, without anything behind the last row. Behind a filter that cannot be
  /// undone (JPX, CCITT, JBIG2) the bytes that this filter would read. Not more than a gigabyte.
  std::string Samples() const;

  /// Colour components of a sample; nothing when the colour space is missing or unknown.
  std::optional<int> Components() const;

  /// Bytes of all samples, as the dictionary has it; nothing where it lacks something, or says more than fits in memory.
  std::optional<std::size_t> SampleBytes() const;

 private:
  ImageData(const QPDFObjectHandle& dictionary, bool isInline) : dictionary_(dictionary), isInline_(isInline) {}

  bool IsMask() const;
  int BitsPerComponent() const;
  /// The last filter, which gives the samples; empty if there is none.
  std::string LastFilter() const;

  // qpdf's getters are not const, though they change nothing.
  mutable QPDFObjectHandle dictionary_;  ///< with full key names and colour space names
  mutable QPDFObjectHandle stream_ = QPDFObjectHandle::newNull();
  std::string bytes_;
  bool isInline_;
};

}  // namespace tgx::host
