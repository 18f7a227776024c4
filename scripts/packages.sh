# Installs Debian packages that are missing; sourced by the commands in the root.

# need_packages NAME...
need_packages() {
  local missing=() name
  for name in "$@"; do
    dpkg-query -W -f='${Status}' "$name" 2>/dev/null | grep -q 'install ok installed' || missing+=("$name")
  done
  [ ${#missing[@]} -eq 0 ] && return
  command -v apt-get >/dev/null || { echo "These packages are missing, and there is no apt-get to install them: ${missing[*]}" >&2; exit 1; }
  local root=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "Install these packages as root first: ${missing[*]}" >&2; exit 1; }
    root=(sudo)
  fi
  echo "Installing from Debian: ${missing[*]}"
  "${root[@]}" apt-get update -qq
  "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

build_packages=(g++ cmake ninja-build pkg-config libqpdf-dev libtinyxml2-dev zlib1g-dev libfreetype-dev libcli11-dev nlohmann-json3-dev libjemalloc-dev)
test_packages=(libgtest-dev libgmock-dev qpdf poppler-utils poppler-data mupdf-tools dpkg-dev file groff-base)
lint_packages=(clang-format-14 clang-tidy-14)
fuzz_packages=(clang-14 libclang-rt-14-dev)

# configure_and_build PRESET: quiet when all goes well.
configure_and_build() {
  echo "Building ($1)"
  local log
  log=$(mktemp)
  if ! { cmake --preset "$1" && cmake --build --preset "$1"; } >"$log" 2>&1; then
    tail -n 100 "$log" >&2
    rm -f "$log"
    exit 1
  fi
  rm -f "$log"
}
