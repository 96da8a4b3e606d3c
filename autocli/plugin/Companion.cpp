#include "autocli/plugin/Companion.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <nlohmann/json.hpp>
#include <set>

#include "autocli/base/Guard.h"
#include "autocli/plugin/Trust.h"

namespace autocli {

using Json = nlohmann::ordered_json;

namespace {

std::string ReadAll(const std::string& path, Trust trust, std::string& problem) {
  File file;
  problem = OpenTrusted(AT_FDCWD, path, path, trust, file).reason;
  if (!problem.empty()) return "";
  std::string text;
  std::array<char, 1 << 14> buffer;
  while (true) {
    const ssize_t size = read(file.Number(), buffer.data(), buffer.size());
    if (size == 0) return text;
    if (size < 0) {
      problem = std::strerror(errno);
      return "";
    }
    text.append(buffer.data(), static_cast<std::size_t>(size));
  }
}

/// The text of that member of the object that `text` is; empty without one. To parse the rest of a
/// file would take longer than all else that help does.
std::string_view MemberIn(std::string_view text, const std::string& name) {
  const std::string key = '"' + name + '"';
  int depth = 0;
  std::size_t start = std::string_view::npos;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    if (c == '"') {
      std::size_t end = at + 1;
      while (end < text.size() && text[end] != '"') end += text[end] == '\\' ? 2 : 1;
      if (depth == 1 && text.substr(at, end + 1 - at) == key) start = text.find(':', end);
      at = end;
    } else if (c == '{' || c == '[') {
      ++depth;
    } else if ((c == '}' || c == ']') && --depth == 1 && start < at) {
      return text.substr(start + 1, at - start);
    }
  }
  return "";
}

/// Takes notes from a document. What is not as it should be becomes a problem, which names its
/// place, and is left out.
class Reader {
 public:
  explicit Reader(Companion& companion) : companion_(companion) {}

  void Read(const std::string& text) {
    Json document;
    const auto thrown = Guarded([&] { document = Json::parse(text, NoteNames()); });
    if (thrown) return Report("", *thrown);
    ForEachMember("", document, [&](const std::string& path, const Json& command) {
      companion_.commands.emplace_back(path, CommandNotes());
      ReadCommand(fmt::format("\"{}\"", path), command, companion_.commands.back().second);
    });
  }

  void ReadCommand(const std::string& place, const Json& value, CommandNotes& notes) {
    ForEachMember(place, value, [&](const std::string& key, const Json& member) {
      const std::string inside = place + ", " + key;
      if (key == "options") {
        ForEachMember(inside, member, [&](const std::string& name, const Json& option) {
          ReadOption(place + ", --" + name, option, notes.options[name]);
        });
      } else if (key == "examples") {
        ForEachElement(inside, member, [&](const Json& element) {
          Example& example = notes.examples.emplace_back();
          ReadTexts(inside, element, {{"line", &example.line}, {"text", &example.text}});
        });
      } else if (key == "rest") {
        ReadText(inside, member, notes.rest);
      } else {
        ReportUnknown(place, key);
      }
    });
  }

 private:
  /// Notices a name that is twice in an object, of which only one would count.
  Json::parser_callback_t NoteNames() {
    return [this](int depth, Json::parse_event_t event, Json& value) {
      if (event == Json::parse_event_t::object_start) names_[depth + 1].clear();
      if (event == Json::parse_event_t::key && !names_[depth].insert(value).second) {
        Report("", fmt::format("\"{}\" is there twice", value.get<std::string>()));
      }
      return true;
    };
  }

  void Report(const std::string& place, const std::string& problem) {
    companion_.problems.push_back(place.empty() ? problem : place + ": " + problem);
  }

  template <typename Action>
  void ForEachMember(const std::string& place, const Json& value, const Action& action) {
    if (!value.is_object()) return Report(place, "no object");
    for (const auto& [name, member] : value.items()) action(name, member);
  }

  template <typename Action>
  void ForEachElement(const std::string& place, const Json& value, const Action& action) {
    if (!value.is_array()) return Report(place, "no list");
    for (const Json& element : value) action(element);
  }

  void ReadText(const std::string& place, const Json& value, std::string& text) {
    if (value.is_string()) {
      text = value.get<std::string>();
    } else {
      Report(place, "no text");
    }
  }

