#pragma once

#include <optional>
#include <string>

#include "platform/autocli/Declare.h"

namespace OstrelCli::KorelNamespace {

/// `mode` with its first letter in upper case, as the host spells evacuation modes; the rest stays
/// as it was typed.
std::string CapitalizeMode(std::string mode);

/// The option "evacuation-mode" of the commands that take disks out of use, in the host's spelling;
/// empty when it was not given. Nothing, and a refusal in `output`, when it is none of the modes.
std::optional<std::string> RemovalMode(const Corvex::Declare::InputPtr& input,
                                       const Corvex::Declare::OutputPtr& output);

/// The declaration of that option.
Corvex::Declare::Parameter RemovalModeParameter();

}  // namespace OstrelCli::KorelNamespace
