#pragma once

#include <tgx/host.h>

#include "host/pdsedit/StructureTree.h"

namespace tgx::host {

/// Edits of the kids of one node. `insertAfter` is the index of the kid behind which the new one goes: kPDSBeforeFirst, or
/// anything from the last kid on for the end. Below -1 throws kASOutOfRange.

/// Throws kASBadParameter when the element would become its own ancestor, or a way down the tree too long to be read again.
void InsertElement(StructureTree& tree, NodeId parent, NodeId element, ASInt32 insertAfter);

/// Adds a kid for the container's MCID: a number where the element's "Pg" is the page or can be set to it, else a reference.
/// A kid for the same content that is there already is enough.
void InsertMarkedContent(StructureTree& tree, NodeId element, CosObj page, PDEContainer container, ASInt32 insertAfter);

/// Adds a reference to an annotation or another object. The null page gives a reference without "Pg".
void InsertObject(StructureTree& tree, NodeId element, CosObj page, CosObj object, ASInt32 insertAfter);

/// Takes out the first kid that clients see as this object. An element loses its "P". Throws kASNotFound.
void RemoveKid(StructureTree& tree, NodeId parent, CosObj kid);

/// Takes out the first kid for the container's MCID on the page, if there is one. The null container stands for the first
/// kid on the page whose content is gone; throws kASNotFound when there is none.
void RemoveMarkedContent(StructureTree& tree, NodeId element, CosObj page, PDEContainer container);

/// Takes out the first reference to the object; the null object stands for one that leads nowhere. Throws kASNotFound.
void RemoveObject(StructureTree& tree, NodeId element, CosObj object);

/// Puts one element in the first place of another, which loses its "P".
void ReplaceElement(StructureTree& tree, NodeId parent, NodeId oldElement, NodeId newElement);

}  // namespace tgx::host
