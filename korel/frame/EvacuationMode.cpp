#include "korel/frame/EvacuationMode.h"

#include <algorithm>
#include <array>

namespace OstrelCli::KorelNamespace {

std::string CapitalizeMode(std::string mode) {
  if (!mode.empty() && mode[0] >= 'a' && mode[0] <= 'z') {
    mode[0] = static_cast<char>(mode[0] - 'a' + 'A');
  }
  return mode;
}

std::optional<std::string> RemovalMode(const Corvex::Declare::InputPtr& input,
                                       const Corvex::Declare::OutputPtr& output) {
  constexpr std::array kModes = {"EnsureObjectAccessibility", "EvacuateAllData", "NoAction"};
  if (!input->HasParameter("evacuation-mode")) return "";
  const std::string given = input->GetParameter("evacuation-mode");
  const std::string mode = CapitalizeMode(given);
  if (std::find(kModes.begin(), kModes.end(), mode) != kModes.end()) return mode;
  Corvex::Declare::Refuse(
      output,
      "Expected a single value from the set [noAction, ensureObjectAccessibility, evacuateAllData] got '" +
          given + "'");
  return std::nullopt;
}

Corvex::Declare::Parameter RemovalModeParameter() {
  return {
      .name = "evacuation-mode",
      .shortName = "m",
      .description =
          "Action the Korel service must take before the host can enter maintenance mode (default noAction). Allowed values are:\n    ensureObjectAccessibility: Evacuate data from the disk to ensure object accessibility in the Korel cluster, before removing the disk.\n    evacuateAllData: Evacuate all data from the disk before removing it.\n    noAction: Do not move Korel data out of the disk before removing it."};
}

}  // namespace OstrelCli::KorelNamespace
