#include "autocli/tools/LiveValues.h"

#include <algorithm>

#include "autocli/base/Guard.h"
#include "autocli/contract/Shape.h"
#include "autocli/line/Specs.h"
#include "autocli/render/View.h"

namespace autocli {

using Corvex::AutoCli::CommandSpec;
using Corvex::AutoCli::Namespace;
using Corvex::AutoCli::NamespaceNode;
using Corvex::CallSpec::Input;
using Corvex::CallSpec::Output;
using Corvex::CallSpec::ParameterSpec;
using Corvex::MetaObj::MetaObject;
using Corvex::MetaObj::MetaString;
using Corvex::MetaObj::MetaStruct;
using Corvex::MetaObj::MetaType;

namespace {

constexpr std::string_view kHint = "completes:";

/// The field as it is typed, not escaped; empty when it is not there or unset.
std::string TextOf(const MetaStruct& record, const std::string& name) {
  const MetaObject* field = record.FindField(name);
  if (field == nullptr) return "";
  if (field->GetType() == MetaType::String) {
    return static_cast<const MetaString&>(*field).GetValue().value_or("");
  }
  std::string text;
  AppendText(text, *field);
  return text;
}

/// What the command answers with; null when it fails or cannot be executed as it is.
Corvex::MetaObj::MetaObjectPtr Ask(CommandSpec& command) {
  const Specs specs = SpecsOf(command);
  if (!specs.problem.empty()) return nullptr;
  if (std::ranges::any_of(specs.input->GetParameters(), &ParameterSpec::IsRequired)) return nullptr;
  const auto input = Input::New();
  const auto output = Output::New();
  input->Declare(*specs.input);
  const auto thrown = Guarded([&] { Execute(command, specs, input, output); });
  return thrown ? nullptr : output->GetRootObject();
}

/// `fields` is what the hint names, "FIELD" or "FIELD:DESCRIPTION FIELD".
void AddValues(CommandSpec& command, const std::string& fields, std::vector<Candidate>& values) {
  const auto result = Ask(command);
  if (!result || RecordOf(*result) == nullptr) return;
  const std::size_t colon = fields.find(':');
  const std::string description = colon == std::string::npos ? "" : fields.substr(colon + 1);
  ForEachRecord(*result, [&](const MetaStruct& record) {
    values.push_back({TextOf(record, fields.substr(0, colon)), TextOf(record, description)});
  });
}

void Collect(const Namespace& space, const std::string& option, std::vector<Candidate>& values) {
  for (const auto& child : space.GetChildren()) {
    if (child->GetType() == NamespaceNode::NodeType::Namespace) {
      Collect(static_cast<const Namespace&>(*child), option, values);
      continue;
    }
    auto& command = static_cast<CommandSpec&>(*child);
    const auto& hints = command.GetDefaultOutputParameters();
    for (auto hint = hints.lower_bound(kHint); hint != hints.end(); ++hint) {
      const auto& [key, options] = *hint;
      if (!key.starts_with(kHint)) break;
      const auto completed = SplitNames(options);
      if (std::ranges::count(completed, option) > 0) {
        AddValues(command, key.substr(kHint.size()), values);
      }
    }
  }
}

}  // namespace

std::vector<Candidate> LiveValues(const Namespace& root, const std::string& option) {
  std::vector<Candidate> values;
  Collect(root, option, values);
  return values;
}

}  // namespace autocli
