#pragma once

#include <memory>
#include <span>
#include <string>

#include "autocli/line/Specs.h"
#include "autocli/plugin/Companion.h"
#include "platform/autocli/AutoCli.h"

namespace autocli {

/// The name that people type.
inline constexpr const char* kProgram = "autocli";

struct ToolCall;

/// What the program does itself, named by the first word of the line.
struct Tool {
  const char* word;
  const char* arguments;             ///< as a usage line shows them; may be empty
  const char* description;           ///< a line for help; null for a tool that nobody types
  int (*run)(const ToolCall& call);  ///< returns the exit status
};

/// The exception: a line may name this tool anywhere in its path.
inline constexpr const char* kHelpTool = "help";

/// All that a line can name.
struct Vocabulary {
  std::shared_ptr<Corvex::AutoCli::Namespace> root;  ///< what plug-ins brought; never null
  std::span<const Tool> tools = {};                  ///< in the order of help
  /// The word that the program's own name implied, for it was called by a link of that name; the
  /// path of the line begins with it. Empty for none.
  std::string implied = {};
  Companions companions = {};

  /// The tool that the first word of a line names; null without one, and when a top-level namespace
  /// has taken the name.
  const Tool* FindTool(const std::string& word) const;
  /// How the words of the path are typed, the program's name first, where it was called by the name
  /// that it was called by now. What is `before` the path comes after that name.
  std::string Typed(const std::string& path, const std::string& before = "") const;

  /// What companions say of the command at that path; nothing without its input. Its `rest` is a
  /// list option of `specs`, or empty.
  CommandNotes NotesOn(const std::string& path, const Specs& specs) const;
};

}  // namespace autocli
