#include "korel/datastore/Commands.h"

namespace OstrelCli::KorelNamespace {

DatastoreClear::DatastoreClear() {
  SetDescription(
      "Remove all but the default datastore from the Korel cluster. This operation is only allowed if Korel is enabled on the host. In general, clear should be done at cluster level. Across a Korel cluster Korel datastores should be in sync.");
}

void DatastoreClear::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  Attempt(output, "Unable to clear datastore: ", [&] {
    const HostControl host;
    host->ClearDatastores();
    Succeed(output);
  });
}

}  // namespace OstrelCli::KorelNamespace
