#include "tests/lab/Support.h"

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

/// host1 and host2 are in cluster A, host3 in B with datastore 1, host4 in client cluster C, host5
/// in none.
class DatastoreTest : public LabTest {
 protected:
  DatastoreTest() {
    AddHostsUpTo(5);
    const auto uuid = HskCtl::Korel::KorelUtil::StringToKorelUuid(kClusterA);
    StandOn("host1");
    HostControl()->CreateCluster(kClusterA, true, false);
    StandOn("host2");
    HostControl()->JoinCluster(uuid, Tovrin::Korel::KorelNodeType::Normal, "", false, 0, 0);
    StandOn("host3");
    HostControl()->CreateCluster(kClusterB, true, false);
    Add(kDatastore1, "export");
    StandOn("host4");
    HostControl()->JoinClientCluster(kClusterC, false);
    StandOn("host1");
  }
};

TEST_F(DatastoreTest, AllMembersKnowTheDefaultFirstAndTheOthersByName) {
  Add(kDatastore2, "b2");
  Add("D0000000-0000-4000-8000-00000000000A", "a");
  Add(kDatastore1, "b1", kClusterB);
  StandOn("host2");
  EXPECT_THAT(Known(), ElementsAre("default* of a", "a of a", "b1 of b", "b2 of a"));
  EXPECT_EQ(HostControl()->GetDatastores()[1]->GetUuid(), "d0000000-0000-4000-8000-00000000000a");
  StandOn("host5");
  EXPECT_THAT(Known(), IsEmpty());
}

TEST_F(DatastoreTest, MountBearsANameOfItsOwnAndItsExportersUuid) {
  StandOn("host3");
  const std::string exported = DefaultUuid();
  StandOn("host4");
  Add(exported, "far", kClusterB);
  EXPECT_THAT(Known(), ElementsAre("far of b"));
  EXPECT_EQ(HostControl()->GetDatastoreName(exported), "far");
  StandOn("host3");
  HostControl()->SetDatastoreName("", "renamed");
  EXPECT_THAT(Known(), ElementsAre("renamed* of b", "export of b"));
  StandOn("host4");
  EXPECT_THAT(Known(), ElementsAre("far of b"));
  HostControl()->RemoveDatastore(exported);
  EXPECT_THAT(Known(), IsEmpty());
  StandOn("host3");
  EXPECT_EQ(Known().size(), 2U) << "the exporter keeps it";
}

TEST_F(DatastoreTest, NamesAreGivenAndAskedByUuidOrForTheDefault) {
  Add(kDatastore2, "ds");
  HostControl()->SetDatastoreName("D0000000-0000-4000-8000-000000000002", "ds2");
  HostControl()->SetDatastoreName("", "main");
  HostControl()->SetDatastoreName("", "main");
  EXPECT_EQ(HostControl()->GetDatastoreName(kDatastore2), "ds2");
  EXPECT_EQ(HostControl()->GetDatastoreName(""), "main");
  EXPECT_THAT(Known(), ElementsAre("main* of a", "ds2 of a"));
}

TEST_F(DatastoreTest, ClearKeepsTheDefaultUnderAnyName) {
  HostControl()->SetDatastoreName("", "main");
  Add(kDatastore2, "ds");
  Add(kDatastore1, "far", kClusterB);
  HostControl()->ClearDatastores();
  EXPECT_THAT(Known(), ElementsAre("main* of a"));
}

