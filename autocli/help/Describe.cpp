#include "autocli/help/Describe.h"

#include <nlohmann/json.hpp>

#include "autocli/contract/Names.h"
#include "autocli/contract/Shape.h"
#include "autocli/line/Specs.h"

namespace autocli {

using Corvex::AutoCli::CommandSpec;
using Corvex::AutoCli::Namespace;
using Corvex::AutoCli::NamespaceNode;
using Corvex::CallSpec::ParameterConstraint;
using Corvex::CallSpec::ParameterConstraintType;
using Corvex::CallSpec::ParameterSpec;
using Corvex::MetaObj::MetaList;
using Corvex::MetaObj::MetaObject;
using Corvex::MetaObj::MetaStruct;
using Corvex::MetaObj::MetaType;
using Json = nlohmann::ordered_json;

namespace {

Json ConstraintJson(const ParameterConstraint* constraint) {
  if (constraint == nullptr) return nullptr;
  switch (constraint->GetType()) {
    case ParameterConstraintType::IntRange:
      return {{"type", "IntRange"}, {"min", constraint->GetMin()}, {"max", constraint->GetMax()}};
    case ParameterConstraintType::StringEnum:
      break;
  }
  Json values = Json::array();
  for (const auto& [value, description] : constraint->GetValues()) {
    values.push_back({{"value", value}, {"description", description}});
  }
  return {{"type", "StringEnum"}, {"values", values}};
}

Json ParameterJson(const ParameterSpec& parameter) {
  return {{"long", parameter.GetLongName()},
          {"short", parameter.GetShortName()},
          {"type", TypeName(parameter.GetType())},
          {"required", parameter.IsRequired()},
          {"description", parameter.GetDescription()},
          {"constraint", ConstraintJson(parameter.GetConstraint().get())}};
}

Json OutputJson(const MetaObject& prototype);

void AddStructJson(Json& out, const MetaStruct& prototype) {
  out["type"] = prototype.GetTypeName();
  out["fields"] = Json::array();
  for (const auto& [name, value] : prototype.GetFields()) {
    Json field = {{"name", name}};
    field.update(OutputJson(*value));
    out["fields"].push_back(std::move(field));
  }
}

Json OutputJson(const MetaObject& prototype) {
  Json out = {{"kind", KindName(prototype.GetType())}};
  if (prototype.GetType() == MetaType::Struct) {
    AddStructJson(out, static_cast<const MetaStruct&>(prototype));
  } else if (prototype.GetType() == MetaType::List) {
    const auto& list = static_cast<const MetaList&>(prototype);
    out["of"] = list.GetPrototype() ? OutputJson(*list.GetPrototype())
                                    : Json{{"kind", KindName(list.GetElementType())}};
  }
  return out;
}

void AddCommandJson(Json& out, CommandSpec& command, std::vector<std::string>& problems) {
  const Specs specs = SpecsOf(command);
  out["parameters"] = nullptr;
  out["output"] = nullptr;
  if (specs.problem.empty()) {
    out["parameters"] = Json::array();
    for (const auto& parameter : specs.input->GetParameters()) {
      out["parameters"].push_back(ParameterJson(*parameter));
    }
    out["output"] = OutputJson(*specs.output);
  } else {
    problems.push_back(Blame(command, specs.problem));
  }
  out["formatter"] = command.GetDefaultOutputFormatter();
  out["hints"] = Json::object();
  for (const auto& [key, value] : command.GetDefaultOutputParameters()) out["hints"][key] = value;
}

Json NodeJson(NamespaceNode& node, const std::string& name, std::vector<std::string>& problems) {
  const bool isCommand = node.GetType() == NamespaceNode::NodeType::Command;
  Json out = {{"name", node.GetName().empty() ? name : node.GetName()},
              {"kind", isCommand ? "command" : "namespace"},
              {"description", node.GetDescription()}};
  if (isCommand) {
    AddCommandJson(out, static_cast<CommandSpec&>(node), problems);
    return out;
  }
  out["children"] = Json::array();
  for (const auto& child : static_cast<Namespace&>(node).GetChildren()) {
    out["children"].push_back(NodeJson(*child, name, problems));
  }
  return out;
}

}  // namespace

std::string Describe(NamespaceNode& node, const std::string& name,
                     std::vector<std::string>& problems) {
  return NodeJson(node, name, problems).dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace autocli
