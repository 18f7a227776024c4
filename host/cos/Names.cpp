#include "host/cos/Names.h"

#include "host/core/Atoms.h"

namespace tgx::host {
namespace {

constexpr std::string_view kNumberSign(
    "\0"
    "23",
    3);

std::string_view WithoutSlash(std::string_view qpdfName) { return qpdfName.substr(qpdfName.empty() ? 0 : 1); }

}  // namespace

std::string ToQpdfName(std::string_view name) {
  std::string qpdfName;
  qpdfName.reserve(name.size() + 1);
  qpdfName = '/';
  for (auto sign = name.find('#'); sign != std::string_view::npos; sign = name.find('#')) {
    qpdfName.append(name.substr(0, sign)).append(kNumberSign);
    name.remove_prefix(sign + 1);
  }
  return qpdfName.append(name);
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
