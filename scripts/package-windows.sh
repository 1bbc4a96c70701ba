#!/usr/bin/env bash
# Builds both Windows servers (presets windows and windows32) and makes
# build/Quillbank-<version>-windows.zip:
#   x86/ and x64/   Quillbank.dll, Quillbank.tlb, Quillbank.manifest
#   install.cmd, uninstall.cmd   register or remove both builds (per machine,
#                                or per user with the argument "user")
#   README.txt      for host vendors
# Text files get Windows line ends. Prints the path of the zip.
set -euo pipefail
cd "$(dirname "$0")/.."
jobs=$(nproc)

version="$(sed -n 's/^project(Quillbank VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)"
IFS=. read -r major minor patch <<<"$version"
name="Quillbank-$version-windows"
stage="build/package/$name"
zip="$PWD/build/$name.zip"

for preset in windows windows32; do
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset" -j "$jobs" --target QuillbankServer >/dev/null
done

rm -rf "$stage" "$zip"
mkdir -p "$stage/x86" "$stage/x64"
for pair in x64:build/windows x86:build/windows32; do
  folder="$stage/${pair%%:*}"
  com="${pair#*:}/src/com"
  cp "$com/Quillbank.dll" "$folder/Quillbank.dll"
  cp "$com/quillbank.tlb" "$folder/Quillbank.tlb"
  cp "$com/Quillbank.manifest" "$folder/Quillbank.manifest"
done
crlf() { sed -e 's/\r$//' -e 's/$/\r/' "$1" >"$2"; }
crlf scripts/windows-package/install.cmd "$stage/install.cmd"
crlf scripts/windows-package/uninstall.cmd "$stage/uninstall.cmd"
sed -e "s/@VERSION@/$version/" -e "s/@ASSEMBLY_VERSION@/$major.$minor.0.$patch/" \
  scripts/windows-package/README.txt.in >"$stage/README.txt.lf"
crlf "$stage/README.txt.lf" "$stage/README.txt"
rm "$stage/README.txt.lf"

(cd "$stage" && cmake -E tar cf "$zip" --format=zip x86 x64 install.cmd uninstall.cmd README.txt)
echo "$zip"
