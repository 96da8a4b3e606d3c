#!/usr/bin/env bash
# examples.sh BIN PAGE: prints the page with its examples run again: each block holds a command and its
# output.
set -euo pipefail
PATH=$1:$PATH
unset COLUMNS NO_COLOR
awk '/^```/ { inside = !inside } !inside || /^```/
     inside && /^\$ / { print; fflush(); system(substr($0, 3)) }' "$2"
