#!/usr/bin/env bash
# A project that finds the installation with find_package builds against it and repairs a document.
source "$(dirname "$0")/common.sh"
install_and_move
cmake -S "$sources/tests/consumer" -B "$scratch/build" -DCMAKE_PREFIX_PATH="$prefix" >"$scratch/log" 2>&1 || fail "$(cat "$scratch/log")"
cmake --build "$scratch/build" >"$scratch/log" 2>&1 || fail "$(cat "$scratch/log")"
check_repair "$scratch/build/repair" "$prefix/bin/tgx"
"$scratch/build/bridge" "$sources/tests/data/samples/handbook.pdf" | grep -q '^[1-9][0-9]* operations called$' || fail "the bridge did not work"
