#pragma once

#include <memory>

#include "lab/model/Hosts.h"
#include "platform/autocli/Declare.h"

namespace lab {

using namespace Corvex::Declare;  // NOLINT: the vocabulary of every command

/// A command of `autocli lab`: what it is called and does is its own, and so are its parameters and
/// its answer, if it has any. It acts on the lab itself: nothing that it does is logged as a host
/// control operation or made to fail on purpose.
class LabCommand : public Corvex::AutoCli::Command {
 protected:
  /// No parameters.
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  /// That it was done.
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;

 private:
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) final;

  /// Does the command's work. A KorelCtlException becomes its error message, without a result.
  virtual void Run(const InputPtr& input, const OutputPtr& output) = 0;
};

/// The parameter "name" of commands that act on one host of the lab.
Parameter HostName();
/// The host that it names; without it the one that commands act on. Throws KorelCtlException.
Host ChosenHost(Store& store, const InputPtr& input);

/// The parameter "path" of commands on one file of the host.
Parameter HostFilePath();

}  // namespace lab
