#!/usr/bin/env bash
# run.sh TREE [NAME...]: seeds the faults of this folder one at a time in TREE, a copy of the sources
# with a build of its own, and names the test that catches each. Without NAME all of them, after a
# run without any. Fails when one survives, does not apply or does not build.
# run.sh check: only whether they still apply to the sources.
set -euo pipefail
faults=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=${faults%/tests/mutants}
tree=$1
shift

put() { patch -p1 -F0 -f -s -r - --no-backup-if-mismatch "${@:3}" -d "$1" -i "$faults/$2.patch"; }
build() {
  [[ -e $tree/build/build.ninja ]] || (cd "$tree" && cmake --preset release) || return
  nice ninja -C "$tree/build" -j2 all
}
# What is quick comes first, whatever earlier runs have learned about costs.
test_all() {
  for part in tests/autocli tests/lab .; do
    rm -rf "$tree/build/$part/Testing"
    nice ctest --test-dir "$tree/build/$part" -E '^FaultsApply$' --output-on-failure \
      --stop-on-failure -j2 || return
  done
}
fail() {
  tail -40 "$log"
  echo "$1"
  exit 1
}

all=$(cd "$faults" && printf '%s\n' *.patch)
if [[ $tree == check ]]; then
  for name in $all; do put "$root" "${name%.patch}" --dry-run; done
  exit
fi
# A run that broke off may have left its fault: what faults touch is taken and built again.
log=$tree/build/log
mkdir -p "$tree/build"
(cd "$root" && git ls-files -z -co --exclude-standard | tar -c --null -T -) | tar -xC "$tree"
(cd "$tree" && sed -n 's,^--- a/,,p' "$faults"/*.patch | sort -u | xargs touch)
if (($# == 0)); then
  { build && test_all; } >"$log" 2>&1 || fail "the tests fail without any fault"
  mapfile -t names <<<"$all"
  set -- "${names[@]}"
fi
survived=0
for name in "${@%.patch}"; do
  put "$tree" "$name" || fail "$name does not apply"
  build >"$log" 2>&1 || fail "$name does not build"
  if test_all >"$log" 2>&1; then
    echo "$name: SURVIVED"
    survived=$((survived + 1))
  else
    echo "$name: caught by $(sed -n 's/^\t *[0-9]* - \(.*\) (.*/\1/p' "$log" | paste -sd ' ')"
  fi
  put "$tree" "$name" -R
done
echo "mutants: $# seeded, $survived survived"
((survived == 0))
