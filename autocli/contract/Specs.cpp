#include "autocli/contract/Specs.h"

#include <algorithm>

#include "autocli/base/Guard.h"

namespace autocli {

using Corvex::CallSpec::InputSpec;
using Corvex::CallSpec::ParameterType;

namespace {

bool HasList(const InputSpec& input, const std::string& name) {
  return std::ranges::any_of(input.GetParameters(), [&](const auto& parameter) {
    return parameter->GetLongName() == name && parameter->GetType() == ParameterType::StringList;
  });
}

}  // namespace

Specs SpecsOf(Corvex::AutoCli::CommandSpec& command) {
  Specs specs;
  const auto thrown = Guarded([&] {
    specs.input = command.GetInputSpec();
    if (const auto output = command.GetOutputSpec()) specs.output = output->GetRootObject();
    const auto& hints = command.GetDefaultOutputParameters();
    if (const auto rest = hints.find("rest"); rest != hints.end()) specs.rest = rest->second;
  });
  if (thrown) {
    specs.problem = "cannot be declared: " + *thrown;
  } else if (!specs.input) {
    specs.problem = "declares no input";
  } else if (!specs.output) {
    specs.problem = "declares no result";
  } else if (!specs.rest.empty() && !HasList(*specs.input, specs.rest)) {
    specs.problem = "gives the rest of the line to \"" + specs.rest + "\", no list of its own";
  }
  return specs;
}

std::string RestText(const std::string& parameter) {
  std::string text = parameter + "...";
  for (char& c : text) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  return text;
}

}  // namespace autocli
