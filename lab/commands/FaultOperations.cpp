#include "lab/commands/ChangeList.h"
#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/OperationTexts.h"

namespace lab {
namespace {

std::shared_ptr<MetaStruct> Shape() {
  return Structure("LabOperation",
                   {{"Operation", MetaType::String}, {"What It Does", MetaType::String}});
}

class LabFaultOperations final : public LabCommand {
 public:
  LabFaultOperations() { Show(*this, *Shape(), "table"); }

 private:
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override { return Answers(ListOf(Shape())); }

  void Run(const InputPtr&, const OutputPtr& output) override {
    auto list = ListOf(Shape());
    for (const auto& [operation, text] : OperationTexts()) {
      AddTexts(*list, {std::string(operation), std::string(text)});
    }
    output->SetRootObject(list);
  }
};

}  // namespace

CommandPtr NewFaultOperations() { return std::make_shared<LabFaultOperations>(); }

}  // namespace lab
