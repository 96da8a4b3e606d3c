#include "korel/cluster/Commands.h"

namespace OstrelCli::KorelNamespace {

ClusterUnicastAgentList::ClusterUnicastAgentList() {
  SetDescription("List all unicast agents in the Korel cluster configuration.");
  Show(*this, *GetOutputStructure(), "table", "Unicast Agent");
}

std::shared_ptr<MetaStruct> ClusterUnicastAgentList::GetOutputStructure() {
  // "IsWitness" is the number of the agent's type: older scripts know the field by this name.
  return Structure("UnicastAgentList", {{"NodeUuid", MetaType::String},
                                        {"IsWitness", MetaType::Int},
                                        {"Supports Unicast", MetaType::Bool},
                                        {"IP Address", MetaType::String},
                                        {"Port", MetaType::Int},
                                        {"Iface Name", MetaType::String},
                                        {"Cert Thumbprint", MetaType::String},
                                        {"SubClusterUuid", MetaType::String}});
}

std::shared_ptr<OutputSpec> ClusterUnicastAgentList::GetOutputSpecInternal() {
  return Answers(ListOf(GetOutputStructure()));
}

void ClusterUnicastAgentList::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  Attempt(output, "Unable to list unicast agent: ", [&] {
    const HostControl host;
    std::vector<KorelInfo::KorelUnicastAddressInfo> agents;
    host->GetUnicastAgents(agents, true, "");
    const auto list = ListOf(GetOutputStructure());
    for (const auto& agent : agents) {
      const auto row = GetOutputStructure();
      row->SetField("NodeUuid", agent.nodeUuid);
      row->SetField("IsWitness", static_cast<int>(agent.isWitness));
      row->SetField("Supports Unicast", agent.supportsUnicast);
      row->SetField("IP Address", agent.address);
      row->SetField("Port", agent.port);
      row->SetField("Iface Name", agent.interfaceName);
      row->SetField("Cert Thumbprint", agent.certThumbprint);
      row->SetField("SubClusterUuid", agent.subClusterUuid);
      list->Add(row);
    }
    output->SetRootObject(list);
  });
}

}  // namespace OstrelCli::KorelNamespace
