#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/autocli/CallSpec.h"

namespace autocli {

/// What a command line says. With any fault, `input` holds what could be read nevertheless.
struct ParsedOptions {
  std::shared_ptr<Corvex::CallSpec::Input> input;  ///< never null
  std::vector<std::string> faults;                 ///< one message each, in command-line order
};

/// Reads the words after the path of a command that declares `spec`. Plain words are refused.
ParsedOptions ParseOptions(const Corvex::CallSpec::InputSpec& spec,
                           const std::vector<std::string>& arguments);

}  // namespace autocli