TEST_F(DatastoreTest, Refusals) {
  Add(kDatastore2, "ds");
  const std::string defaultUuid = DefaultUuid();
  StandOn("host4");
  Add(kDatastore2, "far", kClusterA);
  const std::string newUuid = "e0000000-0000-4000-8000-000000000001";
  const std::string disabled = "Korel is not enabled on this host: it is in no cluster";
  const std::string mounted =
      "datastore 'ds' is mounted by cluster " + kClusterC + "; remove it there first";
  ExpectRefusals({
      {__LINE__, "host1", [&] { Add("x", "new"); }, NotUuid("x")},
      {__LINE__, "host1", [&] { Add(kZeros, "new"); },
       "the UUID of all zeros stands for none and cannot be used"},
      {__LINE__, "host1", [&] { Add(newUuid, "new", "x"); }, NotUuid("x")},
      {__LINE__, "host1", [&] { Add(newUuid, "ds"); },
       "datastore name 'ds' is taken by datastore " + kDatastore2},
      {__LINE__, "host1", [&] { Add(kDatastore1, "new"); },
       "datastore UUID " + kDatastore1 + " is taken"},
      {__LINE__, "host1", [&] { Add(kDatastore1, "default", kClusterB); },
       "datastore name 'default' is taken by datastore " + defaultUuid},
      {__LINE__, "host1", [&] { Add(newUuid, "new", kClusterB); },
       "cluster " + kClusterB + " exports no datastore " + newUuid},
      {__LINE__, "host1", [&] { Add(kDatastore2, "new", kClusterB); },
       "cluster " + kClusterB + " exports no datastore " + kDatastore2},
      {__LINE__, "host1", [&] { Add(kDatastore2, "new", newUuid); },
       "there is no cluster " + newUuid},
      {__LINE__, "host1", [&] { Add(kDatastore2, "new", kClusterA); },
       "cluster " + kClusterA +
           " is the host's own; its datastores are not mounted as remote ones"},
      {__LINE__, "host1",
       [&] {
         HostControl()->AddDatastore({newUuid, "new", "", true});
       },
       "a default datastore is made with its cluster, never added"},
      {__LINE__, "host1", [&] { HostControl()->RemoveDatastore(defaultUuid); },
       "the default datastore cannot be removed"},
      {__LINE__, "host1", [&] { HostControl()->RemoveDatastore(""); }, NotUuid("")},
      {__LINE__, "host1", [&] { HostControl()->RemoveDatastore(kDatastore1); },
       "the host knows no datastore " + kDatastore1},
      {__LINE__, "host1", [&] { HostControl()->RemoveDatastore(kDatastore2); }, mounted},
      {__LINE__, "host1", [&] { HostControl()->ClearDatastores(); }, mounted},
      {__LINE__, "host1", [&] { HostControl()->SetDatastoreName(kDatastore2, "default"); },
       "datastore name 'default' is taken by datastore " + defaultUuid},
      {__LINE__, "host1", [&] { HostControl()->GetDatastoreName("x"); }, NotUuid("x")},
      {__LINE__, "host4", [&] { Add(kDatastore2, "again", kClusterA); },
       "datastore " + kDatastore2 + " is mounted already, as 'far'"},
      {__LINE__, "host4", [&] { Add(kDatastore1, "far", kClusterB); },
       "datastore name 'far' is taken by datastore " + kDatastore2},
      {__LINE__, "host4", [&] { Add(newUuid, "new"); },
       "a client cluster has no datastores of its own; name the cluster that exports it"},
      {__LINE__, "host4", [&] { HostControl()->SetDatastoreName(kDatastore2, "new"); },
       "datastore 'far' belongs to cluster " + kClusterA + " and is renamed there"},
      {__LINE__, "host4", [&] { HostControl()->GetDatastoreName(""); },
       "a client cluster has no default datastore"},
      {__LINE__, "host5", [&] { Add(newUuid, "new"); }, disabled},
      {__LINE__, "host5", [&] { Add(kDatastore1, "new", kClusterB); }, disabled},
      {__LINE__, "host5", [&] { HostControl()->RemoveDatastore(kDatastore2); }, disabled},
      {__LINE__, "host5", [&] { HostControl()->ClearDatastores(); }, disabled},
      {__LINE__, "host5", [&] { HostControl()->GetDatastoreName(""); }, disabled},
  });
}

TEST_F(DatastoreTest, ClearThatFailsHalfwayKeepsAll) {
  Add(kDatastore2, "z-mounted");
  Add("e0000000-0000-4000-8000-000000000001", "a-first");
  StandOn("host4");
  Add(kDatastore2, "far", kClusterA);
  StandOn("host1");
  ExpectRefused(
      [] { HostControl()->ClearDatastores(); },
      "datastore 'z-mounted' is mounted by cluster " + kClusterC + "; remove it there first");
}

}  // namespace
}  // namespace lab_test
