#include "autocli/contract/Specs.h"

#include "autocli/base/Guard.h"

namespace autocli {

Specs SpecsOf(Corvex::AutoCli::CommandSpec& command) {
  Specs specs;
  const auto thrown = Guarded([&] {
    specs.input = command.GetInputSpec();
    if (const auto output = command.GetOutputSpec()) specs.output = output->GetRootObject();
  });
  if (thrown) {
    specs.problem = "cannot be declared: " + *thrown;
  } else if (!specs.input) {
    specs.problem = "declares no input";
  } else if (!specs.output) {
    specs.problem = "declares no result";
  }
  return specs;
}

std::string RestText(const std::string& parameter) {
  std::string text = parameter + "...";
  for (char& c : text) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  return text;
}

}  // namespace autocli