  /// An object whose members are all texts.
  void ReadTexts(const std::string& place, const Json& value,
                 const std::map<std::string, std::string*>& texts) {
    ForEachMember(place, value, [&](const std::string& key, const Json& member) {
      const auto text = texts.find(key);
      if (text == texts.end()) return ReportUnknown(place, key);
      ReadText(place + ", " + key, member, *text->second);
    });
  }

  void ReportUnknown(const std::string& place, const std::string& key) {
    Report(place, fmt::format("unknown key \"{}\"", key));
  }

  void ReadOption(const std::string& place, const Json& value, OptionNotes& notes) {
    ForEachMember(place, value, [&](const std::string& key, const Json& member) {
      const std::string inside = place + ", " + key;
      if (key == "values") {
        ForEachElement(inside, member, [&](const Json& element) {
          ReadSource(inside, element, notes.values.emplace_back());
        });
      } else if (key == "is") {
        ReadNaming(inside, member, notes.is);
      } else {
        ReportUnknown(place, key);
      }
    });
  }

  void ReadNaming(const std::string& place, const Json& value, Naming& naming) {
    std::string text;
    ReadText(place, value, text);
    if (text == "file") {
      naming = Naming::File;
    } else if (text == "folder") {
      naming = Naming::Folder;
    } else if (text == "line") {
      naming = Naming::Line;
    } else {
      Report(place, "none of file, folder, line");
    }
  }

  void ReadSource(const std::string& place, const Json& value, ValueSource& source) {
    const std::map<std::string, std::string*> texts = {
        {"command", &source.command}, {"field", &source.field}, {"about", &source.about}};
    const std::map<std::string, Conditions*> conditions = {{"where", &source.where},
                                                           {"except", &source.except},
                                                           {"when", &source.when},
                                                           {"unless", &source.unless}};
    ForEachMember(place, value, [&](const std::string& key, const Json& member) {
      const std::string inside = place + ", " + key;
      if (const auto text = texts.find(key); text != texts.end()) {
        ReadText(inside, member, *text->second);
      } else if (const auto found = conditions.find(key); found != conditions.end()) {
        ReadConditions(inside, member, *found->second);
      } else {
        ReportUnknown(place, key);
      }
    });
  }

  void ReadConditions(const std::string& place, const Json& value, Conditions& conditions) {
    ForEachMember(place, value, [&](const std::string& name, const Json& member) {
      if (member.is_string()) {
        conditions.emplace_back(name, member.get<std::string>());
      } else if (member.is_boolean() || member.is_number_integer()) {
        conditions.emplace_back(name, member.dump());
      } else {
        Report(place + ", " + name, "no text, integer, true or false");
      }
    });
  }

  Companion& companion_;
  std::map<int, std::set<std::string>> names_;  ///< of the objects around, by their depth
};

}  // namespace

Naming CommandNotes::NamingOf(const std::string& option) const {
  const auto found = options.find(option);
  return found == options.end() ? Naming::Anything : found->second.is;
}

Companions::Companions(const std::vector<Plugin>& plugins, Trust trust) : trust_(trust) {
  for (const Plugin& plugin : plugins) {
    if (plugin.trouble.reason.empty()) {
      files_.push_back(plugin.path.substr(0, plugin.path.rfind('.')) + ".json");
    }
  }
}

CommandNotes Companions::NotesOn(const std::string& path) const {
  CommandNotes notes;
  for (const std::string& file : files_) {
    std::string problem;
    const std::string text = ReadAll(file, trust_, problem);
    const Json command = Json::parse(MemberIn(text, path), nullptr, false);
    if (command.is_discarded()) continue;
    Companion companion{file, {}, {}};
    Reader(companion).ReadCommand("", command, notes);
  }
  return notes;
}

std::vector<Companion> Companions::Read() const {
  std::vector<Companion> companions;
  for (const std::string& file : files_) {
    if (access(file.c_str(), F_OK) != 0 && errno == ENOENT) continue;
    Companion& companion = companions.emplace_back(Companion{file, {}, {}});
    std::string problem;
    const std::string text = ReadAll(file, trust_, problem);
    if (problem.empty()) {
      Reader(companion).Read(text);
    } else {
      companion.problems.push_back(problem);
    }
  }
  return companions;
}

}  // namespace autocli
