#include "platform/autocli/CallSpec.h"

#include <stdexcept>

namespace Corvex::CallSpec {

std::shared_ptr<ParameterConstraint> ParameterConstraint::New(ParameterConstraintType type) {
  return std::make_shared<ParameterConstraint>(type);
}

void ParameterConstraint::SetIntRange(std::int64_t min, std::int64_t max) {
  min_ = min;
  max_ = max;
}

void ParameterConstraint::AddStringEnum(const std::string& value, const std::string& description) {
  values_.push_back({value, description});
}

std::shared_ptr<ParameterSpec> ParameterSpec::New(const std::string& longName, ParameterType type) {
  return std::make_shared<ParameterSpec>(longName, type);
}

std::shared_ptr<InputSpec> InputSpec::New() { return std::make_shared<InputSpec>(); }

void InputSpec::AddParameter(std::shared_ptr<ParameterSpec> parameter) {
  if (!parameter) throw std::invalid_argument("there is no parameter to add");
  const std::string& longName = parameter->GetLongName();
  const std::string& shortName = parameter->GetShortName();
  if (longName.empty()) throw std::invalid_argument("a parameter needs a long name");
  if (shortName.size() > 1) {
    throw std::invalid_argument("short name \"" + shortName + "\" is longer than a letter");
  }
  for (const auto& other : parameters_) {
    if (other->GetLongName() == longName) {
      throw std::invalid_argument("parameter \"" + longName + "\" is declared twice");
    }
    if (!shortName.empty() && other->GetShortName() == shortName) {
      throw std::invalid_argument("short name \"" + shortName + "\" is declared twice");
    }
  }
  parameters_.push_back(std::move(parameter));
}

std::shared_ptr<OutputSpec> OutputSpec::New() { return std::make_shared<OutputSpec>(); }

namespace {

/// The value of that name, as `Type`; the type's empty value when absent.
template <typename Type>
Type ValueOf(const std::map<std::string, Input::Value>& values, const std::string& name) {
  const auto found = values.find(name);
  if (found == values.end()) return Type();
  const Type* value = std::get_if<Type>(&found->second);
  if (value == nullptr) {
    throw std::logic_error("parameter \"" + name + "\" is read as a type that it is not of");
  }
  return *value;
}

}  // namespace

std::shared_ptr<Input> Input::New() { return std::make_shared<Input>(); }

bool Input::HasParameter(const std::string& name) const { return values_.contains(name); }

bool Input::IsFlagSet(const std::string& name) const { return ValueOf<bool>(values_, name); }

std::string Input::GetParameter(const std::string& name) const {
  return ValueOf<std::string>(values_, name);
}

std::int64_t Input::GetParameterInt(const std::string& name) const {
  return ValueOf<std::int64_t>(values_, name);
}

bool Input::GetParameterBool(const std::string& name) const { return ValueOf<bool>(values_, name); }

void Input::GetParameterList(const std::string& name, std::vector<std::string>& values) const {
  values = ValueOf<std::vector<std::string>>(values_, name);
}

std::shared_ptr<Output> Output::New() { return std::make_shared<Output>(); }

}  // namespace Corvex::CallSpec
