#pragma once

#include <tgx/host.h>
#include <qpdf/QPDFObjectHandle.hh>

#include "host/cos/ObjectTable.h"

namespace tgx::host {

/// The Cos type number of a qpdf object, 0 for everything that is no value.
ASInt32 CosTypeOf(QPDFObjectHandle& object);

/// Throws kASWrongType: "object 57 0 is a name, not a dictionary". The handle may be the null object.
[[noreturn]] void ThrowWrongType(CosObj handle, const char* wanted);

/// The object behind a handle when it has the type. Throw kASWrongType for another type and for the null object,
/// kASBadParameter for dead handles.
QPDFObjectHandle& ArrayOf(CosObj handle);
QPDFObjectHandle& StreamObjectOf(CosObj handle);
ObjectTable::Slot& SlotOfType(CosObj handle, ASInt32 type);

/// The dictionary behind a handle: of a stream, the stream's own.
QPDFObjectHandle DictionaryOf(CosObj handle);

/// The object to store in a dictionary or array for a value that a client hands in; qpdf's null for the null object.
/// `container` is the object behind the handle, or the dictionary of a stream. Throws kASBadParameter when the value belongs
/// to another document, or when storing it would make a direct object contain itself or nest direct objects deeper than a
/// file can.
QPDFObjectHandle ValueFor(CosObj containerHandle, const QPDFObjectHandle& container, CosObj value);

}  // namespace tgx::host
