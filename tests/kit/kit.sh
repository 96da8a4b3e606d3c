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
expect 0 "Ciao, Ada" "$prefix/bin/autocli" hello say --language it --name Ada
expect 0 $'Tag,Name\nen,English\nit,Italian\nsw,Swahili' "$prefix/bin/autocli" hello language list --formatter csv
expect 0 $'hello.so,0.3,true\nkorel.so,1.0.0,true\nlab.so,1.0.0,true' "$prefix/bin/autocli" --plugins --formatter csv --no-header \
  --fields Name,Version,Loaded
expect 0 AutoCli_RegisterNamespaces nm -D --defined-only --format=just-symbols "$plugins/hello.so"

help=$("$prefix/bin/autocli" hello say --help)
[[ $help == *"examples:"*"autocli hello say --language it --name Ada"* ]] || { echo "no companion: $help"; exit 1; }

# Without the library that has the lab, only what needs it fails.
mv "$prefix/lib/autocli/libkorellab.so" "$scratch"
expect 0 "Enabled: false" "$prefix/bin/korel" storage automode get
expect 1 "error: Unable to get fault domain name: the lab cannot be loaded: $prefix/bin/../lib/autocli/libkorellab.so:\
 cannot open shared object file: No such file or directory" "$prefix/bin/korel" faultdomain get

mkdir "$scratch/crossing"
cp "$tree/tests/kit/crossing.cpp" "$scratch/crossing/Hello.cpp"
sed 's/(hello /(crossing /' "$tree/examples/hello-plugin/CMakeLists.txt" >"$scratch/crossing/CMakeLists.txt"
make_plugin "$scratch/crossing"
step grep -q 'libstdc++\.so' "$plugins/crossing.so"
expect 3 'caught: name "x" is taken, alive: 2, cast: truetrue, orphaned: truetrue
error: plug-in "crossing.so": thrown through a virtual base' "$prefix/bin/autocli" crossing check
