#!/usr/bin/env bash
# A program that is compiled with what pkg-config says repairs a document.
source "$(dirname "$0")/common.sh"
install_and_move
PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name tgx.pc)")
export PKG_CONFIG_PATH
flags=$(pkg-config --cflags --libs tgx tgxhost)
libraries=$(pkg-config --variable=libdir tgx)
# shellcheck disable=SC2086 # the flags are words
cc -std=c11 -Wall -Wextra -Wpedantic -Werror -o "$scratch/repair" "$sources/tests/consumer/repair.c" $flags -Wl,-rpath,"$libraries"
check_repair "$scratch/repair" "$prefix/bin/tgx"
