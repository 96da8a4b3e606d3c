#pragma once

#include <memory>
#include <string>

#include "platform/autocli/AutoCli.h"

namespace autocli {

/// What a command declares.
struct Specs {
  std::shared_ptr<Corvex::CallSpec::InputSpec> input;
  Corvex::MetaObj::MetaObjectPtr output;  ///< the prototype of the result
  std::string problem;  ///< why the command cannot be used; empty when both are there
};

/// Asks the command for its specifications; whatever it throws becomes the problem.
Specs SpecsOf(Corvex::AutoCli::CommandSpec& command);

/// How help writes the rest of the line that the parameter of that name takes: "NAME...".
std::string RestText(const std::string& parameter);

}  // namespace autocli
