#pragma once

#include <string>
#include <vector>

#include "autocli/tools/ToolCall.h"
#include "platform/autocli/AutoCli.h"

namespace autocli {

/// One way in which the word under the cursor can go on.
struct Candidate {
  bool operator==(const Candidate&) const = default;

  std::string value;        ///< the whole word; never with a control character
  std::string description;  ///< a line without control characters; empty for none
};

/// Everything that the last of the words, the one under the cursor, can become after those in
/// front of it, in the order in which it is to be shown. No words are one empty word. A line that
/// cannot be understood has no candidates, nor has one that is complete.
std::vector<Candidate> Complete(const Vocabulary& vocabulary, std::vector<std::string> words);

/// The tool that the shells' scripts call: `autocli --complete WORD...`, with the words up to the
/// cursor as the shell understands them, quotes taken away; the last one is cut at the cursor and
/// may be empty. After a link the word that it implies stands in front.
///
/// Each candidate is a line: the value and, if it has one, a tab and its description. Nothing else
/// is written and the status is 0, whatever goes wrong. Commands may be asked for live values:
/// while AUTOCLI_COMPLETING is set in the environment, as it is here, nobody may change anything,
/// and nobody is waited for: the process ends without candidates after 80 milliseconds, or as many
/// as AUTOCLI_COMPLETE_MS says.
int CompleteTool(const ToolCall& call);

}  // namespace autocli
