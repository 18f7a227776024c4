#pragma once

#include <string_view>

#include <qpdf/QPDFObjectHandle.hh>

namespace tgx::host {

/// Keeps a model of the document (the structure tree, a page's content) true while clients read and edit the same objects
/// through the Cos operations. The Cos operations tell the document, which tells its observers.
class CosObserver {
 public:
  virtual ~CosObserver() = default;

  /// An entry of this dictionary (or of a stream's), or an item of this array, is about to be read, enumerated or edited:
  /// what the model keeps to itself has to stand in the object from here on. `key` is empty for arrays and for enumerations.
  /// Keys come without the slash. The Cos operations that edit call it too, before they touch the object.
  virtual void BeforeCosRead(const QPDFObjectHandle& container, std::string_view key) = 0;

  /// An entry or item was set, inserted or removed.
  virtual void AfterCosEdit(const QPDFObjectHandle& container, std::string_view key) = 0;
};

}  // namespace tgx::host
