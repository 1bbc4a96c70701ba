#!/usr/bin/env bash
# Installs every Debian package the project needs to build and test.
# Does nothing when all of them are present already.
set -euo pipefail

packages=(
  g++ make cmake pkg-config
  libpugixml-dev libicu-dev libcli11-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  # The JSON form, and the Python module with its tests and type checks.
  nlohmann-json3-dev pybind11-dev python3-dev python3-pytest python3-mypy python3-jsonschema
  # The Windows build: the MinGW-w64 cross compiler, widl for the type
  # library, the IDL files widl imports, Wine to run the tests, and
  # GoogleTest's sources to cross-compile the core suite.
  g++-mingw-w64-x86-64-posix mingw-w64-tools libwine-dev wine64 googletest
  clang-14 libclang-rt-14-dev
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "Installing: ${missing[*]}"
sudo=""
if [ "$(id -u)" -ne 0 ]; then sudo="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update
$sudo apt-get install -y --no-install-recommends "${missing[@]}"
