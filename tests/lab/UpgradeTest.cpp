#include <filesystem>

#include "lab/model/Check.h"
#include "lab/model/HostFiles.h"
#include "lab/model/TraceDaemon.h"
#include "lab/store/LabFile.h"
#include "lab/store/Memory.h"
#include "lab/store/SchemaCheck.h"
#include "tests/lab/Support.h"

namespace lab_test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

class UpgradeTest : public LabTest {
 protected:
  /// Makes a lab of that older version with two hosts, the second of an impossible name.
  static void MakeOld(int version, const std::string& rows = "") {
    Sql(lab::ScriptOfVersion(version) + "PRAGMA user_version = " + std::to_string(version) +
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
  for (int version = 1; version <= 3; ++version) {
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
    EXPECT_THAT(State(), testing::HasSubstr("|1|2|15|2025-01-01T00:00:00Z|0|100\n"));
    EXPECT_EQ(DaemonStatus(), 0) << "without a folder a host is as a fresh one";
  }
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
