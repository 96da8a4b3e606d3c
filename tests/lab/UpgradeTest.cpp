#include <filesystem>

#include "lab/model/Check.h"
#include "lab/model/HostFiles.h"
#include "lab/model/TraceDaemon.h"
#include "lab/store/Changeset.h"
#include "lab/store/LabFile.h"
#include "lab/store/Memory.h"
#include "lab/store/OldSchema.h"
#include "lab/store/Query.h"
#include "lab/store/Schema.h"
#include "tests/lab/Support.h"

namespace lab_test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

class UpgradeTest : public LabTest {
 protected:
  /// Makes a lab of that older version with two hosts, the second of an impossible name.
  static void MakeOld(int version, const std::string& rows = "") {
    Sql(lab::OldSchemaScript(version) + "PRAGMA user_version = " + std::to_string(version) +
        "; PRAGMA application_id = " + std::to_string(lab::kApplicationId) +
        "; INSERT INTO hosts (id, name, nodeUuid) VALUES"
        " (1, 'host1', '11111111-0000-4000-8000-000000000001'),"
        " (2, '../victim', '11111111-0000-4000-8000-000000000002');" +
        rows);
  }
  void WriteOld(const std::string& path, const std::string& content) const {
    const fs::path file = LabFile() + ".root/" + path;
    fs::create_directories(file.parent_path());
    WriteFile(file, content);
  }
  /// The files of the first host: paths and contents.
  static std::vector<std::string> Files() {
    std::vector<std::string> files;
    for (const auto& [path, content, isReadOnly] : Own(lab::FilesOf)) {
      files.push_back(path + "=" + content.substr(0, 20) + (isReadOnly ? " (fixed)" : ""));
    }
    return files;
  }
  static int DaemonStatus() { return Own(lab::RunTraceScript, "status"); }
};

TEST_F(UpgradeTest, RowsOfEveryOldVersionAreKept) {
  for (int version = 1; version <= 4; ++version) {
    SCOPED_TRACE(version);
    lab::Store::CloseForProcess();
    fs::remove(LabFile());
    const std::string since =
        "15, '2025-01-01T00:00:00Z', 0" + std::string(version < 3 ? "" : ", 100");
    MakeOld(version, R"(
INSERT INTO devices (id, host, name, uuid, isFlash, isCapacityFlash, sizeGb, vendor, model) VALUES
  (1, 1, 's', '22222222-0000-4000-8000-000000000001', 0, 0, 400, '', ''),
  (2, 1, 'c', '22222222-0000-4000-8000-000000000002', 1, 0, 100, '', '');
INSERT INTO claims VALUES (2, 2, )" +
                         since + "), (1, 2, " + since + ");");
    EXPECT_EQ(Groups(), "c-(s:100-) pool()");
    EXPECT_THAT(State(), testing::HasSubstr("|1|2|15|2025-01-01T00:00:00Z|0|100|||\n"));
    // Without a folder a host is as a fresh one; version 4 has no folder, and no daemon's file
    // here.
    EXPECT_EQ(DaemonStatus(), 0);
    EXPECT_EQ(Files().size(), version < 4 ? 1U : 0U);
  }
}

