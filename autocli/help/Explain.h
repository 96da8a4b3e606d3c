#pragma once

#include <string>
#include <vector>

#include "autocli/line/Specs.h"
#include "autocli/line/Vocabulary.h"
#include "platform/autocli/AutoCli.h"

/// What help and the reference pages say, before either lays it out. Texts are as they were
/// declared: whoever writes them escapes them.
namespace autocli {

struct OptionText {
  std::string letter;  ///< "-s"; empty without one
  std::string name;    ///< "--ssd"; "NAME..." for the rest of the line
  std::string value;   ///< "STRING", "FILE"; empty for a flag
  bool isRequired;
  bool isRepeatable;
  /// What it is: the description, its placeholders expanded, and what that leaves unsaid of
  /// "(required)", the allowed values and repetition. May have several lines.
  std::string text;
};

/// A word and what it means.
struct Meaning {
  std::string word;
  std::string text;
};

struct CommandText {
  std::string path;
  std::string description;
  std::vector<OptionText> options;
  std::string result;               ///< "list of records"; empty when it is not known
  std::vector<std::string> fields;  ///< of the records in the result
  std::vector<Meaning> examples;    ///< lines with the program's name, and what each does
};

/// In the order in which they were declared; what takes the rest of the line, as the notes have it,
/// comes last and is no option.
std::vector<OptionText> Explained(const Corvex::CallSpec::InputSpec& input,
                                  const CommandNotes& notes = {});

/// Without options and result when `specs` has a problem.
CommandText Explained(const Corvex::AutoCli::CommandSpec& command, const Specs& specs,
                      const std::string& path, const CommandNotes& notes = {});

/// The options of a usage line, each in one piece, in brackets when it may be left out.
std::vector<std::string> UsagePieces(const std::vector<OptionText>& options);

/// The exit statuses of the program.
std::vector<Meaning> ExitStatuses();

}  // namespace autocli
