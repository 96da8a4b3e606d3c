#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/autocli/AutoCli.h"

namespace autocli {

/// What commands of the tree declare wrongly, by the file name of the plug-in that brought them: a
/// message each that names the command. That is: specifications that cannot be used, a formatter
/// that does not exist, hints that name no record or field of the result.
std::map<std::string, std::vector<std::string>> DeclarationProblems(
    const Corvex::AutoCli::Namespace& root);

}  // namespace autocli
