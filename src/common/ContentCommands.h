#pragma once

#include <vector>

#include "src/api/HostBinding.h"
#include "src/common/ContentWalker.h"
#include "src/common/MarkedContentIndex.h"

namespace tgx {

/// One edit of page content, carried out by walking a page. The arguments are public fields that the caller sets; a command
/// can be used again after they were changed.
class CommandBase {
 public:
  virtual ~CommandBase() = default;
  virtual void Execute() = 0;
};

/// Moves the references to every container of an MCID on a page from one structure element to the end of another. The
/// content stays where it is. Containers without an MCID are never meant: with `mcid` -1 nothing moves.
///
/// A caller that has walked the page hands over what it found there; to walk it again for each of many moves would cost the
/// square of its content.
class MoveTaggedMcCmd : public CommandBase, public ContentVisitorBase {
 public:
  PDPage page = nullptr;
  PDSElement source = {};
  PDSElement destination = {};
  ASInt32 mcid = -1;
  const std::vector<PDEContainer>* containers = nullptr;  ///< those of the MCID in walk order; null has the page walked

  void Execute() override;
  void VisitContainer(PDEContainer container) override;
};

/// Removes the images of one by one sample from a page, whatever their colour and place.
class RemoveDummyImagesCmd : public CommandBase, public ContentVisitorBase {
 public:
  RemoveDummyImagesCmd() { walker_.AddVisitor(this); }

  CosObj cosPage = {};

  void Execute() override;
  void VisitElement(PDEElement& element) override;

 private:
  ContentWalker walker_;
};

/// Removes the first container of an MCID, in walk order, from a page. The structure is left to the caller.
///
/// A caller with many removals in a row hands over an index: to walk the page for each would cost the square of its content.
class RemoveMarkedContentCmd : public CommandBase, public ContentVisitorBase {
 public:
  RemoveMarkedContentCmd() { walker_.AddVisitor(this); }

  CosObj cosPage = {};
  ASInt32 mcid = -1;
  MarkedContentIndex* index = nullptr;  ///< of what has been removed with it only; null has the page walked

  void Execute() override;
  void VisitContainer(PDEContainer container) override;

 private:
  ContentWalker walker_;
};

/// Runs RemoveDummyImagesCmd on every page. The references that this takes on the pages stay open.
void RemoveDummyImages(PDDoc document);

}  // namespace tgx
