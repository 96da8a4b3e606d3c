#!/usr/bin/env bash
# Ratios of what people wait for to what it is held against, side by side on this machine in one go.
set -euo pipefail
here=$(dirname "${BASH_SOURCE[0]}")
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
# What people run was installed: copied. The kernel keeps what a linker wrote in small pieces, and
# mapping those takes a tenth longer.
cp -R "$1/bin" "$1/lib" "$1/bench" "$scratch/"
bin=$scratch/bin
bench=$scratch/bench/bin
export KOREL_LAB=$scratch/lab.db

# compare TITLE AIM RUNS A... -- B...: medians of both and of their ratio, pair by pair.
compare() {
  local title=$1 aim=$2 runs=$3 figures
  shift 3
  read -r -a figures <<<"$("$bench/bench_pair" "$runs" "$@")"
  printf '%-44s %9.2f ms %9.2f ms   ratio %5.2f (%s)\n' "$title" "${figures[@]}" "$aim"
}

"$bin/autocli" korel cluster new >/dev/null
for i in 1 2 3; do "$bin/autocli" korel datastore add --name "ds$i" >/dev/null; done
"$bench/autocli" --formatter table records list --count 100000 >"$scratch/table.txt"

echo "whole processes, medians of pairs"
compare "autocli --version / empty program" "aim: at most 1.3" 500 "$bin/autocli" --version -- "$bench/bench_empty"
compare "autocli --help / empty program" "aim: at most 1.1" 500 "$bin/autocli" --help -- "$bench/bench_empty"
compare "korel ... add --help / empty program" "aim: at most 1.1" 500 "$bin/korel" network ip add --help -- "$bench/bench_empty"
compare "korel storage automode get / empty program" "aim: at most 1.1" 500 "$bin/korel" storage automode get -- "$bench/bench_empty"
compare "korel datastore list / bare reader" "aim: at most 1" 500 "$bin/korel" datastore list -- \
  "$bench/bench_bare_reader" "$KOREL_LAB"
compare "autocli --version / nvme version" "to compare" 100 "$bin/autocli" --version -- nvme version
compare "autocli --version / lvm version" "to compare" 100 "$bin/autocli" --version -- lvm version
compare "korel network list / ip -j link" "to compare" 100 "$bin/korel" network list -- ip -j link
compare "100,000 records as table / column -t" "aim: at most 1" 5 "$bench/autocli" records list --count 100000 -- \
  column -t "$scratch/table.txt"
for formatter in simple json csv; do
  compare "200,000 / 100,000 records as $formatter" "about 2" 5 \
    "$bench/autocli" records list --formatter $formatter --count 200000 -- \
    "$bench/autocli" records list --formatter $formatter --count 100000
done

echo
echo "lines that change the lab, in memory, where waiting for a disk hides nothing"
TMPDIR=/dev/shm /usr/bin/python3 "$here/writes.py" "$bin" "$bench" 40

echo
echo "processor time of each command as the lab grows, in memory"
TMPDIR=/dev/shm /usr/bin/python3 "$here/scale.py" "$bin"

echo
echo "inside the process"
"$bench/bench_inside" --benchmark_counters_tabular=true 2>/dev/null

# Peak memory of making and rendering 100,000 records; the result itself is most of it.
echo
echo "peak memory, 100,000 records of ten fields"
for formatter in simple table json csv; do
  /usr/bin/time -f "  $formatter: %M KiB" "$bench/autocli" records list --count 100000 --formatter "$formatter" >/dev/null
done
