#include "korel/datastore/Commands.h"

namespace OstrelCli::KorelNamespace {

DatastoreRemove::DatastoreRemove() {
  SetDescription(
      "Remove a datastore from the Korel cluster. This operation is only allowed if Korel is enabled on the host. In general, remove should be done at cluster level. Across a Korel cluster Korel datastores should be in sync.");
}

std::shared_ptr<InputSpec> DatastoreRemove::GetInputSpecInternal() {
  return Inputs({{.name = "uuid",
                  .shortName = "u",
                  .required = true,
                  .description = StrCat("UUID of the datastore to be removed, ", kUuidForm)}});
}

void DatastoreRemove::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  const std::string uuid = input->GetParameter("uuid");
  Attempt(output, "Unable to remove datastore: ", [&] {
    const HostControl host;
    host->RemoveDatastore(uuid);
    Succeed(output);
  });
}

}  // namespace OstrelCli::KorelNamespace
