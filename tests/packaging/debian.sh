#!/usr/bin/env bash
# The Debian packages: made by cpack, unpacked into a root that holds what they declare to depend on and nothing else, and run
# there.
source "$(dirname "$0")/common.sh"
umask 022

(cd "$scratch" && cpack --config "$build/CPackConfig.cmake" -B "$scratch/packages") >"$scratch/log" 2>&1 || fail "$(cat "$scratch/log")"
command=$(find "$scratch/packages" -maxdepth 1 -name 'tgx_*.deb')
headers=$(find "$scratch/packages" -maxdepth 1 -name 'libtgx-dev_*.deb')
depends=$(dpkg-deb -f "$command" Depends)
[[ $depends == *libqpdf* && $depends == *libtinyxml2* && $depends == *libfreetype6* && $depends == *poppler-data* ]] ||
  fail "the package depends on: $depends"
[[ $(dpkg-deb -f "$headers" Depends) == "tgx (= $(dpkg-deb -f "$command" Version))" ]] || fail "libtgx-dev is not tied to its tgx"

# names_of DEPENDS: the first choice of each.
names_of() { tr ',' '\n' <<<"$1" | sed 's/|.*//; s/(.*)//; s/:any//; s/ //g' | sed '/^$/d'; }

declare -A seen=()
add_package() {
  local name=$1 file next
  [ -z "${seen[$name]-}" ] || return 0
  seen[$name]=1
  dpkg-query -W "$name" >/dev/null 2>&1 || return 0 # a virtual package, or one whose place another one takes
  # Files only: a link to a folder would bring all that is in it.
  while IFS= read -r file; do
    if [ -f "$file" ]; then echo "${file#/}"; fi
  done < <(dpkg-query -L "$name" | grep -v '^/usr/share/\(doc\|man\|locale\)/') >>"$scratch/files"
  while IFS= read -r next; do add_package "$next"; done < <(names_of "$(dpkg-query -W -f '${Depends},${Pre-Depends}' "$name")")
}
while IFS= read -r name; do add_package "$name"; done < <(names_of "$depends")

prefix=$scratch/root
mkdir -p "$prefix"/usr/{bin,lib,lib64,sbin} "$prefix/tmp"
for folder in bin lib lib64 sbin; do ln -s "usr/$folder" "$prefix/$folder"; done
[ -s "$scratch/files" ] || fail "dpkg knows no files of: ${!seen[*]}"
needed=$(cd / && sort -u "$scratch/files" | xargs -r -d '\n' du -Lcm | tail -n 1 | cut -f1)
[ "$needed" -lt 500 ] || fail "what the package depends on takes $needed MB: ${!seen[*]}"
(cd / && sort -u "$scratch/files" | xargs -r -d '\n' cp -L --parents -t "$prefix")
dpkg-deb -x "$command" "$prefix"
has usr/bin/tgx usr/share/man/man1/tgx.1 usr/share/doc/tgx/copyright usr/share/poppler/cMap
cp "$sources/tests/data/samples/handbook.pdf" "$prefix/tmp"

# inside COMMAND...: runs with that root.
inside() {
  if [ "$(id -u)" -eq 0 ]; then chroot "$prefix" "$@"; else unshare --user --map-root-user chroot "$prefix" "$@"; fi
}
inside /usr/bin/tgx run /tmp/handbook.pdf -o /tmp/out.pdf group-tags remove-empty-tags >/dev/null
inside /usr/bin/tgx tree /tmp/out.pdf >"$scratch/tree"
grep -qw Caption "$scratch/tree" || fail "the installed command did not repair the document"

dpkg-deb -x "$headers" "$prefix"
has usr/include/tgx/tgx.h