TEST_F(UpgradeTest, TheMemoryIsKeptAndFitsTheNewTables) {
  // A fault is added and strikes, a device gets into the pool and out of it, a host gets its fault
  // domain, and one is damaged.
  MakeOld(4, R"(
UPDATE hosts SET faultDomain = 'east' WHERE id = 1;
INSERT INTO faults VALUES ('AddDisks', 'x', 1);
INSERT INTO devices (id, host, name, uuid, isFlash, isCapacityFlash, sizeGb, vendor, model)
  VALUES (4, 1, 'f', '22222222-0000-4000-8000-000000000001', 1, 1, 400, '', '');
WITH entries (number, changes) AS (VALUES
  (1, x'54030100006661756C747300120003084164644469736B73030178010000000000000002'),
  (2, x'54030100006661756C747300170003084164644469736B73000100000000000000020000010000000000000001'),
  (3, x'5406010000000000636C61696D73001200010000000000000004050100000000000000140314323032362D31312D32325430383A35333A33355A010000000000000001010000000000000000'),
  (4, x'5406010000000000636C61696D73000900010000000000000004050100000000000000140314323032362D31312D32325430383A35333A33355A010000000000000001010000000000000000'),
  (5, x'540B0100000000000000000000686F7374730017000100000000000000010000050000000000000000000003046561737400000000000000'),
  (6, x'5401'))
INSERT INTO history SELECT number, 1, 7, 'host1', '', '', 4, length(changes),
  sum(length(changes)) OVER (ORDER BY number), changes FROM entries;)");
  EXPECT_EQ(Failure([] { HostControl()->AddDisks("a", {}); }), "x");
  EXPECT_NE(Failure([] { HostControl()->AddDisks("a", {}); }), "x") << "one call was left";
  lab::ChangeLab([](lab::Store& store) {
    EXPECT_TRUE(lab::Texts(store,
                           "SELECT number FROM history h WHERE size <> length(changes) OR total <> "
                           "(SELECT sum(size) FROM history WHERE number <= h.number)")
                    .empty());
    const auto entries = lab::EntriesAfter(store, 0);
    ASSERT_EQ(entries.size(), 7U) << "and the one that brought the lab up to date";
    EXPECT_EQ(entries[1].changes->size(), 2U) << "one that is damaged stays as it is";
    const auto takeBack = [&](std::size_t i) {
      EXPECT_EQ(entries[i].version, lab::kSchemaVersion);
      return lab::Apply(store, lab::Inverted(store, *entries[i].changes));
    };
    EXPECT_TRUE(takeBack(2));
    EXPECT_EQ(lab::AllHosts(store).front().faultDomain, "host1");
    EXPECT_TRUE(takeBack(3));
    EXPECT_THAT(lab::Texts(store, "SELECT device || claimedAt FROM claims"),
                ElementsAre("42026-11-22T08:53:35Z"));
    EXPECT_TRUE(takeBack(4));
    EXPECT_TRUE(takeBack(5));
    EXPECT_THAT(lab::Texts(store, "SELECT operation || count FROM faults"),
                ElementsAre("AddDisks2"));
    EXPECT_TRUE(takeBack(6));
    EXPECT_FALSE(lab::Exists(store, "SELECT 1 FROM claims UNION SELECT 1 FROM faults"));
  });
}

TEST_F(UpgradeTest, WhatIsImpossibleNowGoes) {
  MakeOld(4, R"(
UPDATE hosts SET name = 'host2' WHERE id = 2;
UPDATE hosts SET faultDomain = 'a' || char(0x202e) WHERE id = 1;
INSERT INTO clusters (id, uuid, isClient) VALUES (5, 'aaaaaaaa-0000-4000-8000-000000000001', 0);
INSERT INTO datastores VALUES (3, 'd0000000-0000-4000-8000-000000000001', 5, 'ds', 1);
INSERT INTO memberships VALUES (1, 2, 5, 1, 1, 1), (2, 1, 5, 1, 1, 1);
INSERT INTO agents SELECT column1, column2, nodeUuid, 0, 1, '10.0.0.2', 1, '', '', uuid
  FROM (VALUES (1, 2, 2), (2, 2, 1), (3, 1, 2)) JOIN hosts ON hosts.id = column3 JOIN clusters;
INSERT INTO agents VALUES (4, 2, '11111111-0000-4000-8000-000000000003', 0, 1, '::', 1, '', '', 'x');
INSERT INTO features SELECT value, 1 FROM json_each('["archival-protection", "client-mode",
  "korel2-config", "metadata-node", "rebuild-trim"]');
INSERT INTO history VALUES (7, 7, 1, 'host1', 'lab host add', '', 4, 12, 12, NULL);)");
  testing::internal::CaptureStderr();
  EXPECT_THAT(lab::ReadLab(lab::Problems), testing::IsEmpty());
  const std::string note = "note: the lab is brought up to date without ";
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            note + "the further witness 'host1' of cluster " + kClusterA + "\n" + note +
                "the name of the fault domain of host 'host1'\n" + note +
                "the agent '10.0.0.2' of host 'host2'\n" + note +
                "the agent '::' of host 'host2'\n");
  EXPECT_THAT(State(), testing::HasSubstr("3|" + kDatastore1 + "|5|ds|1\n"));
  EXPECT_THAT(State(), testing::HasSubstr("2|2|11111111-0000-4000-8000-000000000001|0|1|10.0.0.2"));
  const auto entries = lab::ReadLab([](lab::Store& store) { return lab::EntriesAfter(store, 0); });
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(entries[1].line, "lab host add");
  EXPECT_EQ(entries[0].operation, "brings the lab up to date from version 4");
}

