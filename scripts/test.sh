#!/usr/bin/env bash
# Installs what is needed, builds, and runs all tests.
#   test.sh              the optimised build
#   test.sh --sanitize   the same tests under address and undefined-behaviour
#                        sanitizers, built with clang
source "$(dirname "$0")/common.sh"

preset=release
packages=()
case "${1:-}" in
  '') ;;
  --sanitize) preset=sanitize packages=(clang) ;;
  *) echo "usage: test.sh [--sanitize]" >&2; exit 2 ;;
esac
install_packages "${packages[@]}"
configure_and_build "$preset"
say "test: preset $preset"
cd "$root" && ctest --preset "$preset" -j"$(nproc)"
