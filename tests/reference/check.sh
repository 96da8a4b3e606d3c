#!/usr/bin/env bash
# check.sh BIN DOCS: holds the pages in DOCS against the programs in BIN, and manual pages against mandoc.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
PATH=$1:$PATH
unset COLUMNS NO_COLOR
cd "$(mktemp -d)"
trap 'rm -rf "$PWD"' EXIT
mkdir pages man lab
# Which options there are depends on the host, here a new one.
export KOREL_LAB=$PWD/lab/lab.db
autocli --reference markdown pages
diff -u "$2/commands.md" pages/commands.md || { echo "docs/commands.md is not what the program says: ./dev docs"; exit 1; }
autocli --reference man man
mandoc -Tlint man/*.1

# A full disk leaves the old page whole, and nothing beside it. Counts of coverage are not cut short.
(ulimit -f 1; trap '' XFSZ; GCOV_PREFIX=/dev/null autocli --reference markdown pages 2>fault) || true
grep -q 'error: cannot write "pages/commands.md": File too large' fault
[[ $(ls -A pages) == commands.md ]]
cmp "$2/commands.md" pages/commands.md

# A terminal gives width and colour; where the environment speaks against colour, the text is the plain one.
seen() { script -qec "stty cols 60; $* autocli help" /dev/null </dev/null | tr -d '\r' >seen; }
seen TERM=xterm NO_COLOR=
grep -q $'\e\[1musage:\e' seen
for against in TERM=dumb TERM= "TERM=xterm NO_COLOR=1"; do
  seen "$against" && cmp seen <(COLUMNS=60 autocli help)
done

bash "$here/examples.sh" "$1" "$2/help.md" | diff -u "$2/help.md" - || { echo "docs/help.md is not what the program says: ./dev docs"; exit 1; }
