#include "tests/support/RecordingHost.h"

namespace test {
namespace {

const std::string kUuid = "5291022a-ad03-df90-dd0f-b9f980cc005e";

TEST(Datastore, AddsLocalAndRemote) {
  const std::string made = "12345678-0000-0000-0000-00000000000a";
  Check({
      {"datastore add -n ds1", nullptr, "true",
       "UUID_CreateRandom | AddDatastore " + made + " ds1 \"\" false"},
      {"datastore add -n ds1 -u mine", nullptr, "true", "AddDatastore mine ds1 \"\" false"},
      {"datastore add -n ds1 -u theirs -c " + kUuid, nullptr, "true",
       "AddDatastore theirs ds1 " + kUuid + " false"},
      {"datastore add -n ds1 -c " + kUuid, nullptr,
       "error: Datastore UUID is required when a cluster UUID is specified | none", ""},
      {"datastore add -n ds1", [](RecordingHost& host) { host.randomUuid = ""; },
       "error: Unable to generate a UUID | none", "UUID_CreateRandom"},
      {"datastore add -n ds1 -u mine", Failing("AddDatastore"),
       "error: Unable to add datastore: no luck | none", "AddDatastore mine ds1 \"\" false"},
      {"datastore add -n ds1 -c " + kUuid, [](RecordingHost& host) { host.hasInfo = false; },
       "error: Unable to add datastore: Could not get KorelInfo. Plugin version mismatch? | none",
       ""},
  });
}

TEST(Datastore, RemovesClearsAndNames) {
  Check({
      {"datastore remove -u mine", nullptr, "true", "RemoveDatastore mine"},
      {"datastore remove -u mine", Failing("RemoveDatastore"),
       "error: Unable to remove datastore: no luck | none", "RemoveDatastore mine"},
      {"datastore clear", nullptr, "true", "ClearDatastores"},
      {"datastore clear", Failing("ClearDatastores"),
       "error: Unable to clear datastore: no luck | none", "ClearDatastores"},
      {"datastore name get", nullptr, "DatastoreName{Name=name of \"\"}", "GetDatastoreName \"\""},
      {"datastore name get -u mine", nullptr, "DatastoreName{Name=name of mine}",
       "GetDatastoreName mine"},
      {"datastore name get", Failing("GetDatastoreName"),
       "error: Unable to get Korel datastore name: no luck | none", "GetDatastoreName \"\""},
      {"datastore name set -n new", nullptr, "true",
       "IsClientModeEnabled | SetDatastoreName \"\" new"},
      {"datastore name set -u mine -n new", [](RecordingHost& host) { host.clientMode = true; },
       "error: Cannot rename server datastore from client node | none", "IsClientModeEnabled"},
      {"datastore name set -u mine -n new", Failing("SetDatastoreName"),
       "error: Unable to set Korel datastore name: no luck | none",
       "IsClientModeEnabled | SetDatastoreName mine new"},
  });
}

TEST(Datastore, ListsWithTheClusterAskedPerDatastore) {
  const auto two = [](RecordingHost& host) {
    host.clusterUuid = "own";
    host.datastores = {{"b", "default", "own", true}, {"a", "far", "other", false}};
  };
  Check({
      {"datastore list", nullptr, "[]", "GetDatastores"},
      {"datastore list", two,
       "[KorelDatastoreList{Datastore UUID=b, User Friendly Name=default, Default=true, "
       "Remote=false, Cluster UUID=own}, KorelDatastoreList{Datastore UUID=a, User Friendly "
       "Name=far, Default=false, Remote=true, Cluster UUID=other}]",
       "GetDatastores | GetClusterUuid | GetClusterUuid"},
      {"datastore list", Failing("GetClusterUuid", two),
       "error: Unable to add datastore: no luck | none", "GetDatastores | GetClusterUuid"},
  });
}

}  // namespace
}  // namespace test
