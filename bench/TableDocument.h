#pragma once

#include <cstddef>
#include <string>

namespace tgx::bench {

/// Writes a tagged document of that many tables of 20 rows by 10 cells, one to a page, and beside it PATH without ".pdf" and
/// .tables.tsv. The tables have, in turn, descriptions of the types 1 to 4 in them, every fourth is named in the file, and
/// each repeats its head once. Gives the number of structure elements. The document is written as it is made, so that a
/// million cells take no memory.
std::size_t MakeTableDocument(std::size_t tables, const std::string& path);

}  // namespace tgx::bench
