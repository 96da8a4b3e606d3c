#pragma once

#include <initializer_list>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/autocli/AutoCli.h"

/// Shorthand for plug-ins: a command's parameters, its result and the tree it stands in, each
/// written as one value. Everything here is made of the framework's own operations alone.
namespace Corvex::Declare {

using CallSpec::InputSpec;
using CallSpec::OutputSpec;
using CallSpec::ParameterConstraint;
using CallSpec::ParameterSpec;
using CallSpec::ParameterType;
using MetaObj::MetaBool;
using MetaObj::MetaInt;
using MetaObj::MetaList;
using MetaObj::MetaObjectPtr;
using MetaObj::MetaString;
using MetaObj::MetaStruct;
using MetaObj::MetaType;

using InputPtr = std::shared_ptr<CallSpec::Input>;
using OutputPtr = std::shared_ptr<CallSpec::Output>;

/// One parameter of a command.
struct Parameter {
  const char* name = "";
  const char* shortName = "";
  ParameterType type = ParameterType::String;
  bool required = false;
  std::shared_ptr<ParameterConstraint> constraint = nullptr;
  std::string description = {};
};

/// An input specification of these parameters in this order.
inline std::shared_ptr<InputSpec> Inputs(const std::vector<Parameter>& parameters = {}) {
  auto spec = InputSpec::New();
  for (const Parameter& parameter : parameters) {
    auto declared = ParameterSpec::New(parameter.name, parameter.type);
    declared->SetShortName(parameter.shortName);
    declared->SetDescription(parameter.description);
    declared->SetRequired(parameter.required);
    if (parameter.constraint) declared->SetConstraint(parameter.constraint);
    spec->AddParameter(declared);
  }
  return spec;
}

/// Inclusive bounds of an Int parameter.
inline std::shared_ptr<ParameterConstraint> IntRange(std::int64_t min, std::int64_t max) {
  auto constraint = ParameterConstraint::New(CallSpec::ParameterConstraintType::IntRange);
  constraint->SetIntRange(min, max);
  return constraint;
}

/// The allowed values of a String parameter, each with its description or without.
inline std::shared_ptr<ParameterConstraint> StringEnum(
    const std::vector<ParameterConstraint::EnumValue>& values) {
  auto constraint = ParameterConstraint::New(CallSpec::ParameterConstraintType::StringEnum);
  for (const auto& [value, description] : values) constraint->AddStringEnum(value, description);
  return constraint;
}

/// One field of a record; a field of type List is a list of texts.
struct Field {
  const char* name;
  MetaType type;
};

/// A record of that type with these fields in this order, all unset.
inline std::shared_ptr<MetaStruct> Structure(const char* typeName,
                                             std::initializer_list<Field> fields) {
  auto structure = MetaStruct::New(typeName);
  for (const Field& field : fields) {
    switch (field.type) {
      case MetaType::Bool:
        structure->SetField(field.name, MetaBool::New());
        break;
      case MetaType::Int:
        structure->SetField(field.name, MetaInt::New());
        break;
      case MetaType::String:
        structure->SetField(field.name, MetaString::New());
        break;
      case MetaType::List:
        structure->SetField(field.name, MetaList::New(MetaType::String));
        break;
      case MetaType::Struct:
        throw std::invalid_argument("a record cannot be declared inside a record");
    }
  }
  return structure;
}

/// An empty list of records like `prototype`.
inline std::shared_ptr<MetaList> ListOf(std::shared_ptr<MetaStruct> prototype) {
  return MetaList::New(MetaType::Struct, std::move(prototype));
}

/// An output specification of that shape.
inline std::shared_ptr<OutputSpec> Answers(MetaObjectPtr prototype) {
  auto spec = OutputSpec::New();
  spec->SetRootObject(std::move(prototype));
  return spec;
}

/// Shows records of the prototype's type with all its fields in their order, by that formatter
/// ("simple" or "table") and, unless it is empty, under that header.
inline void Show(AutoCli::CommandSpec& command, const MetaStruct& prototype, const char* formatter,
                 const std::string& header = "") {
  std::string names;
  for (const auto& field : prototype.GetFields()) {
    if (!names.empty()) names += ',';
    names += field.name;
  }
  command.SetDefaultOutputFormatter(formatter);
  command.SetDefaultOutputParameter("fields:" + prototype.GetTypeName(), names);
  if (!header.empty()) {
    command.SetDefaultOutputParameter("header:" + prototype.GetTypeName(), header);
  }
}

/// The command did what it was asked to.
inline void Succeed(const OutputPtr& output) { output->SetRootObject(MetaBool::New(true)); }

/// The command reports an error; what else the result says is left as it is.
inline void Refuse(const OutputPtr& output, const std::string& message) {
  output->AddErrorMessage(message);
}

/// A namespace with its children, or a command made by `make`, which knows its description unless
/// there is one here.
struct Node {
  const char* name;
  const char* description;
  std::vector<Node> children;
  std::shared_ptr<AutoCli::NamespaceNode> (*make)() = nullptr;
};

/// A command made by its class's New().
template <typename CommandClass>
Node Verb(const char* name) {
  return {name, "", {}, []() -> std::shared_ptr<AutoCli::NamespaceNode> {
            return CommandClass::New();
          }};
}

/// The node with everything below it, ready to be registered.
inline std::shared_ptr<AutoCli::NamespaceNode> Grow(const Node& node) {
  if (node.make != nullptr) {
    auto command = node.make();
    if (*node.description != '\0') command->SetDescription(node.description);
    return command;
  }
  auto space = AutoCli::Namespace::New();
  space->SetDescription(node.description);
  for (const Node& child : node.children) {
    space->RegisterNamespaceNode(Grow(child), child.name);
  }
  return space;
}

/// Registers a plug-in's top-level namespace: the one that is there already, or a new one, which is
/// visible before its children are. Each child is complete when it is registered.
/// Throws std::logic_error when a command has taken the name.
inline void RegisterTop(AutoCli::Namespace& root, const Node& top) {
  if (!root.HasNamespaceNode(top.name)) {
    root.RegisterNamespaceNode(AutoCli::Namespace::New(), top.name);
  }
  auto space = std::dynamic_pointer_cast<AutoCli::Namespace>(root.GetNamespaceNode(top.name));
  if (!space) throw std::logic_error(std::string(top.name) + " is not a namespace");
  space->SetDescription(top.description);
  for (const Node& child : top.children) {
    space->RegisterNamespaceNode(Grow(child), child.name);
  }
}

}  // namespace Corvex::Declare
