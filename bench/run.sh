#!/usr/bin/env bash
# Whole-process medians, side by side on this machine in one go. A ratio is the first of its group to
# the one it is held against.
set -euo pipefail
bin=$1/bin
long=$1/bench/bin/autocli
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export KOREL_LAB=$scratch/lab.db

# compare TITLE LIMIT ROUNDS RUNS A B: medians of both and of their ratio A/B. They take turns, in
# rounds of RUNS, for the machine's speed drifts. A B with a pipe is given a shell.
compare() {
  local shell=(--shell=none) round
  [[ $6 == *"<"* ]] && shell=()
  for ((round = 0; round < $3; ++round)); do
    hyperfine "${shell[@]}" --warmup 2 --runs "$4" --output null --export-csv "$scratch/figures.csv" "$5" "$6" \
      >/dev/null 2>&1
    awk -F, 'NR == 2 { a = $4 } NR == 3 { print a * 1e3, $4 * 1e3, a / $4 }' "$scratch/figures.csv"
  done >"$scratch/rounds"
  median() { sort -g -k "$1,$1" "$scratch/rounds" | awk -v column="$1" '{ v[NR] = $column } END { print v[int((NR + 1) / 2)] }'; }
  printf '%-44s %9.2f ms %9.2f ms   ratio %5.2f (aim: at most %s)\n' "$1" "$(median 1)" "$(median 2)" "$(median 3)" "$2"
}

"$bin/autocli" korel cluster new >/dev/null
for i in 1 2 3; do "$bin/autocli" korel datastore add --name "ds$i" >/dev/null; done
"$long" --formatter table records list --count 100000 >"$scratch/table.txt"

compare "autocli --version / empty program" 1.5 30 10 "$bin/autocli --version" "$1/bench/bin/bench_empty"
compare "autocli --help / empty program" 1.5 30 10 "$bin/autocli --help" "$1/bench/bin/bench_empty"
compare "korel datastore list / bare reader" 1.3 30 10 "$bin/autocli korel datastore list" \
  "$1/bench/bin/bench_bare_reader $KOREL_LAB"
compare "100,000 records as table / column -t" 1.0 1 5 "$long records list --count 100000" \
  "column -t <$scratch/table.txt"
for formatter in simple json csv; do
  compare "200,000 / 100,000 records as $formatter" "about 2" 1 5 \
    "$long records list --formatter $formatter --count 200000" \
    "$long records list --formatter $formatter --count 100000"
done

# Peak memory of making and rendering 100,000 records, beside making them and rendering one field.
peak() { /usr/bin/env bash -c 'exec "$@" >/dev/null & wait $!; :' _ "$@"; }
echo
echo "peak memory, 100,000 records of ten fields (the result itself is what making it without rendering takes)"
for formatter in simple table json csv; do
  /usr/bin/time -f "  $formatter: %M KiB" "$long" records list --count 100000 --formatter "$formatter" >/dev/null
done
