#!/usr/bin/env bash
# A private Debian 12 root (build/wine-root) holding Wine for both
# bitnesses (wine64 and wine32:i386) from the main archive only, so that its
# 64-bit and 32-bit libraries always have equal versions. It serves when the
# machine's own apt cannot install wine32:i386 beside the amd64 libraries it
# has (security updates taken for amd64 while the i386 security index is out
# of step: "held broken packages").
#
#   scripts/wine-root.sh make            make the root (once; kept in build/)
#   scripts/wine-root.sh run CMD ARGS... run CMD inside the root, with this
#                                        working tree at the same path
#
# `run` works in a private mount namespace: the binds it makes vanish with it.
set -euo pipefail
# Making the root and entering it (chroot, mounts) need root's rights.
if [ "$(id -u)" -ne 0 ]; then exec sudo --preserve-env "$0" "$@"; fi
here="$(cd "$(dirname "$0")/.." && pwd)"
root="$here/build/wine-root"
# The archive is the one this machine's own apt uses for Debian's main
# packages (its deb822 sources, or the classic list), unless one is given.
apt_mirror() {
  local line
  for f in /etc/apt/sources.list.d/*.sources; do
    [ -f "$f" ] || continue
    # The first URIs of a stanza whose suites include the release itself.
    awk '/^URIs:/ {u=$2} /^Suites:/ {for (i=2;i<=NF;i++) if ($i=="bookworm") {print u; exit}} /^$/ {u=""}' "$f"
  done | head -1 | grep . && return 0
  for f in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
    [ -f "$f" ] || continue
    while read -r line; do
      set -- $line
      if [ "${1:-}" = deb ] && [ "${3:-}" = bookworm ]; then echo "$2"; return 0; fi
    done <"$f"
  done
  return 1
}
mirror="${QUILLBANK_DEBIAN_MIRROR:-$(apt_mirror || true)}"
if [ -z "$mirror" ]; then
  echo "No Debian archive for bookworm found in apt's sources; set QUILLBANK_DEBIAN_MIRROR" >&2
  exit 2
fi

make_root() {
  if [ -f "$root/.complete" ]; then
    return 0
  fi
  rm -rf "$root"
  mkdir -p "$root"
  echo "Making the private Wine root $root from $mirror"
  debootstrap --variant=minbase --arch=amd64 bookworm "$root" "$mirror" >"$here/build/wine-root.log" 2>&1 \
    || { tail -20 "$here/build/wine-root.log"; exit 1; }
  printf 'deb %s bookworm main\n' "$mirror" >"$root/etc/apt/sources.list"
  cp /etc/resolv.conf "$root/etc/resolv.conf" 2>/dev/null || true
  in_root dpkg --add-architecture i386
  in_root apt-get update -q
  in_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends \
    wine64 wine32:i386 >>"$here/build/wine-root.log" 2>&1 \
    || { tail -20 "$here/build/wine-root.log"; exit 1; }
  in_root apt-get clean
  touch "$root/.complete"
}

# Runs a command inside the root: /proc, /dev, /tmp, the working tree and
# the caller's working folder (when outside the tree) are bound in.
in_root() {
  local cwd
  cwd="$(pwd)"
  unshare --mount --propagation private -- /bin/bash -euc '
    root="$1"; here="$2"; cwd="$3"; shift 3
    mount -t proc proc "$root/proc"
    mount --rbind /dev "$root/dev"
    mount --bind /tmp "$root/tmp"
    mkdir -p "$root$here"
    mount --bind "$here" "$root$here"
    if [ -d "$cwd" ] && [ ! -d "$root$cwd" ]; then mkdir -p "$root$cwd"; mount --bind "$cwd" "$root$cwd"; fi
    cd "$root$cwd" 2>/dev/null || cd "$root"
    exec chroot "$root" /bin/sh -c "cd \"\$0\" 2>/dev/null || cd /; exec \"\$@\"" "$cwd" "$@"
  ' in_root "$root" "$here" "$cwd" "$@"
}

case "${1:-}" in
  make) make_root ;;
  run) shift; [ -f "$root/.complete" ] || make_root; in_root "$@" ;;
  *) echo "usage: $0 make | run CMD [ARGS...]" >&2; exit 2 ;;
esac
