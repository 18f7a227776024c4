#!/usr/bin/env bash
# Runs every command that README.md and docs/ show, page by page in a folder of its own, as a reader would: blocks marked sh, with
# what is installed on the PATH, the examples in place, and a program that the page shows in a block marked c as repair.c. A block
# behind a comment "not run by the tests: WHY" is left out. Then the examples of the manual page.
source "$(dirname "$0")/../packaging/common.sh"
install_and_move
PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name tgx.pc)")
export PKG_CONFIG_PATH PATH=$prefix/bin:$PATH LC_ALL=C.UTF-8
LD_LIBRARY_PATH=$(pkg-config --variable=libdir tgx)
export LD_LIBRARY_PATH

# blocks PAGE: writes the blocks that are to be run to $scratch/blocks, a file each, and prints their number and that of the others.
blocks() {
  rm -rf "$scratch/blocks"
  mkdir "$scratch/blocks"
  awk -v folder="$scratch/blocks" -v page="$1" '
    /^```/ && inside { inside = 0; exempt = 0; next }
    /^```/ { inside = 1; language = substr($0, 4)
             if (language == "sh" && exempt) others++
             if (language == "sh" && !exempt) file = sprintf("%s/%03d", folder, ++count)
             next }
    inside && language == "sh" { if (!exempt) print > file; next }
    # A command must not hide in a block of another kind or in an indented one.
    (inside && language != "usage" && language != "cmake" || /^    /) && /^ *(\.\/[a-z]|tgx |cmake |ctest |cpack |ninja |scripts\/)/ {
      print page ": a command outside a block marked sh: " $0 > "/dev/stderr"; bad = 1 }
    /^<!-- not run by the tests: .+ -->$/ { exempt = 1; next }
    !inside && NF { exempt = 0 }
    END { print count + 0, others + 0; exit bad }
  ' "$sources/$1"
}

# run_block TITLE FILE: in the folder $place.
run_block() {
  (cd "$place" && bash -euo pipefail "$2") >"$scratch/output" 2>&1 </dev/null ||
    fail "$1: this block failed:" "$(cat "$2" "$scratch/output")"
}

run=0
left_out=0
programs=0
cd "$sources"
for page in README.md CONTRIBUTING.md docs/*.md; do
  numbers=$(blocks "$page") || fail "$page shows commands that are not run"
  read -r count others <<<"$numbers"
  place=$scratch/place
  rm -rf "$place"
  mkdir "$place"
  cp -r examples "$place"
  awk '/^```c$/ { inside = 1; next } /^```/ { inside = 0 } inside' "$page" >"$place/repair.c"
  printf '#!/bin/sh\nexec "%s/run" "$@"\n' "$sources" >"$place/run" # builds in the sources, works here
  chmod +x "$place/run"
  for block in "$scratch"/blocks/*; do
    [ -e "$block" ] || continue
    run_block "$page" "$block"
  done
  if [ -s "$place/repair.c" ]; then
    # shellcheck disable=SC2046 # the flags are words
    cc -std=c11 -Wall -Wextra -Wpedantic -Werror -fsyntax-only "$place/repair.c" $(pkg-config --cflags tgx tgxhost)
    qpdf --check "$place/out.pdf" >/dev/null || fail "$page: its program repaired nothing"
    programs=$((programs + 1))
  fi
  run=$((run + count))
  left_out=$((left_out + others))
done
[ "$run" -gt 0 ] || fail "no page shows a command"
[ "$programs" -gt 0 ] || fail "no page shows a program"

place=$scratch/manual
cp -r examples "$place"
sed -n '/^\.SH EXAMPLES/,$ { /^\.nf/,/^\.fi/ { /^\./d; s/\\-/-/g; s/\\e/\\/g; p } }' "$prefix/share/man/man1/tgx.1" >"$scratch/examples"
grep -q '^ *tgx fix ' "$scratch/examples" || fail "the manual page has no examples"
run_block "the manual page" "$scratch/examples"
echo "$run blocks of commands run, $left_out left out; $programs programs and the examples of the manual page"
