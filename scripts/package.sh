#!/usr/bin/env bash
# Installs what is needed, builds the Debian packages (build/packages), checks
# them, installs them in a root of their own and plays a movie there.
#   package.sh            the root is a fresh Debian, made by debootstrap; where
#                         that cannot be had, the packages are unpacked
#   package.sh --unpack   the packages are unpacked into a folder
source "$(dirname "$0")/common.sh"

unpack=
case "${1:-}" in
  '') ;;
  --unpack) unpack=yes ;;
  *) echo "usage: package.sh [--unpack]" >&2; exit 2 ;;
esac
install_packages lintian desktop-file-utils
configure_and_build release
say "pack"
packages=$root/build/packages
rm -rf "$packages"
(cd "$root/build" && cpack >/dev/null)
ls -l "$packages"/*.deb

say "lintian"
as_root=()
[ "$(id -u)" -ne 0 ] || as_root=(--allow-root)
lintian "${as_root[@]}" --fail-on error "$packages"/*.deb

scratch=$(mktemp -d --suffix=-vexel-root)
trap 'rm -rf "$scratch"' EXIT

# A Debian of its own, in which the packages and what they ask for go through
# dpkg and apt; false where that cannot be had.
fresh_root() {
  [ "$(id -u)" -eq 0 ] && command -v debootstrap >/dev/null || return 1
  local mirror
  mirror=$(apt-cache policy | sed -n 's/.* \(https\?:[^ ]*\) bookworm\/main .*/\1/p' | head -n 1)
  debootstrap --variant=minbase bookworm "$scratch/root" ${mirror:+"$mirror"} >"$scratch/log" 2>&1 || return 1
  cp "$packages"/*.deb "$scratch/root/tmp/"
  chroot "$scratch/root" apt-get update -qq >>"$scratch/log" 2>&1 || return 1
}

# What is called there, with which path before the movies.
if [ -z "$unpack" ] && say "debootstrap" && fresh_root; then
  say "install in $scratch/root"
  chroot "$scratch/root" sh -c \
    'DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends /tmp/*.deb' \
    >>"$scratch/log" 2>&1 || { tail -n 20 "$scratch/log"; exit 1; }
  # With a /proc and this machine's displays, which go with it.
  in_root=(unshare --mount --pid --fork --kill-child --mount-proc="$scratch/root/proc" sh -c
    'if [ -d /tmp/.X11-unix ]; then
       mkdir -p "$0/tmp/.X11-unix" && mount --bind /tmp/.X11-unix "$0/tmp/.X11-unix" || exit 1
     fi
     exec chroot "$0" "$@"' "$scratch/root")
  place=
else
  say "unpack into $scratch/root"
  for package in "$packages"/*.deb; do dpkg-deb -x "$package" "$scratch/root"; done
  in_root=(env "PATH=$scratch/root/usr/bin:/usr/bin:/bin")
  place=$scratch/root
fi
movies=$place/usr/share/vexel
mkdir -p "$scratch/root/tmp"

say "draw and film there"
"${in_root[@]}" vexel render "$movies/railway.vxf" --frame 20 -o "$place/tmp/drawn.png"
"${in_root[@]}" vexel render "$movies/railway.vxf" --to 500 -o "$place/tmp/film.gif"
"$root/build/bin/vexel" render "$root/build/share/vexel/railway.vxf" --frame 20 -o "$scratch/here.png"
cmp "$scratch/root/tmp/drawn.png" "$scratch/here.png"

say "play there, without a window and in one"
"${in_root[@]}" vexel stream --packet 65535 "$movies/guestbook.vxf" - <<EOS
clock 0
clock 500
shot $place/tmp/still.png
EOS
/usr/bin/python3 "$root/tests/package/window.py" "$movies/guestbook.vxf" \
  "$scratch/root/tmp/still.png" "$movies/railway.vxf" "${in_root[@]}" vexel play
say "done: $packages"
