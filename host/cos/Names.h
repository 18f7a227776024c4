#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <tgx/host.h>

namespace tgx::host {

// The host's names are plain bytes without a slash. qpdf's names are those bytes behind a slash, but for the number sign:
//
//   "/a#b"          a name of a file that spells it as it should be, "a#23b"; qpdf writes it as "a#b", which is another name
//                   when two hexadecimal digits follow
//   "/a" 00 "b"     a name of a file with a number sign that no two hexadecimal digits follow; written as "a#b"
//   "/a" 00 "23b"   the form in which the host makes names: qpdf writes the zero byte as a number sign, so the file gets
//   "a#23b"
//
// All three are the name "a#b". Every other byte from 1 to 255 is safe with qpdf, and no name contains a zero byte.

/// The form that qpdf keeps and writes right.
std::string ToQpdfName(std::string_view name);

/// The plain bytes behind any of qpdf's forms.
std::string FromQpdfName(std::string_view qpdfName);

/// The forms that stand for a name with number signs, in byte order. Each sign can have any of the three; of a name with
/// more than four signs these are only the forms that programs write, all signs alike or escaped where they must be, since
/// the number of forms triples with each.
std::vector<std::string> QpdfFormsOf(std::string_view name);

/// The plain bytes behind a form as an atom; does not allocate for a name that is known and has no number sign.
ASAtom AtomOfQpdfName(std::string_view qpdfName);

}  // namespace tgx::host
