#pragma once

#include <string>

#include <qpdf/QPDFObjectHandle.hh>

namespace tgx::host {

/// The decoded content streams of a page joined with newlines; empty for a page without content. A damaged stream gives what
/// can be decoded of it. Throws kASDamagedDocument when no byte of the content can be decoded, kASNotSupported for filters
/// that do not belong in content and for content beyond 4 GB. `place` names the page in messages.
std::string ReadContentBytes(const QPDFObjectHandle& page, const std::string& place);

}  // namespace tgx::host
