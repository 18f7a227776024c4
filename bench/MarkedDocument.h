#pragma once

#include <string>

namespace tgx::bench {

struct DocumentSize {
  std::size_t pages, elements, markedContents;
};

/// Writes a tagged document of that many pages with all the marks of an exporter, about sixty structure elements a page, and
/// beside it the side files of the steps that take one: PATH without ".pdf" and .styles.xml, .toc.xml, .tables.tsv. The same
/// arguments give the same bytes. The text is set in a font of the document `fontFrom`.
///
///     anchored frame          every 3rd page; one holder for a chapter of ten pages
///     text frame marks        every 6th page
///     [ATT] description       every table but layout tables, types 1, 2, 3 in turn, in the Table or in its first cell
///     layout table            every 8th page
///     P around a table        every 4th page
///     repeated THead, TFoot   every 5th page
///     TOC_FRAME               one, with an entry for every chapter and two for its sections, or four
///     style identifiers       all paragraphs
///     formula marks           every 5th page; one holder
///     text in a link's URI    every 4th page, every other one without a target
///     GT_ types               one caption or two on every page, an index on the last
///     [Lang=..]               the document, and a paragraph on every 3rd page
///     double bullets          every list
///     Endnote                 one a chapter
///     Reference and Note      one pair a page
///     1 by 1 image            under every mark, and in an artifact on every other page
///     empty elements          three on every page: a P, and a Sect around a P
DocumentSize MakeMarkedDocument(std::size_t pages, const std::string& fontFrom, const std::string& path,
                                bool withLongContents = false);

}  // namespace tgx::bench
