#pragma once

#include <string>

#include <qpdf/QPDF.hh>

namespace tgx::host {

/// Makes sure that qpdf writes an encrypted document with the very encryption that it was read with. Throws kASNotSupported
/// for a document of which only a part is encrypted: qpdf would encrypt the rest as well.
void KeepEncryption(QPDF& pdf, const std::string& documentName);

}  // namespace tgx::host
