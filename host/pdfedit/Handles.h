#pragma once

#include <tgx/host.h>

#include "host/pdfedit/model/CreatedText.h"
#include "host/pdfedit/model/PageModel.h"

namespace tgx::host {

/// A page content handle that has been checked: it names something that lives. All of these throw kASBadParameter for a
/// handle of nothing that lives and kASWrongType for one of another kind of thing.
struct ElementRef {
  PageModel* page = nullptr;
  std::uint32_t number = 0;
};
struct ListRef {
  PageModel* page = nullptr;
  std::uint32_t number = 0;
};
/// A text on a page, or one that a client made.
struct TextRef {
  PageModel* page = nullptr;
  std::uint32_t number = 0;
  CreatedText* created = nullptr;

  const TextLayout& Layout() const { return created != nullptr ? created->Layout() : page->Layout(number); }
  std::size_t RunCount() const { return created != nullptr ? created->Layout().Runs().size() : page->RunCount(number); }
};

/// The kind of anything, as kPDE... value.
ASInt32 TypeOf(PDEObject object);

/// An element of a page, of the kind `type` if one is given. A created text is none.
constexpr int kAnyType = -1;
ElementRef ElementOf(PDEObject object, int type = kAnyType);
ListRef ListOf(PDEContent list);
TextRef TextOf(PDEText text);
/// The created text behind a handle, null when the handle is alive and something else.
CreatedText* CreatedTextOf(PDEObject object);

}  // namespace tgx::host
