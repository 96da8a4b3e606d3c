#include "korel/frame/Tree.h"

#include "korel/cluster/Commands.h"
#include "korel/datastore/Commands.h"
#include "korel/storage/Commands.h"

namespace OstrelCli::KorelNamespace {

Node Tree() {
  return {"korel",
          "Ostrel Korel commands",
          {{"datastore",
            "Commands for Korel datastore configuration",
            {{"name",
              "Commands for configuring Korel datastore name.",
              {Verb<DatastoreNameGet>("get"), Verb<DatastoreNameSet>("set")}},
             Verb<DatastoreAdd>("add"),
             Verb<DatastoreRemove>("remove"),
             Verb<DatastoreList>("list"),
             Verb<DatastoreClear>("clear")}},
           {"storage",
            "Commands for Korel physical storage configuration",
            {Verb<StorageAdd>("add"), Verb<StorageRemove>("remove"), Verb<StorageList>("list")}},
           {"cluster",
            "Commands for Korel host cluster configuration",
            {Verb<ClusterJoin>("join"), Verb<ClusterNew>("new")}}}};
}

}  // namespace OstrelCli::KorelNamespace
