#include "src/common/XmlFile.h"

#include <iterator>

#include "src/common/SideFile.h"
#include "src/common/XmlGuard.h"

namespace tgx {

bool LoadXmlFile(const std::string& path, tinyxml2::XMLDocument& document) {
  document.Clear();
  std::optional<std::ifstream> file = OpenSideFile(path);
  if (!file) return false;
  const std::string text{std::istreambuf_iterator<char>(*file), {}};
  if (IsTooMuchXml(text)) return false;
  if (document.Parse(text.data(), text.size()) == tinyxml2::XML_SUCCESS) return true;
  // Of a file that is broken somewhere the parser keeps what stands before.
  document.Clear();
  return false;
}

}  // namespace tgx
