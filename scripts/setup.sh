#!/usr/bin/env bash
# Installs every Debian package the project needs to build and test.
# Does nothing when all of them are present already. Then makes the private
# Debian root with 64-bit and 32-bit Wine (scripts/wine-root.sh) unless it is
# there already.
set -euo pipefail

packages=(
  g++ make cmake pkg-config
  libpugixml-dev libicu-dev libcli11-dev
  # The tool's --json reports, and the schema check of its tests.
  nlohmann-json3-dev python3 python3-jsonschema
  # The manual page's check (groff) and the git text converter's test.
  groff-base git
  # scripts/bench-tool.sh measures the tool beside xmllint.
  libxml2-utils bc time
  libgtest-dev libgmock-dev libbenchmark-dev
  # The benchmarks' second floor: libxml2 building its DOM of the same text.
  libxml2-dev
  # The JSON form, and the Python module with its tests and type checks.
  nlohmann-json3-dev libsimdjson-dev pybind11-dev python3-dev python3-pytest python3-mypy python3-jsonschema
  # The Windows build: the MinGW-w64 cross compiler, widl for the type
  # library, the IDL files widl imports, Wine to run the tests, and
  # GoogleTest's sources to cross-compile the core suite.
  g++-mingw-w64-x86-64-posix mingw-w64-tools libwine-dev wine64 googletest
  # The 32-bit Windows build, and debootstrap for the private root that holds
  # Wine for both bitnesses (scripts/wine-root.sh).
  g++-mingw-w64-i686-posix debootstrap
  clang-14 libclang-rt-14-dev
  # quillbank tree --format svg draws with Graphviz; the browser tests of
  # quillbank view run the system's Chromium through puppeteer-core (npm).
  graphviz chromium nodejs
)
# Debian's nodejs comes without npm; a nodejs package that carries its own
# npm would conflict with Debian's.
if ! command -v npm >/dev/null 2>&1; then
  packages+=(npm)
fi

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -gt 0 ]; then
  echo "Installing: ${missing[*]}"
  sudo=""
  if [ "$(id -u)" -ne 0 ]; then sudo="sudo"; fi
  export DEBIAN_FRONTEND=noninteractive
  $sudo apt-get -o DPkg::Lock::Timeout=900 update
  $sudo apt-get -o DPkg::Lock::Timeout=900 install -y --no-install-recommends "${missing[@]}"
fi

# Wine for both bitnesses, in a private root under build/ (made once).
"$(dirname "$0")/wine-root.sh" make
