#include "lab/base/Text.h"
#include "lab/commands/ChangeList.h"
#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/trial/Trial.h"

namespace lab {
namespace {

std::shared_ptr<MetaList> Lines() {
  return ListOf(Structure("LabTryLine", {{"Line", MetaType::String}}));
}

std::shared_ptr<MetaList> ListOfLines(const std::vector<std::string>& texts) {
  auto list = Lines();
  for (const std::string& text : texts) AddTexts(*list, {text});
  return list;
}

std::shared_ptr<MetaList> Operations() {
  return ListOf(Structure("LabTryOperation", {{"Operation", MetaType::String},
                                              {"Arguments", MetaType::String},
                                              {"Error", MetaType::String}}));
}

std::shared_ptr<MetaStruct> Shape() {
  auto shape = MetaStruct::New("LabTry");
  shape->SetField("Output", Lines());
  shape->SetField("Operations", Operations());
  shape->SetField("Programs", Lines());
  shape->SetField("Changes", NoChanges());
  return shape;
}

std::shared_ptr<MetaStruct> Describe(const Trial& trial) {
  const auto operations = Operations();
  for (const auto& [operation, arguments, error] : trial.calls) {
    AddTexts(*operations, {operation, arguments, error});
  }
  auto record = Shape();
  record->SetField("Output", ListOfLines(trial.output));
  record->SetField("Operations", operations);
  record->SetField("Programs", ListOfLines(trial.programs));
  record->SetField("Changes", ListOfChanges(trial.changes));
  return record;
}

/// What the command reported; when it reported nothing that is known as an error, that it failed.
void ReportErrors(const OutputPtr& output, const Trial& trial, const std::string& line) {
  constexpr std::string_view kError = "error: ";
  for (const std::string& error : trial.errors) {
    if (error.starts_with(kError)) Refuse(output, error.substr(kError.size()));
  }
  if (trial.status != 0 && output->GetErrorMessages().empty()) {
    Refuse(output, Quoted(line) + " ended with status " + std::to_string(trial.status));
  }
}

class LabTry final : public LabCommand {
 public:
  LabTry() { Show(*this, *Shape(), "simple"); }

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
    return Inputs(
        {{.name = "command",
          .type = ParameterType::StringList,
          .required = true,
          .description =
              "The command and all its options, as they follow \"autocli\". Options of this command come before them."}});
  }

  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override { return Answers(Shape()); }

  void Run(const InputPtr& input, const OutputPtr& output) override {
    RefuseInTrial("lab try", "the lab is a copy already");
    std::vector<std::string> words;
    input->GetParameterList("command", words);
    const Trial trial = TryCommand(words);
    const bool hasDoneAnything =
        !trial.output.empty() || !trial.calls.empty() || !trial.changes.empty();
    if (trial.status == 0 || hasDoneAnything) output->SetRootObject(Describe(trial));
    ReportErrors(output, trial, Joined(words, " "));
  }
};

}  // namespace

CommandPtr NewTry() { return std::make_shared<LabTry>(); }

}  // namespace lab
