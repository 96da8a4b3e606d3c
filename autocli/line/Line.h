#pragma once

#include <memory>
#include <string>
#include <vector>

#include "autocli/base/Fault.h"
#include "autocli/line/Specs.h"
#include "autocli/line/Vocabulary.h"
#include "platform/autocli/AutoCli.h"

namespace autocli {

/// A command line as it was understood.
struct Line {
  /// The node that the path leads to, as far as the path was understood; never null.
  std::shared_ptr<Corvex::AutoCli::NamespaceNode> node;
  std::string path;            ///< its words, joined by blanks
  bool isPathSound = true;     ///< every word of the path was understood
  bool isUnknown = false;      ///< a word of the path names nothing
  const Tool* tool = nullptr;  ///< named where a command could be; what follows it was not read
  Specs specs;                 ///< of the command; empty for a namespace
  std::shared_ptr<Corvex::CallSpec::Input> globals;
  std::shared_ptr<Corvex::CallSpec::Input> input;  ///< the command's own options
  std::vector<std::string> fields;                 ///< picked by --fields
  std::vector<Fault> faults;
  /// The option at the end of the line whose value is missing; null when none is.
  std::shared_ptr<Corvex::CallSpec::ParameterSpec> awaited;
  bool haveOptionsEnded = false;  ///< there was a "--"

  /// The command that the path leads to; null when it leads to a namespace.
  Corvex::AutoCli::CommandSpec* GetCommand() const;
  /// Asks about the node, instead of running it.
  bool IsQuestion() const;
};

/// Reads the words after the program's name. Path words and global options may be mixed; the word
/// "help", where no child has that name, is one of them. A tool that is named first takes no
/// options from here but those that every line takes. Once the command is found, its own options
/// are understood too.
Line ReadLine(const Vocabulary& vocabulary, const std::vector<std::string>& words);

/// The line asks for the version before it names anything, so that no plug-in has a say in it.
bool AsksForVersionFirst(const std::vector<std::string>& words);

}  // namespace autocli
