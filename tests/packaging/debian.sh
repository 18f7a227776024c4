#!/usr/bin/env bash
# The Debian packages: made by cpack, installed by dpkg into a root that holds what they declare to depend on and little else, used
# there, and removed again.
source "$(dirname "$0")/common.sh"
umask 022

(cd "$scratch" && cpack --config "$build/CPackConfig.cmake" -B "$scratch/packages") >"$scratch/log" 2>&1 || fail "$(cat "$scratch/log")"
command=$(find "$scratch/packages" -maxdepth 1 -name 'tgx_*.deb')
headers=$(find "$scratch/packages" -maxdepth 1 -name 'libtgx-dev_*.deb')
depends=$(dpkg-deb -f "$command" Depends)
[[ $depends == *libqpdf* && $depends == *libtinyxml2* && $depends == *libfreetype6* && $depends == *poppler-data* ]] ||
  fail "the package depends on: $depends"
[[ $(dpkg-deb -f "$headers" Depends) == "tgx (= $(dpkg-deb -f "$command" Version))" ]] || fail "libtgx-dev is not tied to its tgx"

shlibs=$(dpkg-deb -I "$command" shlibs)
[[ $shlibs =~ "libtgx "([0-9.]+)" tgx (<< "[0-9.]+"~), tgx (>= "[0-9.]+")" ]] || fail "the libraries promise: $shlibs"

# names_of DEPENDS: the first choice of each.
names_of() { tr ',' '\n' <<<"$1" | sed 's/|.*//; s/(.*)//; s/:any//; s/ //g' | sed '/^$/d'; }

declare -A seen=()
# add_one NAME: takes over a package of this system, as installed. Gives whether it was a new one.
add_one() {
  local name=$1 file
  [ -z "${seen[$name]-}" ] || return 1
  seen[$name]=1
  dpkg-query -W "$name" >/dev/null 2>&1 || return 1 # a virtual package, or one whose place another one takes
  { dpkg-query -s "$name" && echo; } >>"$scratch/status"
  # Files only: a link to a folder would bring all that is in it.
  while IFS= read -r file; do
    if [ -f "$file" ]; then echo "${file#/}"; fi
  done < <(dpkg-query -L "$name" | grep -v '^/usr/share/\(doc\|man\|locale\)/') >>"$scratch/files"
  for file in /var/lib/dpkg/info/"$name"{,:*}.list; do
    if [ -f "$file" ]; then echo "${file#/}"; fi
  done >>"$scratch/files"
}
# add_package NAME: with what it depends on.
add_package() {
  local name=$1 next
  add_one "$name" || return 0
  while IFS= read -r next; do add_package "$next"; done < <(names_of "$(dpkg-query -W -f '${Depends},${Pre-Depends}' "$name")")
}
while IFS= read -r name; do add_package "$name"; done < <(names_of "$depends")
for name in dash libc-bin; do add_one "$name" || true; done # what scripts of packages may count on

prefix=$scratch/root
mkdir -p "$prefix"/usr/{bin,lib,lib64,sbin} "$prefix/tmp"
for folder in bin lib lib64 sbin; do ln -s "usr/$folder" "$prefix/$folder"; done
[ -s "$scratch/files" ] || fail "dpkg knows no files of: ${!seen[*]}"
needed=$(cd / && sort -u "$scratch/files" | xargs -r -d '\n' du -Lcm | tail -n 1 | cut -f1)
[ "$needed" -lt 500 ] || fail "what the package depends on takes $needed MB: ${!seen[*]}"
(cd / && sort -u "$scratch/files" | xargs -r -d '\n' cp -L --parents -t "$prefix")
mv "$scratch/status" "$prefix/var/lib/dpkg/status"
mkdir -p "$prefix/var/lib/dpkg/updates" "$prefix/etc"

# as_root COMMAND...
as_root() { if [ "$(id -u)" -eq 0 ]; then "$@"; else unshare --user --map-root-user "$@"; fi; }
root_dpkg() {
  as_root env PATH="$PATH:/usr/sbin:/sbin" dpkg --root="$prefix" --force-not-root "$@" >"$scratch/log" 2>&1 ||
    fail "dpkg $*:" "$(cat "$scratch/log")"
}
root_dpkg -i "$command" "$headers"
root_dpkg --verify tgx libtgx-dev
[ ! -s "$scratch/log" ] || fail "installed files are not those of the packages: $(cat "$scratch/log")"
has usr/bin/tgx usr/share/man/man1/tgx.1 usr/share/doc/tgx/copyright usr/share/poppler/cMap usr/include/tgx/tgx.h

documents=usr/share/doc/tgx
inside() { as_root env -u XDG_STATE_HOME HOME=/tmp chroot "$prefix" "$@"; }
inside /usr/bin/tgx fix "/$documents/examples/annual-report.pdf" -o /tmp/out.pdf \
  --styles "/$documents/examples/annual-report.styles.xml" --toc "/$documents/examples/annual-report.toc.xml" >/dev/null
inside /usr/bin/tgx tree /tmp/out.pdf >"$scratch/tree"
grep -qw TOCI "$scratch/tree" || fail "the installed command did not repair the document"

groff -man -Tascii -ww "$prefix/usr/share/man/man1/tgx.1" >"$scratch/shown" 2>"$scratch/log" || fail "the manual page cannot be shown"
[ ! -s "$scratch/log" ] && grep -q 'tgx fix' "$scratch/shown" || fail "the manual page is not sound: $(cat "$scratch/log")"
bash -euc 'source "$1"; complete -p tgx' - "$prefix/usr/share/bash-completion/completions/tgx" >/dev/null || fail "the completion does not load"
for page in "$prefix/$documents"/docs/*.md; do
  while IFS= read -r link; do
    [ -e "${page%/*}/$link" ] || fail "${page##*/} of the package: nothing is at $link"
  done < <(links_of "$page")
done

root_dpkg --purge libtgx-dev tgx
left=$(cd "$prefix" && find . -name '*tgx*' ! -path './var/log/*' ! -path './tmp/*')
[ -z "$left" ] || fail "this stays when the packages are removed: $left"
