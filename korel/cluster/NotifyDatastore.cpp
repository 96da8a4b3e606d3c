#include "korel/cluster/NotifyDatastore.h"

#include "platform/autocli/AutoCli.h"

namespace OstrelCli::KorelNamespace {

void NotifyDatastore(const std::string& eventType, const std::string& datastoreNames) {
  std::string output;
  Corvex::AutoCli::AutoCli_ShellCmd(
      "/usr/lib/ostrel/hostd/bin/notifyDatastore -t " + eventType + " -d " + datastoreNames, output,
      "");
}

}  // namespace OstrelCli::KorelNamespace
