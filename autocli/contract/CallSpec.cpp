#include "platform/autocli/CallSpec.h"

#include <stdexcept>

#include "autocli/contract/Names.h"

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
  parameters_.push_back(std::move(parameter));
}

std::shared_ptr<OutputSpec> OutputSpec::New() { return std::make_shared<OutputSpec>(); }

std::shared_ptr<Input> Input::New() { return std::make_shared<Input>(); }

void Input::Declare(const InputSpec& spec) {
  for (const auto& parameter : spec.GetParameters()) {
    parameters_.insert_or_assign(parameter->GetLongName(), Parameter{parameter->GetType(), {}});
  }
}

void Input::SetParameter(const std::string& name, Value value) {
  const auto found = parameters_.find(name);
  if (found == parameters_.end()) {
    throw std::logic_error("parameter \"" + name + "\" is set, but not declared");
  }
  found->second.value = std::move(value);
}

template <typename Type>
Type Input::Get(const std::string& name, ParameterType type) const {
  const auto found = parameters_.find(name);
  if (found == parameters_.end()) {
    throw std::logic_error("parameter \"" + name + "\" is read, but not declared");
  }
  const auto& [declared, value] = found->second;
  if (declared != type) {
    throw std::logic_error("parameter \"" + name + "\" is declared as " +
                           autocli::TypeName(declared) + " and read as " + autocli::TypeName(type));
  }
  return value ? std::get<Type>(*value) : Type();
}

bool Input::HasParameter(const std::string& name) const {
  const auto found = parameters_.find(name);
  return found != parameters_.end() && found->second.value;
}

bool Input::IsFlagSet(const std::string& name) const {
  return parameters_.contains(name) && Get<bool>(name, ParameterType::Flag);
}

std::string Input::GetParameter(const std::string& name) const {
  return Get<std::string>(name, ParameterType::String);
}

std::int64_t Input::GetParameterInt(const std::string& name) const {
  return Get<std::int64_t>(name, ParameterType::Int);
}

bool Input::GetParameterBool(const std::string& name) const {
  return Get<bool>(name, ParameterType::Bool);
}

void Input::GetParameterList(const std::string& name, std::vector<std::string>& values) const {
  values = Get<std::vector<std::string>>(name, ParameterType::StringList);
}

std::shared_ptr<Output> Output::New() { return std::make_shared<Output>(); }

}  // namespace Corvex::CallSpec
