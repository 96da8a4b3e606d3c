#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "autocli/plugin/Loader.h"

/// A companion is a file beside a plug-in, NAME.json beside NAME.so. It says of commands what their
/// declarations have no place for: where values of an option come from, what a text names, what to
/// type for instance. docs/companion.md describes it.
namespace autocli {

/// Names, and the text that each of them must have.
using Conditions = std::vector<std::pair<std::string, std::string>>;

/// A command that lists values of an option.
struct ValueSource {
  std::string command;     ///< its path
  std::string field;       ///< holds the value
  std::string about;       ///< the field that is shown beside it; empty for none
  Conditions where = {};   ///< all of these hold for fields of a record that counts,
  Conditions except = {};  ///< and none of these
  Conditions when = {};    ///< all of these hold for options of a line that is completed,
  Conditions unless = {};  ///< and none of these
};

/// What the text that an option takes is.
enum class Naming { Anything, File, Folder, Line };

struct OptionNotes {
  std::vector<ValueSource> values = {};
  Naming is = Naming::Anything;
};

struct Example {
  std::string line;  ///< what follows the program's name
  std::string text;
};

struct CommandNotes {
  std::map<std::string, OptionNotes> options = {};  ///< by long name
  std::vector<Example> examples = {};
  std::string rest = {};  ///< the list option that takes the rest of the line; empty for none

  /// What the option is; Anything when nothing is said of it.
  Naming NamingOf(const std::string& option) const;
};

/// One file, as far as it could be read.
struct Companion {
  std::string file;
  std::vector<std::pair<std::string, CommandNotes>> commands;  ///< by path
  std::vector<std::string> problems;
};

/// The companions of plug-ins. They are read when somebody asks: a line that runs needs none.
class Companions {
 public:
  Companions() = default;
  /// Those of the plug-ins that were loaded.
  explicit Companions(const std::vector<Plugin>& plugins, Trust trust = Trust::OwnersOnly);

  /// What all companions say of the command at that path.
  CommandNotes NotesOn(const std::string& path) const;
  /// Those that are there, in the order of their plug-ins.
  std::vector<Companion> Read() const;

 private:
  std::vector<std::string> files_;
  Trust trust_ = Trust::OwnersOnly;
};

}  // namespace autocli
