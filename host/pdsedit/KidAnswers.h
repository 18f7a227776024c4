#pragma once

#include <tgx/host.h>

#include "host/pdsedit/StructureTree.h"

namespace tgx::host {

/// The kid at an index. Throws kASOutOfRange.
const Kid& KidAt(StructureTree& tree, NodeId parent, ASInt32 index);

/// The object that clients see for a kid: the element, the number, the reference; of an object reference what it refers to.
CosObj ObjectOfKid(StructureTree& tree, const Kid& kid);

/// The page on which a kid lies; kNoPage if nothing tells. Elements: their own, the first one below them, the nearest above.
/// Others: their own, the nearest above; object references, for lack of both, the page that the object names.
PageRef PageOfKid(StructureTree& tree, NodeId parent, const Kid& kid);

/// The container in the page's content that goes with a kid on that page, null for everything but marked content of a page.
/// Parses the page.
PDEContainer ContainerOfKid(StructureTree& tree, const Kid& kid, PageRef page);

CosObj HandleOfPage(StructureTree& tree, PageRef page);

/// What a client asks about a kid; null where it does not want to know.
struct KidQuestion {
  CosObj* kid = nullptr;
  ASInt32* mcid = nullptr;
  PDSMCInfo* mcInfo = nullptr;
  void** pointer = nullptr;
  CosObj* page = nullptr;
};

/// Fills in the answers and returns the kid's type name.
ASAtom AnswerAboutKid(StructureTree& tree, NodeId parent, ASInt32 index, const KidQuestion& question);

}  // namespace tgx::host
