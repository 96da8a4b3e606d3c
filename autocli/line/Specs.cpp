#include "autocli/line/Specs.h"

#include <fmt/format.h>

#include <stdexcept>

#include "autocli/base/Guard.h"
#include "autocli/contract/Registering.h"
#include "autocli/contract/Shape.h"
#include "autocli/line/ParameterCheck.h"

namespace autocli {

using Corvex::AutoCli::CommandSpec;
using Corvex::CallSpec::Input;
using Corvex::CallSpec::Output;

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
  } else {
    specs.problem = ProblemOf(*specs.input);
  }
  return specs;
}

std::string Blame(const CommandSpec& command, const std::string& problem) {
  const std::string& origin = OriginOf(command);
  return fmt::format("{}command \"{}\": {}",
                     origin.empty() ? "" : fmt::format("plug-in \"{}\": ", origin), PathOf(command),
                     problem);
}

void Execute(CommandSpec& command, const Specs& specs, const std::shared_ptr<Input>& input,
             const std::shared_ptr<Output>& output) {
  if (command.GetDispatcher() == nullptr) throw std::logic_error("it cannot be executed");
  command.GetDispatcher()->Execute(input, output);
  const auto& result = output->GetRootObject();
  if (!result) {
    if (!output->GetErrorMessages().empty()) return;
    throw std::logic_error("it gave neither a result nor an error");
  }
  const std::string difference = ShapeDifference(*specs.output, *result);
  if (!difference.empty()) {
    throw std::logic_error("the result is not of the declared shape: " + difference);
  }
}

std::string RestText(const std::string& parameter) {
  std::string text = parameter + "...";
  for (char& c : text) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  return text;
}

}  // namespace autocli
