#!/usr/bin/env bash
# What an installation consists of, and that it runs where it was moved to.
source "$(dirname "$0")/common.sh"
install_and_move
library=$(dirname "$(find "$prefix" -name 'libtgx.so.*.*.*')")
library=${library#"$prefix"/}

has bin/tgx "$library"/lib{tgx,tgxhost}.so share/man/man1/tgx.1 share/bash-completion/completions/tgx
has include/tgx/{tgx,host,embedded_host}.h include/tgx/operations/all.def
has "$library"/cmake/tgx/tgxConfig{,Version}.cmake "$library"/pkgconfig/{tgx,tgxhost}.pc

for name in tgx tgxhost; do
  soname=$(readelf -d "$prefix/$library/lib$name.so" | sed -n 's/.*SONAME.*\[\(.*\)\]/\1/p')
  # Before 1.0 the interface may change with each minor version, so the name has that too.
  [[ $soname =~ ^lib$name\.so\.(0\.[0-9]+|[1-9][0-9]*)$ ]] || fail "the soname of lib$name is $soname"
  has "$library/$soname"
done

# Its libraries are found beside it, without any setting.
[[ $(env -i "$prefix/bin/tgx" --version) =~ ^tgx\ [0-9] ]] || fail "the installed command does not run"
if ldd "$prefix/bin/tgx" | grep -F "$build"; then fail "the installed command uses libraries of the build"; fi

# Nothing leads back to where it was built.
if grep -rlF -e "$build" -e "$sources" "$prefix/include" "$prefix/share" "$prefix/$library/cmake" "$prefix/$library/pkgconfig"; then
  fail "these installed files name the folders of the build"
fi
