#include "korel/network/Commands.h"

namespace OstrelCli::KorelNamespace {

NetworkIpSet::NetworkIpSet() {
  SetDescription("Reconfigure an IP interface in the Korel network configuration.");
}

std::shared_ptr<InputSpec> NetworkIpSet::GetInputSpecInternal() {
  return NetworkIpAdd::GetInputSpecCommon();
}

void NetworkIpSet::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  NetworkIpAdd::ExecuteCommon(input, output, true);
}

}  // namespace OstrelCli::KorelNamespace
