#include <utility>

#include "autocli/line/ParseOptions.h"
#include "autocli/tools/SplitLine.h"
#include "korel/Tree.h"
#include "tests/support/RecordingHost.h"

namespace test {
namespace {

using namespace Corvex::MetaObj;
using Texts = std::vector<std::string>;

std::string Joined(const Texts& texts, const char* separator) {
  std::string joined;
  const char* between = "";
  for (const auto& text : texts) joined += std::exchange(between, separator) + text;
  return joined;
}

Texts Split(const std::string& text, const std::string& separator) {
  Texts parts;
  std::size_t begin = 0;
  for (std::size_t end = 0; (end = text.find(separator, begin)) != std::string::npos;) {
    parts.push_back(text.substr(begin, end - begin));
    begin = end + separator.size();
  }
  parts.push_back(text.substr(begin));
  return parts;
}

std::string Text(const MetaObject& value) {
  Texts parts;
  switch (value.GetType()) {
    case MetaType::Bool: {
      const auto& set = static_cast<const MetaBool&>(value).GetValue();
      return set ? (*set ? "true" : "false") : "-";
    }
    case MetaType::Int: {
      const auto& set = static_cast<const MetaInt&>(value).GetValue();
      return set ? std::to_string(*set) : "-";
    }
    case MetaType::String:
      return static_cast<const MetaString&>(value).GetValue().value_or("-");
    case MetaType::Struct: {
      const auto& record = static_cast<const MetaStruct&>(value);
      for (const auto& [name, field] : record.GetFields()) {
        parts.push_back(name + "=" + Text(*field));
      }
      return record.GetTypeName() + "{" + Joined(parts, ", ") + "}";
    }
    case MetaType::List:
      for (const auto& element : static_cast<const MetaList&>(value).GetElements()) {
        parts.push_back(Text(*element));
      }
      return "[" + Joined(parts, ", ") + "]";
  }
  return "";
}

const Hosts kHosts = {
    {"enabled", [](RecordingHost& host) { host.enabled = true; }},
    {"client", [](RecordingHost& host) { host.clientMode = true; }},
    {"witness", [](RecordingHost& host) { host.nodeType = Tovrin::Korel::KorelNodeType::Witness; }},
    {"no random", [](RecordingHost& host) { host.randomUuid = ""; }},
};
const Names kNames = {{"$A", "aaaaaaaa-0000-0000-0000-000000000001"},
                      {"$B", "bbbbbbbb-0000-0000-0000-000000000002"},
                      {"$C", "cccccccc-0000-0000-0000-000000000003"},
                      {"$random", "12345678-0000-0000-0000-00000000000a"}};

/// Makes the host what stands before the line in brackets. Returns the line.
std::string Prepare(RecordingHost& host, const Hosts& hosts, const std::string& script) {
  if (script[0] != '[') return script;
  const std::size_t end = script.find("] ");
  for (const std::string& part : Split(script.substr(1, end - 1), ", ")) {
    const std::size_t fails = part.find(" fails");
    if (fails != std::string::npos) {
      const std::string operation = part.substr(0, fails);
      host.failures[operation] = "no luck";
      if (part.ends_with(" once")) host.failingOnce.insert(operation);
    } else {
      (hosts.contains(part) ? hosts : kHosts).at(part)(host);
    }
  }
  return script.substr(end + 2);
}

/// The rows with what their names stand for.
Texts Rows(const std::string& table, Names names) {
  names.insert(kNames.begin(), kNames.end());
  Texts rows;
  for (std::string line : Split(table, "\n")) {
    if (line.empty()) continue;
    for (const auto& [name, text] : names) line = Joined(Split(line, name), text.c_str());
    line.starts_with("  ") ? rows.back() += line.substr(1) : rows.emplace_back(line);
  }
  return rows;
}

}  // namespace

std::string RunLine(const std::string& line) {
  using namespace Corvex::AutoCli;
  const auto root = Namespace::New();
  Corvex::Declare::RegisterTop(*root, OstrelCli::KorelNamespace::Tree());
  std::shared_ptr<NamespaceNode> node = root;
  std::string problem;
  std::vector<std::string> words = autocli::SplitLine(line, problem);
  while (const auto space = std::dynamic_pointer_cast<Namespace>(node)) {
    node = space->GetNamespaceNode(words.at(0));
    words.erase(words.begin());
  }
  const auto command = std::dynamic_pointer_cast<CommandSpec>(node);
  if (!command) return "no such command";
  const auto parsed = autocli::ParseOptions(*command->GetInputSpec(), words);
  if (!parsed.faults.empty()) return "usage: " + parsed.faults[0];
  const auto output = Corvex::CallSpec::Output::New();
  command->GetDispatcher()->Execute(parsed.input, output);
  std::string outcome;
  for (const auto& message : output->GetErrorMessages()) outcome += "error: " + message + " | ";
  return outcome + (output->GetRootObject() ? Text(*output->GetRootObject()) : "none");
}

void Check(const Hosts& hosts, const Names& names, const std::string& table) {
  std::string scripts;
  std::string outcome;
  std::string calls;
  for (const std::string& row : Rows(table, names)) {
    SCOPED_TRACE(row);
    std::string failing;
    if (row.starts_with("! ")) {
      failing = Split(Split(calls, " | ").back(), " ").front();
      outcome = row.substr(2);
    } else {
      const std::size_t arrow = row.find(" -> ");
      const std::size_t back = row.find(" <- ");
      ASSERT_NE(arrow, std::string::npos);
      scripts = row.substr(0, arrow);
      outcome = row.substr(arrow + 4, back - arrow - 4);
      calls = back == std::string::npos ? "" : row.substr(back + 4);
    }
    for (const std::string& script : Split(scripts, " / ")) {
      RecordingHost host;
      if (!failing.empty()) host.failures[failing] = "no luck";
      EXPECT_EQ(RunLine("korel " + Prepare(host, hosts, script)), outcome) << script;
      EXPECT_EQ(Joined(host.calls, " | "), calls) << script;
    }
  }
}

}  // namespace test
