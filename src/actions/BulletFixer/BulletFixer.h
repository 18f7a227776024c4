#pragma once

#include "src/api/HostBinding.h"

namespace tgx {

/// Cuts page content down: every text element loses all its characters, and for one that had more than one a new text
/// element with the first of them, painted black, is added to the list that is current. Whether that character is a bullet
/// is not asked.
///
/// There is a handler for each kind of element; those that are not defined in the source do nothing.
class BulletFixer {
 public:
  BulletFixer() = default;
  BulletFixer(const BulletFixer&) = delete;
  BulletFixer& operator=(const BulletFixer&) = delete;
  virtual ~BulletFixer() = default;

  /// False for null, else true.
  bool Run(PDDoc document);

 protected:
  /// Calls the handler of the element's kind; HandleUnknown for kinds without one.
  virtual void HandleElement(PDEElement element);
  virtual void HandleContent(PDEContent content);
  virtual void HandleText(PDEText text);
  virtual void HandlePath(PDEElement) {}
  virtual void HandleImage(PDEElement) {}
  virtual void HandleForm(PDEElement) {}
  virtual void HandlePS(PDEElement) {}
  virtual void HandleXObject(PDEElement) {}
  virtual void HandleClip(PDEElement) {}
  virtual void HandleFont(PDEElement) {}
  virtual void HandleColorSpace(PDEElement) {}
  virtual void HandleExtGState(PDEElement) {}
  virtual void HandlePlace(PDEElement) {}
  virtual void HandleContainer(PDEContainer container);
  virtual void HandlePattern(PDEElement) {}
  virtual void HandleDeviceNColors(PDEElement) {}
  virtual void HandleShading(PDEElement) {}
  virtual void HandleGroup(PDEElement) {}
  virtual void HandleUnknown(PDEElement) {}
  virtual void HandleBeginContainer(PDEElement) {}
  virtual void HandleEndContainer(PDEElement) {}
  virtual void HandleBeginGroup(PDEElement) {}
  virtual void HandleEndGroup(PDEElement) {}
  virtual void HandleXGroup(PDEElement) {}
  virtual void HandleSoftMask(PDEElement) {}
  virtual void HandleDoc(PDEElement) {}
  virtual void HandlePage(PDEElement) {}
  virtual void HandleReader(PDEElement) {}
  virtual void HandleWriter(PDEElement) {}
  virtual void HandleTextItem(PDEElement) {}
  virtual void HandleImageFlate(PDEElement) {}
  virtual void HandleImageJPX(PDEElement) {}

 private:
  struct CharRecord;
  void AddText(const CharRecord& character);

  // The list that new text goes to: the one entered last. Behind a container that is still the container's.
  PDEContent content_ = nullptr;
};

}  // namespace tgx
