#include "bench/SideFiles.h"

#include <fstream>
#include <stdexcept>

#include "bench/Utf.h"

namespace tgx::bench {
namespace {

std::ofstream OpenFile(const std::string& path) {
  std::ofstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error(path + ": cannot be written");
  return file;
}

}  // namespace

void WriteContents(const std::string& path, const std::vector<ContentsEntry>& entries) {
  std::ofstream file = OpenFile(path);
  file << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<TOC_Item name=\"Default\" title=\"Contents\" default=\"1\">\n";
  for (const ContentsEntry& entry : entries) {
    const int level = entry.level;
    file << "  <TOC_Entry level=\"" << level << "\">\n    <TOC_EntrySourceStyle id=\"" << level << "\" name=\"Heading "
         << level << "\" location=\"doc\" path=\"/h" << level << "\"/>\n    <TOC_EntryStyle id=\"" << 10 + level
         << "\" name=\"Contents " << level << "\" location=\"doc\" path=\"/c" << level << "\"/>\n"
         << "    <TOC_EntryText>" << entry.text << "</TOC_EntryText>\n  </TOC_Entry>\n";
  }
  file << "</TOC_Item>\n";
}

void WriteStyles(const std::string& path) {
  std::ofstream file = OpenFile(path);
  file << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ID_Document>\n  <ID_ParaStyleList>\n";
  int number = 0;
  for (const char* name : {"Contents title", "Contents line", "Text", "Side heading", "Side text"}) {
    file << "    <ID_ParaStyle id=\"pst" << ++number << "\" hex_name=\"" << HexOf(Utf16Of(name, false)) << "\"/>\n";
  }
  file << "  </ID_ParaStyleList>\n</ID_Document>\n";
}

void WriteTables(const std::string& path, int tables, const std::vector<int>& layoutTables) {
  std::ofstream file = OpenFile(path);
  file << "Type\tTables\t1\t\n";
  std::size_t next = 0;
  for (int table = 1; table <= tables; ++table) {
    file << "Table\t" << table << "\n";
    if (next < layoutTables.size() && layoutTables[next] == table) file << "Layout\n", ++next;
  }
}

}  // namespace tgx::bench
