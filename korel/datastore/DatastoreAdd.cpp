#include "korel/datastore/Commands.h"

namespace OstrelCli::KorelNamespace {

DatastoreAdd::DatastoreAdd() {
  SetDescription(
      "Add a new datastore to the Korel cluster. This operation may be used to add either a new local datastore or a remote datastore. Adding local datastore is only allowed if Korel is enabled on the host. In general, add should be done at cluster level. Across a Korel cluster Korel datastores should be in sync.");
}

std::shared_ptr<InputSpec> DatastoreAdd::GetInputSpecInternal() {
  return Inputs(
      {{.name = "uuid",
        .shortName = "u",
        .description = StrCat(
            "UUID of the new datastore to be added, ", kUuidForm, ". ",
            " If not specified, a new UUID will be generated. For remote Korel datastore, both datastore and server cluster UUID are required. The datastore UUID must match one of the datastores in the remote server cluster.")},
       {.name = "name",
        .shortName = "n",
        .required = true,
        .description =
            "User friendly name of the datastore to be added. It must be unique among all existing Korel datastores."},
       {.name = "cluster-uuid",
        .shortName = "c",
        .description =
            "Cluster UUID of the Korel cluster which exports the Korel datastore to mount. This should be specified only when adding a remote Korel datastore and datastore UUID must be specified together with this field."}});
}

void DatastoreAdd::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  std::string uuid = input->GetParameter("uuid");
  const std::string name = input->GetParameter("name");
  const std::string clusterUuid = input->GetParameter("cluster-uuid");
  Attempt(output, "Unable to add datastore: ", [&] {
    const HostControl host;
    if (uuid.empty()) {
      if (!clusterUuid.empty()) {
        return Refuse(output, "Datastore UUID is required when a cluster UUID is specified");
      }
      uuid = NewUuid();
      if (uuid.empty()) return Refuse(output, "Unable to generate a UUID");
    }
    host->AddDatastore({uuid, name, clusterUuid, false});
    Succeed(output);
  });
}

}  // namespace OstrelCli::KorelNamespace
