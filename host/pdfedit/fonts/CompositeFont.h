#pragma once

#include <memory>
#include <mutex>

#include "host/pdfedit/fonts/CMap.h"
#include "host/pdfedit/fonts/CidMetrics.h"
#include "host/pdfedit/fonts/Font.h"
#include "host/pdfedit/fonts/ToUnicode.h"

namespace tgx::host {

/// A Type 0 font: codes of 1 to 4 bytes, which a CMap takes to the CIDs of its descendant.
class CompositeFont : public Font {
 public:
  CompositeFont(const QPDFObjectHandle& dictionary, FontParts& parts);

  Code NextCode(std::string_view bytes) const override { return cmap_->Next(bytes); }
  double Advance(Code code) const override;
  double Width(Code code) const override { return metrics_->Width(cmap_->CidOf(code)); }
  Vector VerticalOrigin(Code code) const override;
  void AppendUnicode(Code code, std::u16string& text) const override;
  bool IsVertical() const override { return cmap_->IsVertical(); }

 private:
  CompositeFont(QPDFObjectHandle dictionary, QPDFObjectHandle descendant, FontParts& parts);

  std::shared_ptr<const CMap> cmap_;
  std::shared_ptr<const CidMetrics> metrics_;
  std::shared_ptr<const ToUnicode> toUnicode_;  ///< null without one
  bool codesAreCharacters_ = false;

  // The characters of the collection's CIDs: read from the system when a code is met that nothing else explains.
  std::string collection_;
  mutable std::once_flag cidsRead_;
  mutable std::shared_ptr<const ToUnicode> cidCharacters_;
};

}  // namespace tgx::host
