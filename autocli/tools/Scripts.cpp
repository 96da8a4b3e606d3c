#include "autocli/tools/Scripts.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>

#include "autocli/help/Help.h"
#include "autocli/line/Suggest.h"
#include "autocli/plugin/Loader.h"
#include "autocli/run/Report.h"

namespace autocli {

namespace {

struct Script {
  const char* shell;
  const char* text;  ///< @NAMES@ stands for the names of the program
};

constexpr Script kScripts[] = {
    {"bash", R"sh(# Completes the words of @NAMES@ in bash: source <(autocli --completion bash)

# Sets `plain` to what the shell makes of a raw word, and `quote` to the quote left open in it.
_autocli_unquote() {
  local raw=$1 char
  plain='' quote=''
  while [[ $raw ]]; do
    char=${raw:0:1} raw=${raw:1}
    case $quote$char in
      \'\' | \"\") quote='' ;;
      \' | \") quote=$char ;;
      \\ | \"\\) plain+=${raw:0:1} raw=${raw:1} ;;
      *) plain+=$char ;;
    esac
  done
}

_autocli_complete() {
  # Bash cuts words at colons and equals signs too; the line says which pieces belong together.
  local line=${COMP_LINE:0:COMP_POINT} raws=() words=() i piece plain quote
  for ((i = 0; i <= COMP_CWORD; i++)); do
    piece=${COMP_WORDS[i]}
    if ((i == 0)) || [[ $line == [[:blank:]]* ]]; then
      line=${line#"${line%%[![:blank:]]*}"}
      raws+=('')
    fi
    ((i == COMP_CWORD)) && piece=$line
    raws[-1]+=$piece
    line=${line#"$piece"}
  done
  for piece in "${raws[@]}"; do
    _autocli_unquote "$piece"
    words+=("$plain")
  done
  local last=$quote program=${words[0]/#\~\//~/} name=${words[0]##*/}
  [[ $name == autocli ]] || words[0]=$name program=${program%"$name"}autocli
  [[ $name == autocli ]] && words=("${words[@]:1}")

  # What readline leaves standing in front of the piece that it completes.
  _autocli_unquote "${raws[-1]%"$2"}"
  local value text shown=() width=0 tab=$'\t'
  COMPREPLY=()
  while IFS= read -r value; do
    text=''
    [[ $value == *"$tab"* ]] && text=${value#*"$tab"} value=${value%%"$tab"*}
    value=${value:${#plain}}
    case $last in
      '') printf -v value %q "$value" && value=${value//\\,/,} ;;
      \') [[ $value == *\'* ]] && continue ;;
      \") [[ $value == *[\"\$\`\\!]* ]] && continue ;;
    esac
    COMPREPLY+=("$value")
    shown+=("$text")
    ((${#value} > width)) && width=${#value}
  done < <("$program" --complete "${words[@]}" 2>/dev/null </dev/null)
  compopt -o nosort 2>/dev/null
  # A path goes on after a folder.
  [[ ${#COMPREPLY[@]} == 1 && ${COMPREPLY[0]} == */ ]] && compopt -o nospace

  # A list for people says what the values are; completing one by one (37, 42) takes them as they are.
  ((${#COMPREPLY[@]} > 1 && COMP_TYPE != 37 && COMP_TYPE != 42)) || return 0
  for i in "${!COMPREPLY[@]}"; do
    [[ ${shown[i]} ]] || continue
    printf -v text '%-*s  (%s' "$width" "${COMPREPLY[i]}" "${shown[i]}"
    ((${#text} > COLUMNS - 2)) && text=${text:0:COLUMNS-5}...
    COMPREPLY[i]="$text)"
  done
}

complete -F _autocli_complete @NAMES@
)sh"},
    {"zsh", R"sh(#compdef @NAMES@
# Completes the words of @NAMES@ in zsh, after compinit: source <(autocli --completion zsh)

_autocli() {
  local program=${(Q)words[1]} name=${${(Q)words[1]}:t} line value
  local -a line_words values shown texts suffix
  line_words=("${(@Q)words[2,CURRENT-1]}" "${(Q)PREFIX}")
  if [[ $name != autocli ]]; then
    program=${program%$name}autocli
    line_words=($name "${line_words[@]}")
  fi
  program=${program/#\~\//$HOME/}
  for line in "${(@f)$("$program" --complete "${line_words[@]}" 2>/dev/null </dev/null)}"; do
    [[ -n $line ]] || continue
    values+=("${line%%$'\t'*}")
    texts+=("${${line#"$values[-1]"}#$'\t'}")
  done
  local -i i width=0
  for value in "${values[@]}"; do ((${#value} > width)) && width=${#value}; done
  for ((i = 1; i <= ${#values}; i++)); do
    line=$values[i]
    [[ -n $texts[i] ]] && line="${(r:width:)line}  -- $texts[i]"
    shown=("${line[1,COLUMNS-1]}")
    suffix=()
    # A path goes on after a folder.
    [[ $values[i] == */ ]] && suffix=(-S '')
    compadd -l -V autocli "${suffix[@]}" -d shown -- "$values[i]"
  done
}

if [[ $funcstack[1] == _autocli ]]; then
  _autocli "$@"
else
  compdef _autocli @NAMES@
fi
)sh"},
    {"fish", R"sh(# Completes the words of @NAMES@ in fish: autocli --completion fish | source

function __autocli_complete
    set -l words (commandline -opc)
    set -l name (string replace -r '.*/' '' -- $words[1])
    set -l program (string replace -r '[^/]*$' autocli -- $words[1])
    set program (string replace -r '^~/' "$HOME/" -- $program)
    if test $name = autocli
        set -e words[1]
    else
        set words[1] $name
    end
    # A quote that is still open is closed first.
    set -l raw (commandline -ct)
    set -l word (string unescape -- "$raw"; or string unescape -- "$raw"\"; or string unescape -- "$raw"\')
    $program --complete $words "$word" 2>/dev/null </dev/null
end

for name in @NAMES@
    complete -c $name -e
    complete -c $name -f -k -a '(__autocli_complete)'
end
)sh"},
};

/// After a link beside the program that is named like a top-level namespace, words complete too.
/// Without it that name may be another program's.
std::vector<std::string> ProgramNames(const Corvex::AutoCli::Namespace& root) {
  std::vector<std::string> names = {kProgram};
  for (const auto& child : root.GetChildren()) {
    const std::string link = ProgramFolder() + "/" + child->GetName();
    if (access(link.c_str(), X_OK) == 0) names.push_back(child->GetName());
  }
  return names;
}

}  // namespace

std::vector<std::string> ShellNames() {
  std::vector<std::string> names;
  for (const Script& script : kScripts) names.emplace_back(script.shell);
  return names;
}

std::string CompletionScript(const std::string& shell, const std::vector<std::string>& programs) {
  const auto* script = std::ranges::find(kScripts, shell, &Script::shell);
  if (script == std::end(kScripts)) return "";
  constexpr std::string_view kNames = "@NAMES@";
  std::string text = script->text;
  for (std::size_t at = 0; (at = text.find(kNames, at)) != std::string::npos;) {
    text.replace(at, kNames.size(), fmt::format("{}", fmt::join(programs, " ")));
  }
  return text;
}

int CompletionTool(const ToolCall& call) {
  if (call.words.empty()) return RefuseTool(call, "the shell is missing: bash, zsh or fish");
  if (call.words.size() > 1) {
    return RefuseTool(call, fmt::format("unexpected argument \"{}\"", call.words[1]));
  }
  const std::string& shell = call.words.front();
  const std::string script = CompletionScript(shell, ProgramNames(*call.vocabulary.root));
  if (script.empty()) {
    return RefuseTool(
        call, fmt::format("unknown shell \"{}\"{}", shell, DidYouMean(shell, ShellNames())));
  }
  call.out.Buffer() += script;
  return WriteFaults(FaultsOf(call.plugins), call.err);
}

}  // namespace autocli
