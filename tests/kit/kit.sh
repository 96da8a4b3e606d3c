#!/usr/bin/env bash
# The installed kit makes plug-ins outside the tree: the example, and one that crosses the border to
# the framework in every way while it uses the shared C++ runtime, which the framework does not.
set -euo pipefail
tree=$(cd "$(dirname "$0")/../.." && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
umask 002 # must not make the plug-in folder writable by others
prefix=$scratch/prefix
plugins=$prefix/lib/autocli/plugins
step() { "$@" >"$scratch/log" 2>&1 || { cat "$scratch/log"; exit 1; }; }
step cmake --install "$1" --prefix "$prefix"

make_plugin() { # SOURCE
  step cmake -G Ninja -S "$1" -B "$1/build" -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$prefix" \
    -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_FLAGS="-Wall -Wextra -Werror"
  step cmake --build "$1/build"
  step cmake --install "$1/build"
}
expect() { # STATUS OUTPUT COMMAND...
  local status=0 output
  output=$("${@:3}" 2>&1) || status=$?
  [[ $status == "$1" && $output == "$2" ]] && return
  printf '%s\nexpected, status %s\n%s\ncame, status %s\n%s\n' "${*:3}" "$1" "$2" "$status" "$output"
  exit 1
}

cp -r "$tree/examples/hello-plugin" "$scratch/hello"
make_plugin "$scratch/hello"
declared=$(sed -n '/^    return Inputs({$/,/^    });$/p' "$tree/examples/hello-plugin/Hello.cpp")
[[ $declared && $(<"$tree/docs/plugins.md") == *"$declared"* ]] || { echo "docs/plugins.md shows other parameters than the example"; exit 1; }
expect 0 "Ciao, Ada" "$prefix/bin/autocli" hello say --language it --name Ada
expect 0 "Jambo Ada Bob from Eve! Jambo Ada Bob from Eve!" "$prefix/bin/autocli" hello say --name Ada --language sw \
  --loud --times 2 --comma no -n Bob --from Eve
expect 0 $'Tag,Name\nen,English\nit,Italian\nsw,Swahili' "$prefix/bin/autocli" hello language list --formatter csv
expect 0 $'hello.so,0.3,true\nkorel.so,1.0.0,true\nlab.so,1.0.0,true' "$prefix/bin/autocli" --plugins --formatter csv --no-header \
  --fields Name,Version,Loaded
expect 0 AutoCli_RegisterNamespaces nm -D --defined-only --format=just-symbols "$plugins/hello.so"

help=$("$prefix/bin/autocli" hello say --help)
[[ $help == *"examples:"*"autocli hello say --language it --name Ada"* ]] || { echo "no companion: $help"; exit 1; }

# The kit's test of a plug-in passes for this one, and says what another one declares wrongly.
step ctest --test-dir "$scratch/hello/build" --no-tests=error
sed -i 's/"table")/"tables")/; s/.name = "language"/.name = "langu age"/' "$scratch/hello/Hello.cpp"
step cmake --build "$scratch/hello/build"
ctest --test-dir "$scratch/hello/build" --output-on-failure >"$scratch/log" && { echo "a wrong plug-in passes"; exit 1; }
for problem in 'say": parameter "langu age": the name is no word' 'list": formatter "tables" does not exist' \
  'hello.json: "hello say"'; do
  grep -qF "$problem" "$scratch/log" || { cat "$scratch/log"; exit 1; }
done

# Without the library that has the lab, only what needs it fails.
mv "$prefix/lib/autocli/libkorellab.so" "$scratch"
expect 0 "Enabled: false" "$prefix/bin/korel" storage automode get
expect 1 "error: Unable to get fault domain name: the lab cannot be loaded: $prefix/bin/../lib/autocli/libkorellab.so:\
 cannot open shared object file: No such file or directory" "$prefix/bin/korel" faultdomain get

mkdir "$scratch/crossing"
cp "$tree/tests/kit/crossing.cpp" "$scratch/crossing/Hello.cpp"
sed 's/(hello/(crossing/' "$tree/examples/hello-plugin/CMakeLists.txt" >"$scratch/crossing/CMakeLists.txt"
make_plugin "$scratch/crossing"
step grep -q 'libstdc++\.so' "$plugins/crossing.so"
expect 0 "caught: name \"x\" is taken, alive: 2, cast: truetrue, orphaned: truetrue
warning: plug-in \"$plugins/crossing.so\" could not be loaded: thrown through a virtual base; try: mv\
 $plugins/crossing.so $plugins/crossing.so.off" "$prefix/bin/autocli" crossing check
