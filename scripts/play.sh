#!/usr/bin/env bash
# Installs what is needed, builds, and plays a movie: play.sh [MOVIE]
# Without a movie it takes a demo. Where there is no display, its frames are
# rendered to pictures.
source "$(dirname "$0")/common.sh"

install_packages
configure_and_build release vexel demos
movie=${1:-$root/build/share/vexel/railway.vxf}
if [ -n "${DISPLAY:-}" ]; then
  say "play: $movie, in a window"
  exec "$root/build/bin/vexel" play "$movie"
fi
out=$(mktemp -d --suffix=-vexel)
say "play: $movie"
"$root/build/bin/vexel" info "$movie"
"$root/build/bin/vexel" render "$movie" --all -o "$out/frame-%04d.png"
say "done: $(find "$out" -name '*.png' | wc -l) pictures in $out"
