#include "korel/network/Commands.h"
#include "korel/network/InterfaceRemoval.h"

namespace OstrelCli::KorelNamespace {

NetworkRemove::NetworkRemove() {
  SetDescription("Remove an interface from the Korel network configuration.");
}

std::shared_ptr<InputSpec> NetworkRemove::GetInputSpecInternal() { return RemovalInputs(); }

void NetworkRemove::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  RemoveInterface(input, output);
}

}  // namespace OstrelCli::KorelNamespace
