#include "lab/model/Check.h"
#include "tests/lab/Support.h"

namespace lab_test {
namespace {

using CheckTest = RowsTest;

std::vector<std::string> Problems() { return lab::ReadLab(lab::Problems); }

TEST_F(CheckTest, SaysWhatIsWrongWithARow) {
  ASSERT_EQ(Play("1 create A; 1 claim mpx.dkhba0:C0:T1:L0 mpx.dkhba2:C0:T1:L0; 1 add d1 ds; "
                 "1 policy vdisk copies=2; 1 interface hsk0 korel"),
            "");
  HskCtl::Korel::KorelUtil::SetTracedLogOptions({{"normal_path", "/a"}});
  ASSERT_THAT(Problems(), testing::IsEmpty());
  const auto expectProblem = [](const std::string& sql, const std::string& problem) {
    Sql(sql);
    EXPECT_THAT(Problems(), testing::Contains(testing::HasSubstr(problem)));
  };
  EachRow(R"(
UPDATE hosts SET resyncThrottle = 513 / UPDATE hosts SET resyncRate = 1000001 -> host 'host1' has a value
UPDATE hosts SET name = '../x'              -> '../x': '../x' is not a host name
UPDATE hosts SET name = 'a' || char(0) || 'b' -> is not a host name
UPDATE hosts SET faultDomain = ''           -> host 'host1': a fault domain name has 1 to 256
UPDATE hosts SET nodeUuid = 'x'             -> 'host1': 'x' is not a UUID
UPDATE hosts SET nodeUuid = upper(nodeUuid) -> is not in lower case
UPDATE hosts SET isKorelMax = 1             -> host 'host1' is a Korel Max host with disks in use
UPDATE hosts SET isKorelMax = 1; DELETE FROM memberships -> is a Korel Max host without a cluster
DELETE FROM memberships                     -> ' has no member
INSERT INTO hosts (id, name, nodeUuid) VALUES (9, 'x', '1'); UPDATE memberships SET nodeType = 1; INSERT INTO memberships SELECT 9, 9, cluster, 1, 1, 1 FROM memberships -> ' has more than one witness
UPDATE clusters SET rekeyMinutes = 29 / UPDATE clusters SET rekeyMinutes = 10081 -> ' has a value
UPDATE datastores SET isDefault = 0 / UPDATE datastores SET isDefault = 1 -> ' has not one default datastore
UPDATE datastores SET isDefault = 2 WHERE name = 'ds' -> datastore 'ds' has a value
INSERT INTO clusters (uuid, isClient) VALUES ('x', 1); INSERT INTO memberships SELECT 9, host, 2, 0, 1, 1 FROM memberships -> host 'host1' is in several clusters and no witness
UPDATE memberships SET isActive = 0, isPersisted = 0 / UPDATE memberships SET nodeType = 3 -> the membership of host 'host1' has a value
UPDATE devices SET isCapacityFlash = 1 WHERE NOT isFlash -> is tagged capacityFlash and is not flash
UPDATE devices SET isKorelDirect = 1        -> is tagged korelDirect and claimed
UPDATE devices SET sizeGb = 0 WHERE id = 9 / UPDATE claims SET usedGb = 5000 WHERE device > 1 / UPDATE claims SET formatVersion = 21 -> has a value out of its range
UPDATE devices SET occupant = 3 / UPDATE claims SET efficiency = 0 / UPDATE claims SET encryption = 2 / UPDATE claims SET wrongChecksum = 0 -> has a value out of its range
UPDATE devices SET occupant = 2             -> is claimed, and has partitions or is in use by
UPDATE claims SET efficiency = 2 WHERE device = cachingDevice / UPDATE claims SET encryption = 0 WHERE device > 1 -> 'mpx.dkhba2:C0:T1:L0' is not deduplicated, compressed or encrypted as
UPDATE claims SET efficiency = 1            -> 'mpx.dkhba2:C0:T1:L0' is deduplicated or compressed and is not flash
UPDATE claims SET wrongChecksum = 2         -> has encryption metadata and is not encrypted
UPDATE devices SET isFlash = 1              -> serves a disk group for capacity and is not for that
UPDATE claims SET cachingDevice = device    -> 'mpx.dkhba2:C0:T1:L0' cannot serve a disk group for caching
UPDATE claims SET cachingDevice = NULL WHERE device = cachingDevice -> is in a disk group that is none
UPDATE claims SET cachingDevice = NULL      -> is in the storage pool and is not flash
INSERT INTO claims SELECT id, 1, 20, '', 1, 0, NULL, NULL, NULL FROM devices WHERE id BETWEEN 3 AND 4 OR id > 5 -> disk group 'mpx.dkhba0:C0:T1:L0' has more than 6
INSERT INTO claims SELECT id, id, 20, '', 1, 0, NULL, NULL, NULL FROM devices WHERE id IN (2, 3, 4, 6) -> host 'host1' has more than 4 disk groups
INSERT INTO mounts SELECT cluster, id, 'm' FROM datastores -> 'm' is one of the cluster itself
INSERT INTO mounts SELECT cluster, id, 'ds' FROM datastores -> name 'ds' is there twice in a cluster
INSERT INTO clusters VALUES (9, 'x', 1, '', 0, 30, 0, 0); INSERT INTO mounts SELECT 9, id, name FROM datastores; INSERT INTO datastores SELECT 9, uuid, 9, 'y', 0 FROM datastores WHERE isDefault -> ' is there twice in a cluster
INSERT INTO agents SELECT 1, id, nodeUuid, 0, 1, '::1', 1, '', '', '00000000-0000-0000-0000-000000000000' FROM hosts -> unicast agent '::1' has the UUID of its own host
INSERT INTO agents SELECT 1, 1, uuid, 0, 1, 'ff02::1', 1, '', '', uuid FROM clusters -> 'ff02::1': no host has the address
UPDATE networkConfigs SET ttl = 0 / UPDATE networkConfigs SET carriesKorel = 0 -> the configuration of interface 'hsk0' has a value
INSERT INTO files VALUES (1, 'relative', 0, x'') -> 'relative' is not an absolute path
INSERT INTO files VALUES (1, '/large', 0, zeroblob(65537)) -> file '/large' is larger than 64 KiB
INSERT INTO files VALUES (7, '/etc/x', 0, x'') -> a row of files refers to one of hosts that is not
UPDATE policies SET value = 'copies=9'      -> the policy pair 'copies=9' is not possible
UPDATE policies SET class = 5               -> policy class '5' is none of a lab's
UPDATE traceOptions SET value = 'a'         -> trace option normal_path must be an absolute path
INSERT INTO faults (operation, message) VALUES ('Nothing', '') -> no host control operation is named
INSERT INTO faults (operation, message, count) VALUES ('AddDisks', '', 0) / INSERT INTO faults (operation) VALUES ('AddDisks') -> the injected failure of 'AddDisks' has a value
INSERT INTO faults (operation, message, host) VALUES ('AddDisks', '', 'host9') -> the injected failure of 'AddDisks' is of a host that is not there
DELETE FROM features WHERE name = 'client-mode' -> the features are not those of a lab
INSERT INTO agents VALUES (1, 1, 'x', 0, 1, '::1', 1, '', '', '') -> agent '::1': 'x' is not a UUID
UPDATE history SET changes = x'5401' WHERE number > 1 -> entry 2: the memory of the lab is damaged
UPDATE history SET number = 1 << 54 WHERE number = 3 -> of the memory has a value out of its range
DELETE FROM hosts; PRAGMA foreign_keys = ON; DELETE FROM hosts -> the lab has no host
)",
          expectProblem);
  Again();
  // What is just possible is no problem.
  Sql("UPDATE hosts SET resyncThrottle = 512, resyncRate = 1000000; "
      "UPDATE clusters SET rekeyMinutes = 30; UPDATE claims SET formatVersion = 1; "
      "UPDATE devices SET sizeGb = 1000000; INSERT INTO faults (operation, count, host, delayMs) VALUES ('AddDisks', 1, 'host1', 3600000); "
      "UPDATE networkConfigs SET ttl = 255, agentPort = 65535, masterPort = 1; "
      "INSERT INTO files VALUES (1, '/large', 0, zeroblob(65536))");
  EXPECT_THAT(Problems(), testing::IsEmpty());
}

TEST_F(CheckTest, ListsAHundredProblemsAndCountsTheRest) {
  AddHostsUpTo(40);
  Sql("UPDATE devices SET isHealthy = 2 WHERE host <= 15");
  const auto problems = Problems();
  ASSERT_EQ(problems.size(), 101U);
  EXPECT_EQ(problems.back(), "and 50 more problems");
}

}  // namespace
}  // namespace lab_test
