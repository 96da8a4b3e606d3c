#include "autocli/line/GlobalOptions.h"

#include "autocli/render/Formatter.h"

namespace autocli {

using Corvex::CallSpec::InputSpec;
using Corvex::CallSpec::ParameterConstraint;
using Corvex::CallSpec::ParameterConstraintType;
using Corvex::CallSpec::ParameterSpec;
using Corvex::CallSpec::ParameterType;

namespace {

std::shared_ptr<ParameterSpec> Option(const char* name, ParameterType type,
                                      const char* description) {
  auto option = ParameterSpec::New(name, type);
  option->SetDescription(description);
  return option;
}

std::shared_ptr<ParameterSpec> Choice(const char* name, const std::vector<std::string>& values,
                                      const char* description) {
  auto constraint = ParameterConstraint::New(ParameterConstraintType::StringEnum);
  for (const std::string& value : values) constraint->AddStringEnum(value);
  auto option = Option(name, ParameterType::String, description);
  option->SetConstraint(constraint);
  return option;
}

std::shared_ptr<InputSpec> MakeGlobalOptions() {
  auto options = InputSpec::New();
  options->AddParameter(
      Choice("formatter", FormatterNames(),
             "How the result is written: %ENUM%. Without it, as the command itself suggests."));
  options->AddParameter(Option("fields", ParameterType::String,
                               "The fields to show, in this order, joined by commas."));
  options->AddParameter(Option("no-header", ParameterType::Flag,
                               "Leave the names of the columns out of table and csv."));
  options->AddParameter(
      Choice("color", {"auto", "always", "never"},
             "When help and errors are coloured: %ENUM%. Without it auto, on a terminal."));
  auto help = Option("help", ParameterType::Flag, "Say what can follow, or what a command does.");
  help->SetShortName("h");
  options->AddParameter(help);
  options->AddParameter(Option("describe", ParameterType::Flag,
                               "Write the commands below a path as one JSON document."));
  options->AddParameter(Option("version", ParameterType::Flag, "Say which version this is."));
  return options;
}

}  // namespace

const InputSpec& GlobalOptions() {
  static const std::shared_ptr<InputSpec> options = MakeGlobalOptions();
  return *options;
}

}  // namespace autocli
