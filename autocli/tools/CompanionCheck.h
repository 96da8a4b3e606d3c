#pragma once

#include <string>
#include <vector>

#include "autocli/line/Vocabulary.h"

namespace autocli {

/// What is wrong with the companions of the loaded plug-ins, each with its file and its place: one
/// that cannot be read, a key that has no meaning, a command, option or field that is not there, a
/// listing command that needs options, an example that would be refused. Nothing is wrong with what
/// is said of a top-level namespace that is not there, which comes with another plug-in.
std::vector<std::string> CompanionProblems(const Vocabulary& vocabulary);

}  // namespace autocli
