#include "korel/network/Commands.h"
#include "korel/network/InterfaceRemoval.h"

namespace OstrelCli::KorelNamespace {

NetworkIpRemove::NetworkIpRemove() {
  SetDescription("Remove an IP interface from the Korel network configuration.");
}

std::shared_ptr<InputSpec> NetworkIpRemove::GetInputSpecInternal() { return RemovalInputs(); }

void NetworkIpRemove::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  RemoveInterface(input, output);
}

}  // namespace OstrelCli::KorelNamespace
