#include "korel/datastore/Commands.h"
#include "korel/datastore/DatastoreName.h"

namespace OstrelCli::KorelNamespace {

DatastoreNameSet::DatastoreNameSet() {
  SetDescription(
      "Configure Korel datastore name. In general, rename should always be done at cluster level. Across a Korel cluster Korel datastore name should be in sync.");
}

std::shared_ptr<InputSpec> DatastoreNameSet::GetInputSpecInternal() {
  return Inputs({{.name = "uuid", .shortName = "u", .description = kDatastoreToName},
                 {.name = "newname",
                  .shortName = "n",
                  .required = true,
                  .description = "New name of the datastore."}});
}

void DatastoreNameSet::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  const std::string uuid = input->GetParameter("uuid");
  const std::string newName = input->GetParameter("newname");
  Attempt(output, "Unable to set Korel datastore name: ", [&] {
    const HostControl host;
    if (host->IsClientModeEnabled()) {
      return Refuse(output, "Cannot rename server datastore from client node");
    }
    host->SetDatastoreName(uuid, newName);
    Succeed(output);
  });
}

}  // namespace OstrelCli::KorelNamespace
