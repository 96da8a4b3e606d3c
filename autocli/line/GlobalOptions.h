#pragma once

#include "platform/autocli/CallSpec.h"

namespace autocli {

/// The options that every command line takes: --formatter, --fields, --no-header, --color, --help,
/// --describe, --version.
const Corvex::CallSpec::InputSpec& GlobalOptions();

}  // namespace autocli