TEST_F(UpgradeTest, HostFilesAreReadInOnceAndNothingIsFollowed) {
  MakeOld(3);
  WriteOld("host1/etc/ostrel/korel/koreltraced.conf", "A=1\n");
  WriteOld("host1/etc/ostrel/korel/koreltraced.conf.new", "unfinished");
  WriteOld("host1/etc/fixed", "B\n");
  fs::permissions(LabFile() + ".root/host1/etc/fixed", fs::perms::owner_read);
  WriteOld("host1/etc/init.d/koreltraced", "#!/bin/sh\n# changed\n");
  WriteOld("host1/large", std::string(lab::kMostFileBytes + 1, 'x'));
  WriteOld("host1/var/log/koreltraced.log", std::string(5000, 'x') + "\nnewest\n");
  WriteFile(Path("secret"), "secret");
  fs::create_symlink(Path("secret"), LabFile() + ".root/host1/etc/link");
  fs::create_directory_symlink(Path(""), LabFile() + ".root/host1/folder");
  WriteOld("../victim/etc/own", "not a lab's");
  testing::internal::CaptureStderr();
  EXPECT_THAT(Files(),
              ElementsAre("/etc/fixed=B\n (fixed)", "/etc/ostrel/korel/koreltraced.conf=A=1\n",
                          "/var/log/koreltraced.log=newest\n"));
  const std::string root = "note: the lab is brought up to date without " + LabFile() + ".root";
  const std::string notes = testing::internal::GetCapturedStderr();
  EXPECT_THAT(notes, testing::HasSubstr(root + "/host1/etc/init.d/koreltraced\n"));
  EXPECT_THAT(notes, testing::HasSubstr(root + "/host1/large\n"));
  EXPECT_EQ(std::count(notes.begin(), notes.end(), '\n'), 2);
  EXPECT_EQ(DaemonStatus(), 3) << "there was no mark that it runs";
  EXPECT_TRUE(fs::exists(LabFile() + ".root/host1/large")) << "the folder is left alone";
  WriteOld("host1/etc/late", "too late");
  lab::Store::CloseForProcess();
  EXPECT_EQ(Files().size(), 3U);
  EXPECT_THAT(State(), testing::Not(testing::HasSubstr("not a lab's")));
}

TEST_F(UpgradeTest, AThousandFilesOfAHostAreReadInAndMoreAreNamed) {
  MakeOld(3);
  for (int i = 0; i < 1001; ++i) WriteOld("host1/" + std::to_string(i), "");
  testing::internal::CaptureStderr();
  EXPECT_EQ(Files().size(), 1000U);
  const std::string notes = testing::internal::GetCapturedStderr();
  EXPECT_EQ(std::count(notes.begin(), notes.end(), '\n'), 1) << notes;
}

TEST_F(UpgradeTest, FilesOfReplacedHostsAreNotTaken) {
  MakeOld(3, "PRAGMA user_version = -3");
  WriteOld("host1/etc/old", "of the host before");
  EXPECT_EQ(Files().size(), 1U);
}

}  // namespace
}  // namespace lab_test
