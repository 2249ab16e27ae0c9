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
movie=usr/share/vexel/railway.vxf

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

played=$scratch/played.png
if [ -z "$unpack" ] && say "debootstrap" && fresh_root; then
  say "install in $scratch/root"
  chroot "$scratch/root" sh -c \
    'DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends /tmp/*.deb' \
    >>"$scratch/log" 2>&1 || { tail -n 20 "$scratch/log"; exit 1; }
  say "play there"
  # With a /proc, which goes with it.
  unshare --mount --pid --fork --mount-proc="$scratch/root/proc" \
    chroot "$scratch/root" sh -c "vexel render /$movie --frame 20 -o /tmp/played.png &&
      vexel render /$movie --to 500 -o /tmp/played.gif &&
      printf 'clock 500\nshot /tmp/streamed.png\n' | vexel stream /$movie -"
  cp "$scratch/root/tmp/played.png" "$played"
else
  say "unpack into $scratch/root"
  for package in "$packages"/*.deb; do dpkg-deb -x "$package" "$scratch/root"; done
  say "play there"
  PATH=$scratch/root/usr/bin:/usr/bin:/bin vexel render "$scratch/root/$movie" --frame 20 -o "$played"
fi
"$root/build/bin/vexel" render "$root/build/share/vexel/railway.vxf" --frame 20 -o "$scratch/here.png"
cmp "$played" "$scratch/here.png"
say "done: $packages"
