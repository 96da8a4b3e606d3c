#!/usr/bin/env bash
# Whole-process medians, side by side on this machine in one go. A ratio is the first of its group to
# the one it is held against.
set -euo pipefail
bin=$1/bin
long=$1/bench/bin/autocli
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export KOREL_LAB=$scratch/lab.db

# compare TITLE LIMIT RUNS A B: medians of both and their ratio A/B. A B with a pipe is given a shell.
compare() {
  local shell=(--shell=none)
  [[ $5 == *"<"* ]] && shell=()
  hyperfine "${shell[@]}" --warmup 10 --runs "$3" --output null --export-csv "$scratch/figures.csv" \
    "$4" "$5" >/dev/null 2>&1
  awk -F, -v title="$1" -v limit="$2" '
    NR == 2 { a = $4 } NR == 3 { b = $4 }
    END { printf "%-44s %9.2f ms %9.2f ms   ratio %5.2f (aim: at most %s)\n", title, a * 1e3, b * 1e3, a / b, limit }
  ' "$scratch/figures.csv"
}

"$bin/autocli" korel cluster new >/dev/null
for i in 1 2 3; do "$bin/autocli" korel datastore add --name "ds$i" >/dev/null; done
"$long" --formatter table records list --count 100000 >"$scratch/table.txt"

compare "autocli --version / empty program" 1.5 300 "$bin/autocli --version" "$1/bench/bin/bench_empty"
compare "autocli --help / empty program" 1.5 300 "$bin/autocli --help" "$1/bench/bin/bench_empty"
compare "korel datastore list / bare reader" 1.3 300 "$bin/autocli korel datastore list" \
  "$1/bench/bin/bench_bare_reader $KOREL_LAB"
compare "100,000 records as table / column -t" 1.0 5 "$long records list --count 100000" \
  "column -t <$scratch/table.txt"
for formatter in simple json csv; do
  compare "200,000 / 100,000 records as $formatter" "about 2" 5 \
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
