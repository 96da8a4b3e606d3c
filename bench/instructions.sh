#!/usr/bin/env bash
# Holds the instructions that a start takes against instructions.txt, which says for what compiler
# and C library they were counted; elsewhere it is skipped. They hardly depend on the machine, and
# not on what else it does.
#
#   instructions.sh BUILD [--write]
set -euo pipefail
build=$1
known=$(dirname "${BASH_SOURCE[0]}")/instructions.txt
tolerance=3 # percent

platform="$(uname -m), g++ $(g++ -dumpfullversion), $(ldd --version | awk 'NR == 1 { print "glibc " $NF }')"
if [[ ${2:-} != --write && "# $platform" != "$(head -n 1 "$known")" ]]; then
  echo "counted for another platform than this: $platform"
  exit 77
fi

# In a folder whose path is as long for everybody, without an environment, for both are read.
place=$(mktemp -d /tmp/count.XXXXXX)
trap 'rm -rf "$place"' EXIT
cp -R "$build/bin" "$build/lib" "$place/"

count() {
  env -i KOREL_LAB="$place/lab.db" valgrind --tool=callgrind --callgrind-out-file=/dev/null "$@" 2>&1 >/dev/null |
    awk '/Collected/ { print $NF }'
}

env -i KOREL_LAB="$place/lab.db" "$place/bin/autocli" korel cluster new >/dev/null
counts=$place/counts
while IFS= read -r line; do
  read -r -a words <<<"$line"
  printf '%9d  %s\n' "$(count "$place/bin/${words[0]}" "${words[@]:1}")" "$line"
done >"$counts" <<'LINES'
autocli --version
autocli --help
korel network ip add --help
korel datastore list
LINES

if [[ ${2:-} == --write ]]; then
  { echo "# $platform"; cat "$counts"; } >"$known"
  exit
fi
awk -v tolerance=$tolerance '
  FNR == NR { if (!/^#/) { was = $1; $1 = ""; known[$0] = was }; next }
  { now = $1; $1 = ""; change = (now / known[$0] - 1) * 100
    printf "%9d instructions (%+.1f %%) %s\n", now, change, $0
    if (change > tolerance || change < -tolerance) far = 1 }
  END { if (far) { print "too far from instructions.txt; what is meant to be so: ./dev count"; exit 1 } }
' "$known" "$counts"
