#include "korel/storage/Targets.h"

namespace OstrelCli::KorelNamespace {

int CountTargets(const Corvex::Declare::InputPtr& input) {
  return int{input->HasParameter("disk")} + int{input->HasParameter("ssd")} +
         int{input->HasParameter("uuid")};
}

}  // namespace OstrelCli::KorelNamespace
