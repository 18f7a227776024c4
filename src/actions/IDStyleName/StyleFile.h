#pragma once

#include <string>

#include "src/actions/IDStyleName/IDStyleMap.h"

namespace tgx {

/// Adds the styles of an exporter's list of styles, by identifier, to the two maps; a redefined paragraph style takes the
/// place of the plain one. A file that LoadXmlFile does not read, and an XML file of another kind, adds nothing.
void ReadStyleFile(const std::string& path, IDStyleMap& paragraphStyles, IDStyleMap& characterStyles);

/// The name that a "hex_name" stands for, in UTF-8: its digits are the UTF-16BE units of the name. Empty for an odd number
/// of bytes, counted with those that skipped characters leave behind.
std::string DecodeStyleName(const char* hexName);

}  // namespace tgx
