#include "tests/support/RecordingHost.h"

namespace test {

TEST(Datastore, AddsLocalAndRemote) {
  Check(R"(
datastore add -n ds1 -> true <- UUID_CreateRandom | AddDatastore $random ds1 "" false
datastore add -n ds1 -u mine -> true <- AddDatastore mine ds1 "" false
! error: Unable to add datastore: no luck | none
datastore add -n ds1 -u theirs -c $A -> true <- AddDatastore theirs ds1 $A false
datastore add -n ds1 -c $A -> error: Datastore UUID is required when a cluster UUID is specified |
  none
[no random] datastore add -n ds1 -> error: Unable to generate a UUID | none <- UUID_CreateRandom
[no info] datastore add -n ds1 -c $A -> error: Unable to add datastore: Could not get KorelInfo.
  Plugin version mismatch? | none
)");
}

TEST(Datastore, RemovesClearsAndNames) {
  Check(R"(
datastore remove -u mine -> true <- RemoveDatastore mine
! error: Unable to remove datastore: no luck | none
datastore clear -> true <- ClearDatastores
! error: Unable to clear datastore: no luck | none
datastore name get -> DatastoreName{Name=name of ""} <- GetDatastoreName ""
! error: Unable to get Korel datastore name: no luck | none
datastore name get -u mine -> DatastoreName{Name=name of mine} <- GetDatastoreName mine
datastore name set -n new -> true <- IsClientModeEnabled | SetDatastoreName "" new
! error: Unable to set Korel datastore name: no luck | none
datastore name set -u mine -n new -> true <- IsClientModeEnabled | SetDatastoreName mine new
[client] datastore name set -u mine -n new
  -> error: Cannot rename server datastore from client node | none <- IsClientModeEnabled
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
[two, GetClusterUuid fails] datastore list -> error: Unable to add datastore: no luck | none
  <- GetDatastores | GetClusterUuid
)");
}

}  // namespace test
