#include "lab/plugin/Deferred.h"

namespace lab {

using Corvex::AutoCli::CommandSpec;
using Corvex::CallSpec::InputSpec;
using Corvex::CallSpec::OutputSpec;

CommandSpec& Deferred::Real() {
  if (real_) return *real_;
  // Below the plug-in's own namespace, which is a child of the root, which has no name.
  std::string path = GetName();
  for (auto space = GetParent(); space && space->GetParent() && space->GetParent()->GetParent();
       space = space->GetParent()) {
    path = space->GetName() + " " + path;
  }
  real_ = NewCommand(path);
  TakeHints();
  return *real_;
}

void Deferred::TakeHints() {
  SetDefaultOutputFormatter(real_->GetDefaultOutputFormatter());
  for (const auto& [key, value] : real_->GetDefaultOutputParameters()) {
    SetDefaultOutputParameter(key, value);
  }
}

std::shared_ptr<InputSpec> Deferred::GetInputSpecInternal() { return Real().GetInputSpec(); }

std::shared_ptr<OutputSpec> Deferred::GetOutputSpecInternal() { return Real().GetOutputSpec(); }

void Deferred::ExecuteInternal(const std::shared_ptr<Corvex::CallSpec::Input>& input,
                               const std::shared_ptr<Corvex::CallSpec::Output>& output) {
  Real().GetDispatcher()->Execute(input, output);
  TakeHints();
}

}  // namespace lab
