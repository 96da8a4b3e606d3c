#include <SQLiteCpp/Database.h>

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
  const std::pair<std::function<void()>, std::string> cases[] = {
      {[&] { WriteFile(LabFile(), "not a database\n"); }, "'" + LabFile() + "' is not a lab"},
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

TEST_F(StoreTest, BeginsAgainWhereTheFirstTransactionLostPower) {
  std::string journal = "\xd9\xd5\x05\xf9\x20\xa1\x63\xd7" + std::string(504, '\0');
  journal[22] = 2;   // sectors of 512 bytes
  journal[26] = 16;  // pages of 4,096 bytes
  WriteFile(LabFile(), std::string(8192, '\0'));
  WriteFile(LabFile() + "-journal", journal);
  EXPECT_EQ(CountHosts(), 1U);
}

TEST_F(StoreTest, InitMakesAnExistingLabAnewOnlyByForce) {
  AddHostsUpTo(3);
  WriteFile(LabFile() + ".root/host1/etc/left", "");
  ExpectRefused([] { lab::InitLab({lab::StandardHost("host1")}, false); },
                "there is a lab at '" + LabFile() + "' already; --force makes it anew");
  lab::InitLab({lab::StandardHost("host1")}, true);
  const std::string remade = State();
  EXPECT_FALSE(std::filesystem::exists(LabFile() + ".root/host1/etc/left"));
  lab::Store::CloseForProcess();
  std::filesystem::remove(LabFile());
  EXPECT_EQ(State(), remade) << "as a fresh lab";
}

TEST_F(StoreTest, NamesTheVariableThatIsOfNoUse) {
  WriteFile(Path("file"), "");
  const std::pair<std::string, std::string> cases[] = {
      {"lab.db", "KOREL_LAB must be an absolute path, got 'lab.db'"},
      {"/tmp", "the lab '/tmp' is not a file; set KOREL_LAB to the path of one"},
      {Path("file/lab.db"), "cannot open the lab '" + Path("file/lab.db") + "': Not a directory"},
  };
  for (const auto& [value, message] : cases) {
    setenv("KOREL_LAB", value.c_str(), 1);
    EXPECT_THAT(Open(), testing::HasSubstr(message));
  }
}

}  // namespace
}  // namespace lab_test
