#include "host/cos/Names.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "host/core/Atoms.h"

namespace tgx::host {
namespace {

constexpr std::string_view kNumberSign(
    "\0"
    "23",
    3);

constexpr std::string_view kEscapedSign = "#";
constexpr std::string_view kBareSign("\0", 1);

bool IsHexDigit(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

/// qpdf's form of a name; `formOf(rest)` chooses that of each sign, told what follows it.
template <typename FormOf>
std::string WithSigns(std::string_view name, FormOf formOf) {
  std::string form = "/";
  for (auto sign = name.find('#'); sign != std::string_view::npos; sign = name.find('#')) {
    form.append(name.substr(0, sign));
    name.remove_prefix(sign + 1);
    form.append(formOf(name));
  }
  return form.append(name);
}

std::string_view WithoutSlash(std::string_view qpdfName) { return qpdfName.substr(qpdfName.empty() ? 0 : 1); }

}  // namespace

std::string ToQpdfName(std::string_view name) {
  return WithSigns(name, [](std::string_view) { return kNumberSign; });
}

std::vector<std::string> QpdfFormsOf(std::string_view name) {
  constexpr std::array<std::string_view, 3> kSigns = {kEscapedSign, kBareSign, kNumberSign};
  constexpr auto kMostVaried = 4;
  std::vector<std::string> forms;
  const auto count = std::count(name.begin(), name.end(), '#');
  if (count <= kMostVaried) {
    const auto variants = static_cast<std::size_t>(std::pow(kSigns.size(), count));
    for (std::size_t variant = 0; variant < variants; ++variant) {
      forms.push_back(WithSigns(name, [&kSigns, digits = variant](std::string_view) mutable {
        return kSigns[std::exchange(digits, digits / kSigns.size()) % kSigns.size()];
      }));
    }
  } else {
    for (const std::string_view sign : kSigns) forms.push_back(WithSigns(name, [sign](std::string_view) { return sign; }));
    forms.push_back(WithSigns(name, [](std::string_view rest) {
      const bool mustBeEscaped = rest.size() >= 2 && IsHexDigit(rest[0]) && IsHexDigit(rest[1]);
      return mustBeEscaped ? kEscapedSign : kBareSign;
    }));
  }
  // A bare sign in front of "23" has the form of another name.
  forms.erase(
      std::remove_if(forms.begin(), forms.end(), [&](const std::string& form) { return FromQpdfName(form) != name; }),
      forms.end());
  std::sort(forms.begin(), forms.end());
  forms.erase(std::unique(forms.begin(), forms.end()), forms.end());
  return forms;
}

std::string FromQpdfName(std::string_view qpdfName) {
  std::string_view rest = WithoutSlash(qpdfName);
  std::string name;
  name.reserve(rest.size());
  for (auto sign = rest.find('\0'); sign != std::string_view::npos; sign = rest.find('\0')) {
    name.append(rest.substr(0, sign)).push_back('#');
    rest.remove_prefix(sign);
    rest.remove_prefix(rest.starts_with(kNumberSign) ? kNumberSign.size() : 1);
  }
  return name.append(rest);
}

ASAtom AtomOfQpdfName(std::string_view qpdfName) {
  const bool isPlain = qpdfName.find('\0') == std::string_view::npos;
  return isPlain ? Intern(WithoutSlash(qpdfName)) : Intern(FromQpdfName(qpdfName));
}

}  // namespace tgx::host
