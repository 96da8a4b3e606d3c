#!/usr/bin/env bash
# The Debian packages: sound by lintian, installed into a root of their own, used there, and removed
# without a trace.
set -euo pipefail
if ((EUID != 0)); then
  unshare --map-root-user true 2>/dev/null || { echo "needs root or user namespaces"; exit 77; }
  exec unshare --map-root-user "$0" "$@"
fi
export PATH=$PATH:/usr/sbin:/sbin
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
fail() { echo "$1"; cat "$scratch/log"; exit 1; }
quietly() { "$@" >"$scratch/log" 2>&1; }

quietly cpack --config "$1/CPackConfig.cmake" -B "$scratch/packages" || fail "cpack failed"
packages=("$scratch"/packages/*.deb)
quietly lintian --allow-root --fail-on error "${packages[@]}" || fail "lintian found errors"

# A root with what the packages depend on, as this system has it, known to dpkg.
root=$scratch/root
known=$root/var/lib/dpkg
mkdir -p "$known/info" "$known/updates"
for package in gcc-12-base libc6 libcrypt1 libgcc-s1; do
  { dpkg-query --status "$package"; echo; } >>"$known/status"
  dpkg-query --listfiles "$package" | sed -n 's,^/\(.*\.so\),\1,p' |
    tar -C / --no-recursion -cT - | tar -C "$root" --no-same-owner -x
  cp /var/lib/dpkg/info/"$package"[.:]*list "$known/info"
done
# Instead of a /proc, which not every container may mount: one program runs in there.
mkdir -p "$root/proc/self" "$root/lab"
ln -s /usr/bin/autocli "$root/proc/self/exe"

files() { (cd "$root" && find . \( -path ./var/lib/dpkg -o -path ./lab \) -prune -o -print | sort); }
in_root() { KOREL_LAB=/lab/lab.db chroot "$root" /usr/bin/"$@"; }
in_dpkg() { quietly dpkg --root="$root" --log=/dev/null "$@"; }

files >"$scratch/before"
in_dpkg --install "${packages[@]}" || fail "the packages could not be installed"
quietly in_root autocli korel --help || fail "no help"
quietly in_root korel cluster new || fail "no cluster"
[[ $(in_root autocli lab cluster list --formatter csv | wc -l) == 2 ]] || fail "the lab does not show it"
in_dpkg --remove autocli && fail "autocli went though others need it"
in_dpkg --purge autocli autocli-dev korel-plugin korel-lab || fail "the packages could not be removed"
files | diff "$scratch/before" - || fail "left behind"
