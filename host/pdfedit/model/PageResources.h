#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>

#include <qpdf/QPDFObjectHandle.hh>

#include "host/pdfedit/model/DocumentFonts.h"

namespace tgx::host {

/// A map keyed by text that is searched without making a string.
struct TextHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const noexcept { return std::hash<std::string_view>{}(text); }
};
template <typename Value>
using TextMap = std::unordered_map<std::string, Value, TextHash, std::equal_to<>>;

/// The named resources of a page, its own or those that it inherits from the page tree.
class PageResources {
 public:
  PageResources(const QPDFObjectHandle& page, DocumentFonts& fonts) : page_(page), fonts_(fonts) {}

  /// A resource by the token of its name; null when there is none.
  QPDFObjectHandle Find(const char* category, std::string_view nameToken) const;

  /// The font of a name token; null when the resource is missing or no dictionary.
  DocumentFont* Font(std::string_view nameToken);

  /// The font and its size that a graphics state dictionary sets; null when it sets none.
  DocumentFont* FontOfExtGState(std::string_view nameToken, double& size);

  /// A name (without the slash) under which the page can use this object as a resource of the category: the one that it has,
  /// else `prefix` and a number, added to a copy that is the page's own when other pages share the dictionaries. `content`
  /// is the page's: a name that it uses without having the resource would come to mean something.
  std::string NameFor(const char* category, const QPDFObjectHandle& object, const std::string& prefix,
                      std::string_view content);

 private:
  /// The names of a category as they were when one was first asked for, and those that were given since.
  struct Names {
    std::unordered_map<const QPDFObject*, std::string> ofObject;
    int next = 0;  ///< numbers below are taken
  };

  QPDFObjectHandle Resources() const;
  QPDFObjectHandle OwnCategory(const char* category);
  Names& NamesOf(const char* category);
  const std::set<std::string, std::less<>>& MentionedIn(std::string_view content);

  QPDFObjectHandle page_;
  DocumentFonts& fonts_;
  TextMap<DocumentFont*> fontOfName_;
  std::map<std::string, Names> names_;
  std::optional<std::set<std::string, std::less<>>> mentioned_;
};

/// An attribute that a page has itself or inherits from the page tree; null when there is none.
QPDFObjectHandle InheritedAttribute(const QPDFObjectHandle& page, const char* key);

}  // namespace tgx::host
