#pragma once

#include "lab/commands/Commands.h"

namespace lab {

/// A command of which only the place in the tree and the description are there at first. Whatever
/// else is asked of it loads the library that has it (NewCommand), which no other line needs.
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
