#include "host/core/Atoms.h"

#include <deque>
#include <string>
#include <unordered_map>

#include "host/core/HostError.h"

namespace tgx::host {
namespace {

class AtomTable {
 public:
  AtomTable() { Intern(""); }

  ASAtom Intern(std::string_view text) {
    if (const auto known = atoms_.find(text); known != atoms_.end()) return known->second;
    const auto atom = static_cast<ASAtom>(texts_.size());
    const std::string& kept = texts_.emplace_back(text);
    atoms_.emplace(kept, atom);
    return atom;
  }

  const std::string& Text(ASAtom atom) const {
    if (atom < 0 || static_cast<std::size_t>(atom) >= texts_.size()) {
      throw HostError(kASBadParameter, "no atom has the value " + std::to_string(atom));
    }
    return texts_[static_cast<std::size_t>(atom)];
  }

 private:
  std::deque<std::string> texts_;  // a deque: views and pointers into its strings stay good as it grows
  std::unordered_map<std::string_view, ASAtom> atoms_;
};

AtomTable& Table() {
  static AtomTable table;
  return table;
}

}  // namespace

ASAtom Intern(std::string_view text) { return Table().Intern(text); }
const char* AtomText(ASAtom atom) { return Table().Text(atom).c_str(); }
std::string_view AtomView(ASAtom atom) { return Table().Text(atom); }

}  // namespace tgx::host
