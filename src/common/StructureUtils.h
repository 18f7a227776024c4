#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <string>
#include <unordered_map>
#include <vector>

#include "src/api/HostBinding.h"
#include "src/common/PageFinder.h"
#include "src/common/TextEncoding.h"

namespace tgx {

/// What removals of elements from a document have in common.
struct Removals {
  PageFinder pages;
  std::unordered_map<std::uint64_t, ASInt32> lastPlaces;  ///< by the page: where the last container stood
  std::size_t withOthers = 0;                             ///< containers that took others, inside them, with them
};

/// Removes an element from its parent, with everything below it: marked content that stands directly in a page's list leaves
/// its page, content inside another container stays there. Throws as PageFinder::Acquire for content on what is no page.
void RemoveElementWithContent(PDSElement element, Removals& removals);

/// The place of `kid` among the kids of `parent`, which may be the tree root; -1 if it is none of them or `parent` is null.
int GetKidIndex(PDSElement parent, CosObj kid);
int GetIndexInParent(CosObj element);
/// The parent of an element, the tree root included; the null object for the null object and for an element without one.
PDSElement GetParent(CosObj element);

/// The bytes of the title or of "Alt" as the document stores them, and two zero bytes behind them; empty where the element
/// has none. The result is the size of `out`.
int GetTitle(PDSElement element, std::vector<char>& out);
int GetAlt(PDSElement element, std::vector<char>& out);
/// As GetAlt, but with the two zero bytes alone where the element has no "Alt".
void GetAltInto(PDSElement element, std::vector<char>& out);
void ReadAltBytes(PDSElement element, ByteVector& out);

/// The bytes of the element's own "Lang" that are not zero. False and empty where it has none.
bool GetLanguage(PDSElement element, std::vector<char>& out);
/// Sets "Lang" to these bytes. False, with nothing done, for no bytes.
bool SetLanguage(PDSElement element, const std::vector<char>& lang);
/// Sets "Lang" of the first top-level element that is, or is mapped to, a "Document".
void SetDocumentLanguage(PDDoc document, const std::vector<char>& lang);

bool ContainsCosObj(const std::list<CosObj>& list, CosObj object);

/// What the role map maps `type` to, in one step; `type` itself where nothing does.
std::string ResolveRole(PDDoc document, const std::string& type);

/// Appends the elements, from `element` down, whose "Alt" or title holds the bytes of `needle`, kids before parents. The two
/// zero bytes behind a text take part; an empty needle is in every text.
void FindByAlt(PDSElement element, const std::vector<char>& needle, std::list<PDSElement>& out);
void FindByTitle(PDSElement element, const std::vector<char>& needle, std::list<PDSElement>& out);

}  // namespace tgx
