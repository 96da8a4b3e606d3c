#!/usr/bin/env bash
# Which part may know which: platform/ nobody, korel/ only platform/, autocli/ no product word.
set -u
cd "$(dirname "$0")/.."
found=0
forbid() { # MESSAGE PATTERN PATH...
  local message=$1 pattern=$2
  shift 2
  if git grep --untracked -nP "$pattern" -- "$@"; then
    echo "$message"
    found=1
  fi
}
forbid "platform/ includes platform/ and the standard library" '#include "([^p]|p[^l])' platform
forbid "korel/ includes korel/, platform/ and the standard library" '#include "(autocli|lab|tests)/|#include <(?!sys/)[a-zA-Z]+/' korel
forbid "autocli/ includes no other part" '#include "(korel|lab|tests)/' autocli
forbid "lab/ includes no other part" '#include "(korel|autocli|tests)/' lab
git grep --untracked -qiE 'korel|ostrel' -- autocli platform/autocli && forbid "autocli/ knows no product word" '[Kk][Oo][Rr][Ee][Ll]|[Oo]strel' autocli platform/autocli
long=$(git ls-files '*.cpp' '*.h' | xargs wc -l | awk '$2 != "total" && $1 > 500')
if [[ -n $long ]]; then
  echo "files of over 500 lines:"
  echo "$long"
  found=1
fi
exit $found
