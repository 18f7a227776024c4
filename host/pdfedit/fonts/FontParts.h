#pragma once

#include <array>
#include <memory>
#include <unordered_map>
#include <utility>

#include <qpdf/QPDFObjectHandle.hh>

#include "host/pdfedit/fonts/CMap.h"
#include "host/pdfedit/fonts/CidMetrics.h"
#include "host/pdfedit/fonts/FontFile.h"
#include "host/pdfedit/fonts/ToUnicode.h"

namespace tgx::host {

/// What font dictionaries of a document refer to, each object read once however many of them do.
class FontParts {
 public:
  /// The map of a "ToUnicode" stream.
  std::shared_ptr<const ToUnicode> CharactersOf(const QPDFObjectHandle& stream);
  /// The CMap of a composite font's "Encoding", never null; one that others rest on, with `depth` of them above it.
  std::shared_ptr<const CMap> CMapOf(const QPDFObjectHandle& encoding, int depth = 0);
  std::shared_ptr<const CidMetrics> MetricsOf(const QPDFObjectHandle& cidFont, bool isVertical);
  /// The encoding of the font program in a font descriptor.
  std::shared_ptr<const BuiltInEncoding> EncodingOf(const QPDFObjectHandle& descriptor);

 private:
  /// By object; the handle keeps the object, and so its address, in use.
  template <typename Part>
  using Known = std::unordered_map<const QPDFObject*, std::pair<QPDFObjectHandle, std::shared_ptr<const Part>>>;

  template <typename Part, typename Make>
  static std::shared_ptr<const Part> Share(Known<Part>& known, const QPDFObjectHandle& object, const Make& make);

  Known<ToUnicode> characters_;
  std::array<Known<CMap>, CMap::kDeepestChain + 1> cmaps_;  ///< by depth, where the chain is cut
  Known<CidMetrics> horizontal_;
  Known<CidMetrics> vertical_;
  Known<BuiltInEncoding> encodings_;
};

}  // namespace tgx::host
