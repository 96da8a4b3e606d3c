#pragma once

#include <memory>
#include <string>

#include "platform/autocli/AutoCli.h"

namespace autocli {

/// What a command declares.
struct Specs {
  std::shared_ptr<Corvex::CallSpec::InputSpec> input;
  Corvex::MetaObj::MetaObjectPtr output;  ///< the prototype of the result
  std::string problem;                    ///< why the command cannot be used; empty when it can
};

/// Asks the command for its specifications and checks them; whatever it throws becomes the problem.
/// A run asks once: a host may answer otherwise the next time.
Specs SpecsOf(Corvex::AutoCli::CommandSpec& command);

/// Says that of the command, which it names with its plug-in.
std::string Blame(const Corvex::AutoCli::CommandSpec& command, const std::string& problem);

/// Runs the command on a line that was read against its specifications. Throws std::logic_error
/// when it cannot be executed, leaves neither a result nor an error, or a result that is not of the
/// declared shape; passes on what the command throws.
void Execute(Corvex::AutoCli::CommandSpec& command, const Specs& specs,
             const std::shared_ptr<Corvex::CallSpec::Input>& input,
             const std::shared_ptr<Corvex::CallSpec::Output>& output);

/// How help writes the rest of the line that the parameter of that name takes: "NAME...".
std::string RestText(const std::string& parameter);

}  // namespace autocli
