#include "tests/lab/ClusterSupport.h"

namespace lab_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

void Add(const std::string& uuid, const std::string& name, const std::string& cluster = "") {
  HostControl()->AddDatastore({uuid, name, cluster, false});
}

/// "name of cluster A", with a star for the default one, in the host's order.
std::vector<std::string> Known() {
  std::vector<std::string> known;
  for (const auto& datastore : HostControl()->GetDatastores()) {
    known.push_back(datastore->GetName() + (datastore->IsDefault() ? "*" : "") + " of " +
                    datastore->GetClusterUuid().substr(0, 1));
  }
  return known;
}

std::string DefaultUuid() { return HostControl()->GetDatastores().front()->GetUuid(); }

/// Cluster B has datastore 1.
class DatastoreTest : public ClustersTest {
 protected:
  DatastoreTest() {
    StandOn("host3");
    Add(kDatastore1, "export");
    StandOn("host1");
  }
};

TEST_F(DatastoreTest, MountBearsANameOfItsOwnAndItsExportersUuid) {
  StandOn("host3");
  const std::string exported = DefaultUuid();
  StandOn("host4");
  Add(exported, "far", kClusterB);
  At("host3")->SetDatastoreName("", "renamed");
  StandOn("host4");
  EXPECT_THAT(Known(), ElementsAre("far of b"));
  EXPECT_EQ(HostControl()->GetDatastoreName(exported), "far");
  HostControl()->RemoveDatastore(exported);
  EXPECT_THAT(Known(), IsEmpty());
  StandOn("host3");
  EXPECT_THAT(Known(), ElementsAre("renamed* of b", "export of b")) << "the exporter keeps it";
}

TEST_F(DatastoreTest, Refusals) {
  const auto host = HostControl();
  const std::string newUuid = "e0000000-0000-4000-8000-000000000001";
  Add(kDatastore2, "ds");
  const std::string defaultUuid = DefaultUuid();
  StandOn("host4");
  Add(kDatastore2, "far", kClusterA);
  const std::string mounted =
      "datastore 'ds' is mounted by cluster " + kClusterC + "; remove it there first";
  const std::string taken = " is taken by datastore ";
  const std::string own = " is the host's own; its datastores are not mounted as remote ones";
  ExpectRefusedAt(
      "host1",
      {{[&] { Add(newUuid, "ds"); }, "datastore name 'ds'" + taken + kDatastore2},
       {[&] { Add(kDatastore1, "new"); }, "datastore UUID " + kDatastore1 + " is taken"},
       {[&] { Add(kDatastore2, "new", kClusterB); },
        "cluster " + kClusterB + " exports no datastore " + kDatastore2},
       {[&] { Add(kDatastore2, "new", kClusterA); }, "cluster " + kClusterA + own},
       {[&] {
          host->AddDatastore({newUuid, "new", "", true});
        },
        "a default datastore is made with its cluster, never added"},
       {[&] { host->RemoveDatastore(defaultUuid); }, "the default datastore cannot be removed"},
       {[&] { host->RemoveDatastore(kDatastore1); }, "the host knows no datastore " + kDatastore1},
       {[&] { host->RemoveDatastore(kDatastore2); }, mounted},
       {[&] { host->SetDatastoreName("", "ds"); }, "datastore name 'ds'" + taken + kDatastore2}});
  ExpectRefusedAt(
      "host4",
      {{[&] { Add(kDatastore2, "again", kClusterA); },
        "datastore " + kDatastore2 + " is mounted already, as 'far'"},
       {[&] { Add(kDatastore1, "far", kClusterB); }, "datastore name 'far'" + taken + kDatastore2},
       {[&] { host->GetDatastoreName(""); }, "a client cluster has no default datastore"},
       {[&] { Add(newUuid, "new"); },
        "a client cluster has no datastores of its own; name the cluster that exports it"},
       {[&] { host->SetDatastoreName(kDatastore2, "new"); },
        "datastore 'far' belongs to cluster " + kClusterA + " and is renamed there"}});
}

}  // namespace
}  // namespace lab_test
