#pragma once

#include <string>

#include <tinyxml2.h>

namespace tgx {

/// Reads an XML file of an exporter's into `document`. False, with the document empty, for a file that is missing, not a
/// regular one, larger than 64 MiB, or not XML, or with a tag of more than 100 attributes.
bool LoadXmlFile(const std::string& path, tinyxml2::XMLDocument& document);

}  // namespace tgx
