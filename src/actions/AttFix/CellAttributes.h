#pragma once

#include "src/api/HostBinding.h"
#include "src/tables/AttTable.h"

namespace tgx {

/// Sets "Scope" ("Column" or "Row") of the owner "Table" on an element. An attribute dictionary that is there is taken over.
void SetScope(const PDSElement& element, const char* scope);

/// Sets the cell's identifier as "ID" of the element, and, where the cell has header cells, their identifiers as "Headers".
/// `number` is the table's, the first part of the identifiers.
void SetIdentifiers(const PDSElement& element, int number, const SthTableCell& cell);

}  // namespace tgx
