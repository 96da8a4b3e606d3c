#!/bin/sh
# Writes what the program says of itself below SHARE: manual pages and completions.
#   pages.sh PROGRAM SHARE
set -eu
program=$1 share=$2
rm -rf "$share"
mkdir -p "$share/man/man1" "$share/bash-completion/completions" "$share/zsh/vendor-completions" \
  "$share/fish/vendor_completions.d"
# Which options there are depends on the host, here a new one.
lab=$(mktemp -d)
trap 'rm -rf "$lab"' EXIT
KOREL_LAB=$lab/lab.db "$program" --reference man "$share/man/man1"
gzip -9n "$share"/man/man1/*.1
ln -s autocli-korel.1.gz "$share/man/man1/korel.1.gz"
"$program" --completion bash >"$share/bash-completion/completions/autocli"
"$program" --completion zsh >"$share/zsh/vendor-completions/_autocli"
"$program" --completion fish >"$share/fish/vendor_completions.d/autocli.fish"
# bash and fish look for a file that is named like the command.
ln -s autocli "$share/bash-completion/completions/korel"
ln -s autocli.fish "$share/fish/vendor_completions.d/korel.fish"
