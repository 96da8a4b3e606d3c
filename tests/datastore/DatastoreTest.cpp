#include "tests/support/RecordingHost.h"

namespace test {

TEST(Datastore, AddsLocalAndRemote) {
  Check(R"(
datastore add -n ds1 -> true <- UUID_CreateRandom | AddDatastore $random ds1 "" false
datastore add -n ds1 -u mine -> true <- AddDatastore mine ds1 "" false
datastore add -n ds1 -u theirs -c $A -> true <- AddDatastore theirs ds1 $A false
[no random] datastore add -n ds1 -> error: Unable to generate a UUID | none <- UUID_CreateRandom
)");
}

TEST(Datastore, RemovesClearsAndNames) {
  Check(R"(
datastore remove -u mine -> true <- RemoveDatastore mine
datastore clear -> true <- ClearDatastores
datastore name get -> DatastoreName{Name=name of ""} <- GetDatastoreName ""
datastore name get -u mine -> DatastoreName{Name=name of mine} <- GetDatastoreName mine
datastore name set -n new -> true <- IsClientModeEnabled | SetDatastoreName "" new
datastore name set -u mine -n new -> true <- IsClientModeEnabled | SetDatastoreName mine new
[client] datastore name set -u mine -n new -> error: Cannot rename server datastore from client node | none <- IsClientModeEnabled
)");
}

TEST(Datastore, ListsWithTheClusterAskedPerDatastore) {
  const auto two = [](RecordingHost& host) {
    host.clusterUuid = "own";
    host.datastores = {{"b", "default", "own", true}, {"a", "far", "other", false}};
  };
  Check({{"two", two}}, R"(
datastore list -> [] <- GetDatastores
[two] datastore list -> [KorelDatastoreList{Datastore UUID=b, User Friendly Name=default,
  Default=true, Remote=false, Cluster UUID=own}, KorelDatastoreList{Datastore UUID=a, User Friendly
  Name=far, Default=false, Remote=true, Cluster UUID=other}] <- GetDatastores | GetClusterUuid |
  GetClusterUuid
)");
}

}  // namespace test
