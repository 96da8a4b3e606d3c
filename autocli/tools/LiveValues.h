#pragma once

#include <string>
#include <vector>

#include "autocli/tools/Complete.h"

namespace autocli {

/// The values that commands of the tree know for an option, "PATH --OPTION", as things are now.
/// Those commands are executed that declare to know, by the hint
///   "completes:FIELD" or "completes:FIELD:DESCRIPTION FIELD"  =  "PATH --OPTION,PATH --OPTION..."
/// and need no option to be executed. One that fails knows nothing.
std::vector<Candidate> LiveValues(const Corvex::AutoCli::Namespace& root,
                                  const std::string& option);

}  // namespace autocli
