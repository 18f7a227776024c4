#pragma once

#include <memory>

#include "src/api/HostBinding.h"
#include "src/wrappers/PDS_Object.h"

namespace tgx {

class PDS_MC;

/// A structure element with everything below it, read once. The operations that change it change the host's tree as well;
/// what others change there is not seen before the next Refresh.
class PDS_Element : public PDS_Object, public PDF_ObjectRef<PDSElement> {
 public:
  PDS_Element(PDSElement element, PDS_Object* parent);

  /// Kids that are neither elements nor marked content nor object references get no wrapper.
  void Refresh() override;
  void ClearKids() override;

  ASInt32 GetNumKids() const { return static_cast<ASInt32>(kids_.size()); }
  /// Unchecked.
  PDS_Object* GetKid(int index) const { return kids_[static_cast<std::size_t>(index)].get(); }
  const PDS_Kids& GetKids() const { return kids_; }

  /// Puts the kid behind the last one. Marked content that still stands in the host's tree stays where it is there, and only
  /// the wrapper moves; content that was taken out is put in. The host is not given references that lead to no dictionary
  /// or stream.
  void AppendKid(std::shared_ptr<PDS_Object> kid);
  /// Takes the kid out, wherever it stands among the kids here, and hands it to the caller; null for one that stands nowhere
  /// here.
  std::shared_ptr<PDS_Object> RemoveKid(PDS_Object* kid);
  /// Empties the list. Marked content stays among the kids of the host's element, as callers rely on.
  void RemoveAllKids();

  /// A new element of that type in the same document, for the caller to append.
  std::shared_ptr<PDS_Element> CreateChild(const char* type) const;
  static std::shared_ptr<PDS_Element> Create(PDDoc document);

  /// The type as it stands, without the role map.
  ASAtom GetType() const { return PDSElementGetType(GetHandle()); }
  void SetType(const char* type) { PDSElementSetType(GetHandle(), ASAtomFromString(type)); }
  PDDoc GetDocument() const;

 private:
  void InsertContent(PDS_MC& content) const;
  void TakeFromHost(PDS_Object* kid) const;

  PDS_Kids kids_;
};

}  // namespace tgx
