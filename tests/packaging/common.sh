# Shared by the tests of the installation; sourced. Every script is called with the folders of the sources and of the build.
set -euo pipefail
sources=$1 build=$2
scratch=$(mktemp -d "${TMPDIR:-/tmp}/tgx-packaging-XXXXXX")
trap 'rm -rf "$scratch"' EXIT

fail() {
  echo "$*" >&2
  exit 1
}

# has FILE...: below the folder in $prefix.
has() {
  local file
  for file in "$@"; do [ -s "$prefix/$file" ] || fail "there is no $file in $prefix"; done
}

# links_of PAGE: the files that it links to.
links_of() { grep -o '](\([^):#]*\)[#)]' "$1" | sed 's/^](//; s/.$//' | sed '/^$/d'; }

# Installs into one folder and moves it to another, as packages do; the folder is in $prefix.
install_and_move() {
  cmake --install "$build" --prefix "$scratch/before" >"$scratch/install.log" || fail "$(cat "$scratch/install.log")"
  prefix=$scratch/moved
  mv "$scratch/before" "$prefix"
}

# check_repair REPAIR TGX: the program repairs a document, the command shows what became of it.
check_repair() {
  local input=$sources/tests/data/samples/handbook.pdf output=$scratch/repaired.pdf
  "$1" "$input" "$output"
  qpdf --check "$output" >/dev/null
  "$2" tree "$input" >"$scratch/tree.before"
  "$2" tree "$output" >"$scratch/tree.after"
  if grep -qw Caption "$scratch/tree.before"; then fail "the document has captions before the repair"; fi
  grep -qw Caption "$scratch/tree.after" || fail "the repair gave no captions"
}
