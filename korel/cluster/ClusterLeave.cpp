#include "korel/cluster/Commands.h"
#include "korel/cluster/NotifyDatastore.h"

namespace OstrelCli::KorelNamespace {
namespace {

std::string DatastoreNames(const HostControl& host) {
  std::vector<std::string> names;
  for (const auto& datastore : host->GetDatastores()) names.push_back(datastore->GetName());
  return JoinWithCommas(names);
}

/// Leaves the cluster of that UUID; every cluster of the host when the UUID is empty.
void Leave(const HostControl& host, const std::string& clusterUuid) {
  std::vector<std::string> uuids = {clusterUuid};
  if (clusterUuid.empty()) uuids = host->GetJoinedClusterUuids();
  for (const std::string& uuid : uuids) {
    host->LeaveCluster(KorelUtil::StringToKorelUuid(uuid), false);
  }
}

}  // namespace

ClusterLeave::ClusterLeave() {
  SetDescription("Leave the Korel cluster the host is currently joined to.");
}

std::shared_ptr<InputSpec> ClusterLeave::GetInputSpecInternal() {
  return Inputs(
      {{.name = "cluster-uuid",
        .shortName = "u",
        .description = StrCat(
            "Korel cluster UUID of the cluster instance which the host will leave, ", kUuidForm,
            " This host will leave all associated Korel clusters if the host is working as a shared witness host and this parameter is not specified.")}});
}

void ClusterLeave::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  Attempt(output, [&] {
    const HostControl host;
    if (!host->GetClusterInfo(true)->enabled && !host->IsClientModeEnabled()) {
      return Refuse(output, "The host is not in a Korel or client cluster.");
    }
    const std::string names = DatastoreNames(host);
    NotifyDatastore("PreUnmount", names);
    const bool left = Attempt(output, [&] { Leave(host, input->GetParameter("cluster-uuid")); });
    if (!left) return NotifyDatastore("FailedUnmount", names);
    Succeed(output);
  });
}

}  // namespace OstrelCli::KorelNamespace
