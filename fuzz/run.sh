#!/bin/sh
# run.sh TARGET [SECONDS]: fuzzes a target (movie, bitmap, svg, font, actions_text, make,
# dump, check, actions, run, http, options, packets, field or session) with bounded memory and
# time, from the seeds of the build and what earlier runs found. The build folder is
# build-fuzz, or $BUILD.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
target=$1
seconds=${2:-60}
cd "${BUILD:-$here/../build-fuzz}"
mkdir -p "found/$target"
[ -d seeds ] || bin/make_seeds seeds
set --
if [ -f "$here/$target.dict" ]; then set -- "-dict=$here/$target.dict"; fi
exec bin/fuzz_"$target" -rss_limit_mb=1536 -timeout=60 -max_len=16384 \
  -max_total_time="$seconds" -artifact_prefix="failed-$target-" "$@" \
  "found/$target" "seeds/$target"
