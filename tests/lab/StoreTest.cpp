#include <SQLiteCpp/Database.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>

#include "lab/model/Features.h"
#include "lab/model/Lab.h"
#include "lab/store/LabFile.h"
#include "lab/store/Schema.h"
#include "tests/lab/Support.h"

namespace lab_test {
namespace {

using testing::HasSubstr;

class StoreTest : public LabTest {
 protected:
  static std::size_t CountHosts() { return lab::InLab(lab::AllHosts).size(); }
  static void AddNumbered(int number) {
    const std::string digits = std::to_string(10 + number);
    HostControl()->AddDatastore(
        {kDatastore1.substr(0, 34) + digits, Tovrin::Misc::StrCat("ds", digits), "", false});
  }

  static std::string Open() { return Failure(CountHosts); }

  /// Makes a lab and lets go of it.
  void MakeLab() const {
    CountHosts();
    lab::Store::CloseForProcess();
  }

  void Sql(const char* sql) const {
    SQLite::Database(LabFile(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE).exec(sql);
  }

  /// Expects that the file cannot be used, for that reason, and stays as it is; and that only
  /// `init --force` gets a lab there, keeping the old file.
  void ExpectUnusable(const std::string& reason) {
    const std::string before = ReadFile(LabFile());
    const std::string advice =
        "; choose another file with KOREL_LAB, or make it anew with 'autocli lab init --force' ('" +
        LabFile() + ".old' then keeps what is there)";
    EXPECT_EQ(Open(), reason + advice);
    EXPECT_EQ(Failure([] { lab::InitLab({lab::StandardHost("h")}, false); }), reason + advice);
    lab::Store::CloseForProcess();
    EXPECT_EQ(ReadFile(LabFile()), before);
    EXPECT_FALSE(std::filesystem::exists(LabFile() + "-journal"));
    EXPECT_EQ(Failure([] { lab::InitLab({lab::StandardHost("h")}, true); }), "");
    EXPECT_EQ(CountHosts(), 1U);
    EXPECT_EQ(ReadFile(LabFile() + ".old"), before);
  }
};

TEST_F(StoreTest, EmptyFileIsANewLab) {
  WriteFile(LabFile(), "");
  EXPECT_EQ(CountHosts(), 1U);
}

TEST_F(StoreTest, RefusesWhatIsNoLabAndReplacesItOnlyByForce) {
  const std::string lab = "the lab '" + LabFile() + "'";
  const std::string file = "'" + LabFile() + "'";
  const struct {
    const char* name;
    std::function<void()> make;
    std::string reason;
  } cases[] = {
      {"text", [&] { WriteFile(LabFile(), "not a database\n"); }, file + " is not a lab"},
      {"long text", [&] { WriteFile(LabFile(), std::string(5000, 'x')); }, file + " is not a lab"},
      {"header only", [&] { WriteFile(LabFile(), ReadFile(LabFile()).substr(0, 100)); },
       lab + " is damaged"},
      {"truncated", [&] { std::filesystem::resize_file(LabFile(), 8192); }, lab + " is damaged"},
      {"overwritten",
       [&] {
         std::string content = ReadFile(LabFile());
         std::fill(content.begin() + 100, content.begin() + 3100, '\xff');
         WriteFile(LabFile(), content);
       },
       lab + " is damaged"},
      {"newer", [&] { Sql("PRAGMA user_version = 77"); },
       lab + " is of version 77, newer than this program knows (" +
           std::to_string(lab::kMigrations.size()) + ")"},
      {"foreign",
       [&] {
         std::filesystem::remove(LabFile());
         Sql("CREATE TABLE t (x)");
       },
       file + " is a database of another program"},
      {"foreign with a write-ahead log",
       [&] {
         std::filesystem::remove(LabFile());
         Sql("PRAGMA journal_mode = WAL; CREATE TABLE t (x)");
       },
       file + " is a database of another program"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    std::filesystem::remove(LabFile());
    MakeLab();
    each.make();
    ExpectUnusable(each.reason);
    lab::Store::CloseForProcess();
  }
}

TEST_F(StoreTest, JournalOfAReplacedFileIsNotPlayedIntoTheNewOne) {
  WriteFile(LabFile(), "no database");
  WriteFile(LabFile() + "-journal", "a journal");
  lab::InitLab({lab::StandardHost("h")}, true);
  EXPECT_FALSE(std::filesystem::exists(LabFile() + "-journal"));
  EXPECT_EQ(ReadFile(LabFile() + ".old-journal"), "a journal");
}

TEST_F(StoreTest, InitMakesAnExistingLabAnewOnlyByForce) {
  AddHostsUpTo(3);
  HostControl()->CreateCluster(kClusterA, true, false);
  lab::InLab([](lab::Store& store) { lab::SetFeature(store, "client-mode", false); });
  WriteFile(LabFile() + ".root/host1/etc/left", "");
  ExpectRefused([] { lab::InitLab({lab::StandardHost("host1")}, false); },
                "there is a lab at '" + LabFile() + "' already; --force makes it anew");
  lab::InitLab({lab::StandardHost("host1")}, true);
  const std::string remade = State();
  EXPECT_FALSE(std::filesystem::exists(LabFile() + ".root/host1/etc/left"));
  EXPECT_FALSE(std::filesystem::exists(LabFile() + ".root/host3"));
  lab::Store::CloseForProcess();
  std::filesystem::remove(LabFile());
  EXPECT_EQ(State(), remade) << "as a fresh lab";
}

TEST_F(StoreTest, NamesTheVariableThatIsOfNoUse) {
  WriteFile(Path("file"), "");
  std::filesystem::create_directory(Path("folder"));
  const struct {
    std::string value;
    std::string message;
  } cases[] = {
      {"", "KOREL_LAB is set but empty; give the absolute path of the lab file"},
      {"lab.db", "KOREL_LAB must be an absolute path, got 'lab.db'"},
      {"/tmp/", "KOREL_LAB must name a file, got the directory '/tmp/'"},
      {"/dev/null", "the lab '/dev/null' is not a file; set KOREL_LAB to the path of one"},
      {Path("folder"),
       "the lab '" + Path("folder") + "' is not a file; set KOREL_LAB to the path of one"},
      {Path("file/lab.db"), "cannot open the lab '" + Path("file/lab.db") + "': Not a directory"},
      {"/proc/korel/lab.db",
       "cannot make the directory '/proc/korel' of the lab: No such file or directory"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.value);
    setenv("KOREL_LAB", each.value.c_str(), 1);
    EXPECT_THAT(Open(), HasSubstr(each.message));
  }
}

TEST_F(StoreTest, WithoutTheVariableTheLabLiesInThePersonsStateDirectory) {
  unsetenv("KOREL_LAB");
  const std::string home = std::getenv("HOME");
  setenv("HOME", Path("home").c_str(), 1);
  unsetenv("XDG_STATE_HOME");
  EXPECT_EQ(lab::LabPath(), Path("home/.local/state/korel/lab.db"));
  setenv("XDG_STATE_HOME", "state", 1);
  EXPECT_EQ(Failure(lab::LabPath), "XDG_STATE_HOME must be an absolute path, got 'state'");
  setenv("XDG_STATE_HOME", Path("state").c_str(), 1);
  EXPECT_EQ(Open(), "");
  struct stat status {};
  ASSERT_EQ(stat(Path("state/korel").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0700U);
  unsetenv("XDG_STATE_HOME");
  setenv("HOME", home.c_str(), 1);
}

TEST_F(StoreTest, FirstUseByManyProcessesMakesOneLab) {
  EXPECT_EQ(FailuresInProcesses(6, [](int) { CountHosts(); }), 0);
  EXPECT_EQ(CountHosts(), 1U);
}

TEST_F(StoreTest, ProcessesThatAddAtOnceLoseNothing) {
  HostControl()->CreateCluster(kClusterA, true, false);
  constexpr int kProcesses = 4;
  constexpr int kEach = 5;
  EXPECT_EQ(FailuresInProcesses(kProcesses,
                                [](int process) {
                                  for (int i = 0; i < kEach; ++i) AddNumbered(process * kEach + i);
                                }),
            0);
  EXPECT_EQ(HostControl()->GetDatastores().size(), std::size_t{kProcesses * kEach + 1});
}

TEST_F(StoreTest, AFailureLaterInATransactionUndoesWhatWentBefore) {
  ExpectRefused(
      [] {
        lab::InLab([](lab::Store& store) {
          lab::AddHost(store, lab::StandardHost("host2"));
          lab::AddHost(store, lab::StandardHost("host1"));
        });
      },
      "the lab has a host 'host1' already");
}

TEST_F(StoreTest, UnknownHostIsToldWhichThereAre) {
  AddHostsUpTo(2);
  for (const char* name : {"", "host3", "host1 "}) {
    StandOn(name);
    EXPECT_EQ(Failure([] { HostControl(); }), std::string("KOREL_LAB_HOST names no host of the "
                                                          "lab: '") +
                                                  name + "'; the hosts are host1, host2");
  }
}

TEST_F(StoreTest, WithoutHost1TheFirstHostIsStoodOn) {
  lab::InitLab({lab::StandardHost("zeta"), lab::StandardHost("alpha")}, false);
  EXPECT_EQ(HostControl()->GetFaultDomainName(), "zeta");
}

}  // namespace
}  // namespace lab_test
