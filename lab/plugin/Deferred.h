#pragma once

#include "lab/commands/Commands.h"

namespace lab {

/// A command that at first has only its place in the tree and its description. Any other question
/// loads the library that has the command (NewCommand).
class Deferred final : public Corvex::AutoCli::Command {
 private:
  std::shared_ptr<Corvex::CallSpec::InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<Corvex::CallSpec::OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const std::shared_ptr<Corvex::CallSpec::Input>& input,
                       const std::shared_ptr<Corvex::CallSpec::Output>& output) override;

  Corvex::AutoCli::CommandSpec& Real();
  /// Shows results as the command itself suggests.
  void TakeHints();

  CommandPtr real_;  ///< null at first
};

}  // namespace lab
