#include <SQLiteCpp/Database.h>

#include "lab/model/Features.h"
#include "lab/model/Lab.h"
#include "lab/store/LabFile.h"
#include "lab/store/Schema.h"
#include "tests/lab/Support.h"

namespace lab_test {
namespace {

class StoreTest : public LabTest {
 protected:
  static std::size_t CountHosts() { return lab::InLab(lab::AllHosts).size(); }
  static std::string Open() { return Failure(CountHosts); }
  static std::string Init(bool force) {
    return Failure([&] { lab::InitLab({lab::StandardHost("h")}, force); });
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
    EXPECT_EQ(Init(false), reason + advice);
    lab::Store::CloseForProcess();
    EXPECT_EQ(ReadFile(LabFile()), before);
    EXPECT_FALSE(std::filesystem::exists(LabFile() + "-journal"));
    EXPECT_EQ(Init(true), "");
    EXPECT_EQ(CountHosts(), 1U);
    EXPECT_EQ(ReadFile(LabFile() + ".old"), before);
  }
};

TEST_F(StoreTest, RefusesWhatIsNoLabAndReplacesItOnlyByForce) {
  const std::string lab = "the lab '" + LabFile() + "'";
  const std::string noLab = "'" + LabFile() + "' is not a lab";
  const std::pair<std::function<void()>, std::string> cases[] = {
      {[&] { WriteFile(LabFile(), "not a database\n"); }, noLab},
      {[&] { WriteFile(LabFile(), std::string(5000, 'x')); }, noLab},
      {[&] { WriteFile(LabFile(), ReadFile(LabFile()).substr(0, 100)); }, lab + " is damaged"},
      {[&] { std::filesystem::resize_file(LabFile(), 8192); }, lab + " is damaged"},
      {[&] { WriteFile(LabFile(), ReadFile(LabFile()).replace(100, 3000, 3000, '\xff')); },
       lab + " is damaged"},
      {[&] { Sql("PRAGMA user_version = 77"); },
       lab + " is of version 77, newer than this program knows (" +
           std::to_string(lab::kMigrations.size()) + ")"},
      {[&] {
         std::filesystem::remove(LabFile());
         Sql("PRAGMA journal_mode = WAL; CREATE TABLE t (x)");
       },
       "'" + LabFile() + "' is a database of another program"},
  };
  for (const auto& [damage, reason] : cases) {
    SCOPED_TRACE(reason);
    WriteFile(LabFile(), "");
    EXPECT_EQ(CountHosts(), 1U) << "an empty file is a new lab";
    lab::Store::CloseForProcess();
    damage();
    ExpectUnusable(reason);
    lab::Store::CloseForProcess();
  }
}

TEST_F(StoreTest, JournalOfAReplacedFileIsNotPlayedIntoTheNewOne) {
  WriteFile(LabFile(), "no database");
  WriteFile(LabFile() + "-journal", "a journal");
  EXPECT_EQ(Init(true), "");
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
  const std::pair<std::string, std::string> cases[] = {
      {"", "KOREL_LAB is set but empty; give the absolute path of the lab file"},
      {"lab.db", "KOREL_LAB must be an absolute path, got 'lab.db'"},
      {"/tmp/", "KOREL_LAB must name a file, got the directory '/tmp/'"},
      {"/tmp", "the lab '/tmp' is not a file; set KOREL_LAB to the path of one"},
      {Path("file/lab.db"), "cannot open the lab '" + Path("file/lab.db") + "': Not a directory"},
      {"/proc/korel/lab.db",
       "cannot make the directory '/proc/korel' of the lab: No such file or directory"},
  };
  for (const auto& [value, message] : cases) {
    setenv("KOREL_LAB", value.c_str(), 1);
    EXPECT_THAT(Open(), testing::HasSubstr(message));
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
  EXPECT_EQ(std::filesystem::status(Path("state/korel")).permissions(),
            std::filesystem::perms::owner_all);
  unsetenv("XDG_STATE_HOME");
  setenv("HOME", home.c_str(), 1);
}

TEST_F(StoreTest, AFailureLaterInATransactionUndoesWhatWentBefore) {
  const auto addTwo = [](lab::Store& store) {
    for (const char* name : {"host2", "host1"}) lab::AddHost(store, lab::StandardHost(name));
  };
  ExpectRefused([&] { lab::InLab(addTwo); }, "the lab has a host 'host1' already");
}

TEST_F(StoreTest, TheFirstHostIsStoodOnUnlessOneIsNamed) {
  lab::InitLab({lab::StandardHost("zeta"), lab::StandardHost("alpha")}, false);
  EXPECT_EQ(HostControl()->GetFaultDomainName(), "zeta");
  for (const std::string name : {"", "beta", "zeta "}) {
    StandOn(name);
    EXPECT_EQ(Failure([] { HostControl(); }),
              "KOREL_LAB_HOST names no host of the lab: '" + name + "'; the hosts are zeta, alpha");
  }
}

}  // namespace
}  // namespace lab_test
