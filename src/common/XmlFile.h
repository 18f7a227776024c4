#pragma once

#include <string>

#include <tinyxml2.h>

namespace tgx {

/// Reads an XML file of an exporter's into `document`. False, with the document empty, for a file that OpenSideFile does not
/// open, that is not XML, or that is more than IsTooMuchXml allows.
bool LoadXmlFile(const std::string& path, tinyxml2::XMLDocument& document);

}  // namespace tgx
