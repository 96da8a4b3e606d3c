#include "lab/model/Check.h"
#include "lab/model/Lab.h"
#include "tests/lab/Support.h"

namespace lab_test {
namespace {

using CheckTest = LabTest;

std::vector<std::string> Problems() { return lab::ReadLab(lab::Problems); }

TEST_F(CheckTest, SaysWhatIsWrongWithARow) {
  HostControl()->CreateCluster(kClusterA, true, false);
  HostControl()->AddDisks("mpx.dkhba0:C0:T1:L0", {"mpx.dkhba2:C0:T1:L0"});
  HostControl()->SetDefaultPolicy(Tovrin::Korel::KorelPolicyClass::Vdisk, "copies=2");
  HskCtl::Korel::KorelUtil::SetTracedLogOptions({{"normal_path", "/a"}});
  ASSERT_THAT(Problems(), testing::IsEmpty());
  const std::string whole = State();
  lab::Store::CloseForProcess();
  const std::string file = ReadFile(LabFile());
  const std::pair<std::string, std::string> cases[] = {
      {"UPDATE hosts SET resyncThrottle = 513", "host 'host1' has a value out of its range"},
      {"UPDATE hosts SET name = '../x'", "'../x': '../x' is not a host name"},
      {"UPDATE hosts SET name = 'a' || char(0) || 'b'", "is not a host name"},
      {"UPDATE hosts SET faultDomain = ''", "host 'host1': a fault domain name has 1 to 256"},
      {"UPDATE hosts SET nodeUuid = 'x'", "'host1': 'x' is not a UUID"},
      {"UPDATE hosts SET isKorelMax = 1", "host 'host1' is a Korel Max host with disk groups"},
      {"DELETE FROM memberships", "cluster '" + kClusterA + "' has no member"},
      {"DELETE FROM datastores", "cluster '" + kClusterA + "' has not one default datastore"},
      {"INSERT INTO clusters (uuid, isClient) VALUES ('" + kClusterB +
           "', 1); INSERT INTO memberships SELECT 9, host, 2, 0, 1, 1 FROM memberships",
       "host 'host1' is in several clusters and no witness"},
      {"UPDATE memberships SET isActive = 0, isPersisted = 0",
       "the membership of host 'host1' has a value out of its range"},
      {"UPDATE devices SET isCapacityFlash = 1 WHERE NOT isFlash",
       "is tagged capacityFlash and is not flash"},
      {"UPDATE devices SET isKorelDirect = 1", "is tagged korelDirect and claimed"},
      {"UPDATE claims SET cachingDevice = device",
       "caching device 'mpx.dkhba2:C0:T1:L0' cannot serve a disk group for caching"},
      {"UPDATE claims SET cachingDevice = NULL WHERE device = cachingDevice",
       "device 'mpx.dkhba2:C0:T1:L0' is in a disk group that is none"},
      {"UPDATE claims SET cachingDevice = NULL",
       "device 'mpx.dkhba2:C0:T1:L0' is in the storage pool and is not flash"},
      {"UPDATE claims SET usedGb = 5000 WHERE usedGb > 0", "has a value out of its range"},
      {"INSERT INTO mounts SELECT cluster, id, 'm' FROM datastores",
       "mounted datastore 'm' is one of the cluster itself"},
      {"INSERT INTO files VALUES (1, 'relative', 0, x'')", "'relative' is not an absolute path"},
      {"INSERT INTO files VALUES (1, '/large', 0, zeroblob(65537))",
       "file '/large' is larger than 64 KiB"},
      {"INSERT INTO files VALUES (7, '/etc/x', 0, x'')",
       "a row of files refers to one of hosts that is not there"},
      {"UPDATE policies SET value = 'copies=9'", "the policy pair 'copies=9' is not possible"},
      {"UPDATE traceOptions SET value = 'a'", "trace option normal_path must be an absolute path"},
      {"INSERT INTO faults VALUES ('Nothing', '', NULL)", "no host control operation is named"},
      {"DELETE FROM features WHERE name = 'client-mode'", "the features are not those of a lab"},
      {"INSERT INTO agents VALUES (1, 1, 'x', 0, 1, '10.0.0.1', 1, '', '', '')",
       "unicast agent '10.0.0.1': 'x' is not a UUID"},
      {"UPDATE history SET changes = x'5401' WHERE number > 1", "of the memory: "},
      {"UPDATE history SET number = 0x7fffffffffffffff WHERE number = 1",
       "entry of the memory '9223372036854775807' has a value out of its range"},
      {"DELETE FROM hosts; PRAGMA foreign_keys = ON; DELETE FROM hosts", "the lab has no host"},
  };
  for (const auto& [sql, problem] : cases) {
    SCOPED_TRACE(sql);
    WriteFile(LabFile(), file);
    Sql(sql);
    EXPECT_THAT(Problems(), testing::Contains(testing::HasSubstr(problem)));
    lab::Store::CloseForProcess();
  }
  WriteFile(LabFile(), file);
  EXPECT_EQ(State(), whole);
}

TEST_F(CheckTest, ListsAHundredProblemsAndCountsTheRest) {
  AddHostsUpTo(40);
  Sql("UPDATE devices SET isHealthy = 2 WHERE host <= 15");
  const auto problems = Problems();
  ASSERT_EQ(problems.size(), 101U);
  EXPECT_EQ(problems.back(), "and 50 problems more");
}

}  // namespace
}  // namespace lab_test
