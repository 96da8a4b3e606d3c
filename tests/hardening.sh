#!/usr/bin/env bash
# The built files are hardened as they were meant to be.
set -euo pipefail
cd "$1"
faults=0
fault() { echo "$1: $2"; faults=1; }
# has FILE WHAT PATTERN COMMAND...: the command's output has the pattern.
has() { [[ $("${@:4}" 2>/dev/null) =~ $3 ]] || fault "$1" "$2"; }

for file in bin/autocli lib/libautocli.so lib/libkorelctl.so lib/autocli/libkorellab.so lib/autocli/plugins/*.so; do
  has "$file" "no RELRO" GNU_RELRO readelf -Wl "$file"
  has "$file" "not bound at once" BIND_NOW readelf -Wd "$file"
  has "$file" "not position-independent" 'DYN \(' readelf -Wh "$file"
  has "$file" "an executable stack" 'GNU_STACK[^E]*RW +0x' readelf -Wl "$file"
  paths=$(readelf -Wd "$file" | sed -n 's/.*PATH).*\[\(.*\)\]/\1/p')
  # The program's holds for all that it loads.
  [[ $file == bin/autocli && $paths == '$ORIGIN/../lib' || -z $paths ]] || fault "$file" "a search path $paths"
  [[ $(readelf -Wd "$file") != *TEXTREL* ]] || fault "$file" "relocations in its code"
  # The program itself only calls the framework, and has no buffers to look after.
  [[ $file == bin/autocli ]] && continue
  has "$file" "no stack protector" __stack_chk_fail readelf -W --dyn-syms "$file"
done
has bin/autocli "no PIE" PIE readelf -Wd bin/autocli
for file in lib/libautocli.so lib/autocli/libkorellab.so; do
  has $file "no fortified functions" '__[a-z]+_chk@' readelf -W --dyn-syms $file
done
for file in lib/autocli/plugins/*.so; do
  [[ $(nm -D --defined-only --format=just-symbols "$file") == AutoCli_RegisterNamespaces ]] ||
    fault "$file" "exports more than its entry point"
  has "$file" "no landing pad for indirect calls" endbr64 \
    objdump -d --disassemble=AutoCli_RegisterNamespaces "$file"
done
exit $faults
