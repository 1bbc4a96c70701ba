# Sourced by the Windows test scripts: the Wine of the private root
# (scripts/wine-root.sh) and the one 64-bit prefix that holds both servers.
#   "${wine[@]}" PROGRAM ARGS...   runs a Windows program (either bitness)
#   windows_path PATH              the Windows form of a path of this tree
#   system_folder 64|32            system32 or syswow64
#   build_folder 64|32             the build folder of that bitness
#   wine_prefix_ready              makes the prefix when it is not there yet
#   suite_script tests/com/X.js    the Windows path of the suite as cscript
#                                  runs it: the shared prelude.js (prelude.vbs)
#                                  in front of it, in build/com-scripts
# The prefix's Wine server is stopped when the sourcing script exits.
export WINEPREFIX="${WINEPREFIX:-$PWD/build/wineprefix}"
export WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml="
export WINEARCH=win64
wine=(scripts/wine-root.sh run /usr/lib/wine/wine64)
wineserver=(scripts/wine-root.sh run /usr/lib/wine/wineserver)

windows_path() {
  local path="$1"
  case "$path" in /*) ;; *) path="$PWD/$path" ;; esac
  printf 'Z:%s' "${path//\//\\}"
}

system_folder() {
  if [ "$1" = 32 ]; then printf 'C:\\windows\\syswow64'; else printf 'C:\\windows\\system32'; fi
}

build_folder() {
  if [ "$1" = 32 ]; then printf 'build/windows32'; else printf 'build/windows'; fi
}

wine_prefix_ready() {
  if [ ! -f "$WINEPREFIX/system.reg" ]; then
    echo "Making the Wine prefix $WINEPREFIX"
    timeout 600 "${wine[@]}" wineboot -i
    timeout 300 "${wineserver[@]}" -w
  fi
  trap 'timeout 60 "${wineserver[@]}" -k || true' EXIT
}

suite_script() {
  local suite="$1" joined
  joined="build/com-scripts/$(basename "$suite")"
  mkdir -p build/com-scripts
  cat "$(dirname "$suite")/prelude.${suite##*.}" "$suite" >"$joined"
  windows_path "$joined"
}
