#include "lab/model/Picture.h"

#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

class LabPicture final : public LabCommand {
 public:
  LabPicture() { SetDefaultOutputFormatter("simple"); }

 private:
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override {
    return Answers(MetaList::New(MetaType::String));
  }

  void Run(const InputPtr&, const OutputPtr& output) override {
    auto lines = MetaList::New(MetaType::String);
    for (const std::string& line : ReadLab(Picture)) lines->Add(line);
    output->SetRootObject(lines);
  }
};

}  // namespace

CommandPtr NewPicture() { return std::make_shared<LabPicture>(); }

}  // namespace lab
