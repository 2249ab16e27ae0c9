#!/bin/sh
# check_exports.sh NM LIBRARY: the plug-in shows two functions and nothing else.
set -eu
shown=$("$1" -D --defined-only "$2" | awk '{ print $NF }' | LC_ALL=C sort | tr '\n' ' ')
[ "$shown" = "SetDLLAccessPath ZEMCreateInstance " ] && exit 0
echo "exports: $shown"
exit 1
