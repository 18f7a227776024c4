#pragma once

#include <cstdint>
#include <vector>

#include "src/api/HostBinding.h"
#include "src/common/TextEncoding.h"

namespace tgx {

/// What GetElementKind says of a null handle; no kind of the host has this number.
constexpr ASInt32 kNullElementKind = 35;

/// The integer "MCID" of the container's property dictionary; -1 without a dictionary, without the key, or with a value of
/// another type.
ASInt32 GetContainerMCID(PDEContainer container);
/// The same integer, which may be -1 itself; false when there is none.
bool FindContainerMCID(PDEContainer container, ASInt32& mcid);
/// The bytes of the string "Lang" of the container's property dictionary; empty when there is none.
void GetContainerLang(PDEContainer container, ByteVector& lang);
ASInt32 GetElementKind(const PDEElement* element);

/// The page with that dictionary, for the caller to release; null for the null object and for an object of no document.
PDPage AcquirePageOfCosPage(CosObj page);

/// The character codes of the text, in the encodings of its fonts.
void GetRawText(PDEText text, ByteVector& codes);
/// The text in three parts, by the width of its characters. A one-byte code is taken for the character itself; longer codes
/// go through the font's ToUnicode table, and a unit of `utf16` or `utf32` holds the bytes just as the host wrote them.
/// Where characters of different widths stood next to one another is lost. Ends early, and keeps what it has, at a character
/// without a font, a font without ToUnicode table (also before one-byte codes), or a translation that is neither 2 nor 4
/// bytes.
void GetUnicodeText(PDEText text, ByteVector& single, std::vector<std::uint16_t>& utf16, std::vector<std::uint32_t>& utf32);

/// Makes the container an artifact: its tag, and no MCID in its properties. The structure is not touched.
void MarkAsArtifact(const PDEContainer* container);

}  // namespace tgx
