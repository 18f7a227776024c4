#pragma once

#include <string_view>

#include <tgx/host.h>
#include <qpdf/QPDFObjectHandle.hh>

namespace tgx::host {

class Document;

/// Edits of dictionaries by the host itself, told to the document's models as those that a client makes. Names are plain.
void SetEntry(Document& document, const QPDFObjectHandle& dictionary, std::string_view key, const QPDFObjectHandle& value);
void RemoveEntry(Document& document, const QPDFObjectHandle& dictionary, std::string_view key);

/// The dictionary behind a handle. Throws kASBadParameter for null and dead handles and for an object of another document,
/// kASWrongType for another type. `what` names it in the text.
QPDFObjectHandle OwnDictionary(Document& document, CosObj handle, const char* what);

/// An integer where the value is whole, else a real.
QPDFObjectHandle NumberFrom(ASFixed value);

}  // namespace tgx::host
