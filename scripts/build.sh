#!/usr/bin/env bash
# Installs what is needed and builds the command, optimised: build/bin/vexel.
source "$(dirname "$0")/common.sh"

install_packages
configure_and_build release vexel
say "done: $root/build/bin/vexel"
