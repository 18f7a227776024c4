#include "host/pdmodel/Encryption.h"

#include <qpdf/QPDFObjectHandle.hh>

#include "host/core/HostError.h"

namespace tgx::host {
namespace {

constexpr int kFirstWithFilters = 4;  // version of the encryption from which on each kind of data has a filter of its own

bool IsInteger(QPDFObjectHandle& object, long long atLeast) { return object.isInteger() && object.getIntValue() >= atLeast; }

/// Whether the filter for streams or for strings leaves them as they are.
bool IsPlain(QPDFObjectHandle& encryption, const char* filterKey) {
  QPDFObjectHandle name = encryption.getKey(filterKey);
  if (!name.isName() || name.getName() == "/Identity") return true;
  QPDFObjectHandle filters = encryption.getKey("/CF");
  QPDFObjectHandle filter = filters.isDictionary() ? filters.getKey(name.getName()) : QPDFObjectHandle::newNull();
  return !filter.isDictionary() || !filter.hasKey("/CFM") || filter.getKey("/CFM").isNameAndEquals("/None");
}

}  // namespace

void KeepEncryption(QPDF& pdf, const std::string& documentName) {
  QPDFObjectHandle encryption = pdf.getTrailer().getKey("/Encrypt");
  if (!pdf.isEncrypted() || !encryption.isDictionary()) return;
  QPDFObjectHandle version = encryption.getKey("/V");
  if (IsInteger(version, kFirstWithFilters) && (IsPlain(encryption, "/StmF") || IsPlain(encryption, "/StrF"))) {
    throw HostError(kASNotSupported,
                    documentName + ": only a part of the document is encrypted, which can be taken away but not kept");
  }
  // qpdf takes the length of the key from here when it writes, though it may be missing from a file.
  if (IsInteger(version, 2)) {
    const auto bits = static_cast<long long>(pdf.getEncryptionKey().size()) * 8;
    QPDFObjectHandle length = encryption.getKey("/Length");
    if (!length.isInteger() || length.getIntValue() != bits) {
      encryption.replaceKey("/Length", QPDFObjectHandle::newInteger(bits));
    }
  }
}

}  // namespace tgx::host
