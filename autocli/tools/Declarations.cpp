#include "autocli/tools/Declarations.h"

#include <fmt/format.h>

#include <algorithm>

#include "autocli/contract/Registering.h"
#include "autocli/contract/Shape.h"
#include "autocli/line/Specs.h"
#include "autocli/render/Formatter.h"
#include "autocli/render/View.h"

namespace autocli {

using Corvex::AutoCli::CommandSpec;
using Corvex::AutoCli::Namespace;
using Corvex::AutoCli::NamespaceNode;
using Corvex::MetaObj::MetaStruct;

namespace {

/// Collects the problems of one command's hints.
class HintCheck {
 public:
  HintCheck(const MetaStruct* record, std::vector<std::string>& problems)
      : record_(record), problems_(problems) {}

  void Check(const std::string& key, const std::string& value) {
    const std::string kind = key.substr(0, key.find(':') + 1);
    const std::string rest = key.substr(kind.size());
    if (kind == "fields:") {
      if (!IsType(key, rest)) return;
      for (const std::string& name : SplitNames(value)) RequireField(key, name);
    } else if (kind == "header:") {
      if (IsType(key, rest)) CheckHeader(key, value);
    } else if (kind == "units:") {
      const std::size_t point = std::min(rest.find('.'), rest.size());
      if (!IsType(key, rest.substr(0, point))) return;
      RequireField(key, rest.substr(std::min(point + 1, rest.size())));
    } else {
      problems_.push_back(fmt::format("unknown hint \"{}\"", key));
    }
  }

 private:
  bool IsType(const std::string& key, const std::string& type) {
    if (record_ != nullptr && record_->GetTypeName() == type) return true;
    problems_.push_back(
        fmt::format("hint \"{}\" is for records of another type than the result's", key));
    return false;
  }

  void RequireField(const std::string& key, const std::string& name) {
    if (record_->FindField(name) != nullptr) return;
    problems_.push_back(fmt::format("hint \"{}\" names \"{}\", no field of the result", key, name));
  }

  /// A pair of percent signs around a word is a placeholder; others may stand in a text.
  void CheckHeader(const std::string& key, const std::string& text) {
    for (std::size_t begin = 0; (begin = text.find('%', begin)) != std::string::npos;) {
      const std::size_t end = text.find('%', begin + 1);
      if (end == std::string::npos) return;
      const std::string name = text.substr(begin + 1, end - begin - 1);
      const bool isField = record_->FindField(name) != nullptr;
      const bool isText = name.empty() || name.front() == ' ' || name.back() == ' ';
      if (!isField && !isText) RequireField(key, name);
      begin = isText ? end : end + 1;
    }
  }

  const MetaStruct* record_;
  std::vector<std::string>& problems_;
};

std::vector<std::string> ProblemsOf(CommandSpec& command) {
  const Specs specs = SpecsOf(command);
  if (!specs.problem.empty()) return {specs.problem};
  std::vector<std::string> problems;
  const std::string& formatter = command.GetDefaultOutputFormatter();
  if (!formatter.empty() && std::ranges::count(FormatterNames(), formatter) == 0) {
    problems.push_back(fmt::format("formatter \"{}\" does not exist", formatter));
  }
  HintCheck check(RecordOf(*specs.output), problems);
  for (const auto& [key, value] : command.GetDefaultOutputParameters()) check.Check(key, value);
  return problems;
}

using Problems = std::map<std::string, std::vector<std::string>>;

void AddProblems(const Namespace& space, Problems& problems) {
  for (const auto& child : space.GetChildren()) {
    if (child->GetType() == NamespaceNode::NodeType::Namespace) {
      AddProblems(static_cast<const Namespace&>(*child), problems);
      continue;
    }
    for (const std::string& problem : ProblemsOf(static_cast<CommandSpec&>(*child))) {
      problems[OriginOf(*child)].push_back(
          fmt::format("command \"{}\": {}", PathOf(*child), problem));
    }
  }
}

}  // namespace

Problems DeclarationProblems(const Namespace& root) {
  Problems problems;
  AddProblems(root, problems);
  return problems;
}

}  // namespace autocli
