#pragma once

#include <string>

#include "src/actions/IDStyleName/IDStyleMap.h"
#include "src/actions/PDFAction.h"

namespace tgx {

/// Gives the elements whose type is the identifier of a paragraph style the style's name as their type, and moves the role
/// map's entries along.
class IDStyleNameFix : public PDFAction {
 public:
  using PDFAction::Run;
  /// `path` leads to the exporter's list of styles; one that cannot be read renames nothing. False without a document and
  /// for one without a structure tree.
  virtual bool Run(const std::string& path);

 private:
  void RenameElements(PDSTreeRoot root);
  void RenameInRoleMap(PDSTreeRoot root);

  IDStyleMap paragraphStyles_;
  IDStyleMap characterStyles_;  // read, and used for nothing
};

}  // namespace tgx
