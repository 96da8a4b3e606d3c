#include <filesystem>

#include "lab/memory/Words.h"
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
    const std::string claim =
        version < 3 ? "'2025-01-01T00:00:00Z', 0)" : "'2025-01-01T00:00:00Z', 0, 100)";
    MakeOld(version,
            "INSERT INTO devices (id, host, name, uuid, isFlash, isCapacityFlash, sizeGb, vendor, "
            "model) VALUES (1, 1, 's', '22222222-0000-4000-8000-000000000001', 0, 0, 400, '', ''),"
            " (2, 1, 'c', '22222222-0000-4000-8000-000000000002', 1, 0, 100, '', '');"
            "INSERT INTO claims VALUES (2, 2, 15, " +
                claim + ", (1, 2, 15, " + claim + ";");
    EXPECT_EQ(Groups(), "c-(s:100-) pool()");
    EXPECT_THAT(State(), testing::HasSubstr("|1|2|15|2025-01-01T00:00:00Z|0|100|||\n"));
    // Without a folder a host is as a fresh one; version 4 has no folder, and no daemon's file
    // here.
    EXPECT_EQ(DaemonStatus(), 0);
    EXPECT_EQ(Files().size(), version < 4 ? 1U : 0U);
  }
}

TEST_F(UpgradeTest, TheMemoryTellsWhatItToldBefore) {
  // A fault for two calls was added, and one call failed.
  const std::string table = "x'5403010000' || 'faults' || x'00";
  const std::string two = "010000000000000002'";
  MakeOld(4,
          "INSERT INTO faults VALUES ('AddDisks', 'x', 1); INSERT INTO history VALUES"
          " (1, 1, 1, 'host1', '', '', 4, 9, 9, CAST(" +
              table + "12000308' || 'AddDisks' || x'030178" + two +
              " AS BLOB)),"
              " (2, 2, 2, 'host1', '', '', 4, 9, 18, CAST(" +
              table + "17000308' || 'AddDisks' || x'00" + two + " || x'0000010000000000000001'" +
              " AS BLOB));"
              "INSERT INTO features VALUES ('client-mode', 1), ('rebuild-trim', 1),"
              " ('metadata-node', 1), ('korel2-config', 1), ('archival-protection', 1);"
              "UPDATE hosts SET name = 'host2' WHERE id = 2");
  std::vector<std::string> told;
  lab::ReadLab([&](lab::Store& store) {
    for (const lab::Entry& entry : lab::EntriesAfter(store, 0)) {
      if (!entry.changes) continue;
      for (const auto& change : lab::InWords(store, *entry.changes)) {
        told.push_back(change.kind + std::string(" ") + change.field.value_or("-") + " " +
                       change.before.value_or("-") + " > " + change.after.value_or("-"));
      }
    }
  });
  EXPECT_THAT(told, testing::ElementsAre("changed calls that are struck 2 > 1",
                                         "added message - > x", "added calls that are struck - > 2",
                                         "added calls that are spared first - > 0",
                                         "added delay in ms - > 0"));
  EXPECT_THAT(lab::ReadLab(lab::Problems), testing::IsEmpty());
  EXPECT_EQ(Failure([] { HostControl()->AddDisks("a", {}); }), "x");
  EXPECT_NE(Failure([] { HostControl()->AddDisks("a", {}); }), "x") << "one call was left";
}

TEST_F(UpgradeTest, TheMemoryIsKeptAndFitsTheNewTables) {
  const std::string claim =
      "0000000000000004050100000000000000140314323032362D31312D32325430383A35333A33355A"
      "010000000000000001010000000000000000";
  const auto entry = [](int number, const std::string& changes, int total) {
    const std::string text = std::to_string(number);
    return "INSERT INTO history VALUES (" + text + ", " + text + ", 7, 'host1', '', '', 4, " +
           std::to_string(changes.size() / 2) + ", " + std::to_string(total) + ", x'" + changes +
           "');";
  };
  // The device is put into the pool and taken out, the host gets its fault domain.
  MakeOld(4,
          "UPDATE hosts SET faultDomain = 'east' WHERE id = 1;"
          "INSERT INTO devices (id, host, name, uuid, isFlash, isCapacityFlash, sizeGb, vendor, "
          "model) VALUES (4, 1, 'f', '22222222-0000-4000-8000-000000000001', 1, 1, 400, '', '');" +
              entry(1, "5406010000000000636C61696D7300120001" + claim, 76) +
              entry(2, "5406010000000000636C61696D7300090001" + claim, 152) +
              entry(3,
                    "540B0100000000000000000000686F737473001700010000000000000001000005000000000000"
                    "0000000003046561737400000000000000",
                    208) +
              entry(4, "5401", 210));
  lab::ChangeLab([](lab::Store& store) {
    EXPECT_TRUE(lab::Texts(store,
                           "SELECT number FROM history h WHERE size <> length(changes) OR total <> "
                           "(SELECT sum(size) FROM history WHERE number <= h.number)")
                    .empty());
    const auto entries = lab::EntriesAfter(store, 0);
    ASSERT_EQ(entries.size(), 5U) << "and the one that brought the lab up to date";
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
    EXPECT_THAT(lab::Texts(store, "SELECT device FROM claims"), testing::IsEmpty());
    EXPECT_EQ(entries[1].changes->size(), 2U) << "one that is damaged stays as it is";
  });
}

TEST_F(UpgradeTest, MemoryIsKeptAndWhatIsImpossibleNowGoes) {
  const std::string agent = ", 1, '10.0.0.2', 1, '', '', 'aaaaaaaa-0000-4000-8000-000000000001'";
  MakeOld(
      4,
      "UPDATE hosts SET name = 'host2' WHERE id = 2; UPDATE hosts SET faultDomain = 'a' || "
      "char(0x202e) WHERE id = 1; INSERT INTO clusters (id, uuid, isClient) VALUES (5, "
      "'aaaaaaaa-0000-4000-8000-000000000001', 0); INSERT INTO datastores VALUES (3, "
      "'d0000000-0000-4000-8000-000000000001', 5, 'ds', 1); INSERT INTO memberships VALUES "
      "(1, 2, 5, 1, 1, 1), (2, 1, 5, 1, 1, 1); INSERT INTO agents VALUES "
      "(1, 2, '11111111-0000-4000-8000-000000000002', 0" +
          agent +
          "), "
          "(2, 2, '11111111-0000-4000-8000-000000000001', 0" +
          agent +
          "), "
          "(3, 1, '11111111-0000-4000-8000-000000000002', 0" +
          agent +
          "), "
          "(4, 2, '11111111-0000-4000-8000-000000000003', 0, 1, '::', 1, '', '', 'x');"
          "INSERT INTO features SELECT value, 1 FROM json_each('[\"archival-protection\", "
          "\"client-mode\", \"korel2-config\", \"metadata-node\", \"rebuild-trim\"]');"
          "INSERT INTO history VALUES (7, 7, 1, 'host1', 'lab host add', '', 4, 12, 12, NULL);");
  testing::internal::CaptureStderr();
  EXPECT_THAT(lab::ReadLab(lab::Problems), testing::IsEmpty());
  const std::string notes = testing::internal::GetCapturedStderr();
  const std::string note = "note: the lab is brought up to date without ";
  EXPECT_EQ(notes, note + "the further witness 'host1' of cluster " + kClusterA + "\n" + note +
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
