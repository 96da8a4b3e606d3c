#include <sys/stat.h>

#include <array>
#include <filesystem>

#include "lab/memory/Copies.h"
#include "lab/store/LabFile.h"
#include "lab/store/Patience.h"
#include "lab/store/Store.h"
#include "tests/lab/Support.h"

namespace lab_test {
namespace {

class StoreTest : public LabTest {
 protected:
  static std::size_t CountHosts() { return lab::ReadLab(lab::AllHosts).size(); }
  static std::string Open() { return Failure(CountHosts); }
  static std::string Init(bool force) {
    return Failure([&] { lab::InitLab({lab::StandardHost("h")}, force); });
  }

  /// Expects that the file cannot be used, for that reason, and stays as it is; and that only
  /// `init --force` gets a lab there, keeping the old file under that name.
  void ExpectUnusable(const std::string& reason, const std::string& aside) {
    const std::string before = ReadFile(LabFile());
    const std::string advice =
        "; choose another file with KOREL_LAB, or replace it with 'autocli lab init --force', "
        "which keeps what is there as '" +
        aside + "'";
    EXPECT_EQ(Open(), reason + advice);
    EXPECT_EQ(Init(false), reason + advice);
    lab::Store::CloseForProcess();
    EXPECT_EQ(ReadFile(LabFile()), before);
    EXPECT_FALSE(std::filesystem::exists(LabFile() + "-journal"));
    EXPECT_EQ(Init(true), "");
    EXPECT_EQ(CountHosts(), 1U);
    EXPECT_EQ(ReadFile(aside), before);
  }
};

TEST_F(StoreTest, RefusesWhatIsNoLabAndReplacesItOnlyByForce) {
  const std::string lab = "the lab '" + LabFile() + "'";
  const auto sql = [](const char* text) { return [text] { Sql(text); }; };
  const auto fresh = [&](const char* text) {
    return [&, text] {
      std::filesystem::remove(LabFile());
      Sql(text);
    };
  };
  const std::pair<std::function<void()>, std::string> cases[] = {
      {[&] { WriteFile(LabFile(), "not a database\n"); }, "'" + LabFile() + "' is not a lab"},
      {[&] { WriteFile(LabFile(), ReadFile(LabFile()).replace(100, 3000, 3000, '\xff')); },
       lab + " is damaged"},
      {[&] { std::filesystem::resize_file(LabFile(), 8192); },
       lab + " was cut: it has 8192 of its SIZE bytes"},
      {[&] { std::filesystem::resize_file(LabFile(), 8191); },
       lab + " was cut: it has 8191 of its SIZE bytes"},
      {sql("PRAGMA journal_mode = WAL"),
       "'" + LabFile() + "' has a write-ahead log, which no lab has"},
      {sql("PRAGMA user_version = 77"),
       lab + " is of version 77, newer than this program knows (5)"},
      {sql("PRAGMA user_version = -9"), lab + " is of the unknown version -9"},
      {fresh("PRAGMA journal_mode = WAL; CREATE TABLE t (x)"),
       "'" + LabFile() + "' is a database of another program"},
      {fresh(
           "PRAGMA encoding = 'UTF-16le'; CREATE TABLE t (x); PRAGMA application_id = 1265585250"),
       "'" + LabFile() + "' is a database of another program"},
      {fresh("PRAGMA application_id = 1265585250; PRAGMA user_version = 5"),
       lab + " lacks the table 'agents'"},
      {fresh("PRAGMA application_id = 1265585250; PRAGMA user_version = 2"),
       lab + " lacks the table 'agents'"},
      {sql("CREATE TABLE \"x'y\" (a)"), lab + " holds a table 'x'y' that no lab has"},
      {sql("CREATE TRIGGER t AFTER INSERT ON hosts BEGIN DELETE FROM faults; END"),
       lab + " holds a trigger 't' that no lab has"},
      {sql("CREATE VIEW v AS SELECT 1"), lab + " holds a view 'v' that no lab has"},
      {sql("ALTER TABLE hosts ADD COLUMN x TEXT"),
       lab + " has another table 'hosts' than a lab of its version"},
      {sql("DROP INDEX claimsOfGroup"), lab + " lacks the table 'claimsOfGroup'"},
  };
  int number = 0;
  for (auto [damage, reason] : cases) {
    SCOPED_TRACE(reason);
    WriteFile(LabFile(), "");
    EXPECT_EQ(CountHosts(), 1U) << "an empty file is a new lab";
    lab::Store::CloseForProcess();
    const std::string size = std::to_string(std::filesystem::file_size(LabFile()));
    if (reason.find("SIZE") != std::string::npos) reason.replace(reason.find("SIZE"), 4, size);
    damage();
    ExpectUnusable(reason, LabFile() + (++number == 1 ? ".old" : ".old." + std::to_string(number)));
    lab::Store::CloseForProcess();
  }
}

/// The beginning of a journal, which leaves an empty file: sectors of 512 bytes, pages of 4,096.
std::string Journal() {
  std::string journal = "\xd9\xd5\x05\xf9\x20\xa1\x63\xd7" + std::string(504, '\0');
  journal[22] = 2;
  journal[26] = 16;
  return journal;
}

TEST_F(StoreTest, BeginsAgainWhereTheFirstTransactionLostPower) {
  WriteFile(LabFile(), std::string(8192, '\0'));
  WriteFile(LabFile() + "-journal", Journal());
  EXPECT_EQ(CountHosts(), 1U);
}

TEST_F(StoreTest, DeletesNoFileThatAJournalNames) {
  const std::string name = Path("victim");
  WriteFile(name, "somebody's");
  const auto number = [](std::size_t value) {
    return std::string{0, 0, static_cast<char>(value / 256), static_cast<char>(value % 256)};
  };
  std::size_t sum = 0;
  for (const char c : name) sum += static_cast<unsigned char>(c);
  WriteFile(LabFile(), std::string(8192, '\0'));
  WriteFile(LabFile() + "-journal",
            Journal() + name + number(name.size()) + number(sum) + Journal().substr(0, 8));
  EXPECT_THAT(Open(), testing::HasSubstr("the journal of '" + LabFile() + "' is of another"));
  EXPECT_TRUE(std::filesystem::exists(name));
}

TEST_F(StoreTest, InitReplacesAnExistingLabOnlyByForce) {
  AddHostsUpTo(3);
  ExpectRefused([] { lab::InitLab({lab::StandardHost("host1")}, false); },
                "there is a lab at '" + LabFile() + "' already; --force replaces it");
  lab::InitLab({lab::StandardHost("host1")}, true);
  const std::string remade = State();
  lab::Store::CloseForProcess();
  std::filesystem::remove(LabFile());
  EXPECT_EQ(State(), remade) << "as a fresh lab";
  std::filesystem::remove(LabFile());
  EXPECT_EQ(CountHosts(), 1U) << "one that was deleted under an open process is made again";
}

TEST_F(StoreTest, InitSetsAsideWhatIsDamagedInItsRows) {
  AddHostsUpTo(3);
  lab::Store::CloseForProcess();
  std::string file = ReadFile(LabFile());
  // The number of cells of the page that holds it.
  file[file.find("Capacity flash") / 4096 * 4096 + 3] = '\x7f';
  WriteFile(LabFile(), file);
  EXPECT_EQ(Init(true), "");
  EXPECT_EQ(ReadFile(LabFile() + ".old"), file);
  EXPECT_EQ(CountHosts(), 1U);
}

TEST_F(StoreTest, ReadersDoNotWaitForReadersAndAWriterWaitsForBoth) {
  CountHosts();
  setenv("KOREL_LAB_WAIT", "0", 1);
  lab::Store first(LabFile());
  lab::Store second(LabFile());
  lab::Store third(LabFile());
  const std::string busy = "the lab '" + LabFile() +
                           "' is in use by another process; waited 0 s in all; try again, or "
                           "let KOREL_LAB_WAIT name more seconds";
  {
    const lab::Transaction reading(first, lab::Access::Read);
    const lab::Transaction readingToo(second, lab::Access::Read);
    EXPECT_EQ(Failure([&] { const lab::Transaction writing(third, lab::Access::Change); }), busy);
  }
  const lab::Transaction writing(third, lab::Access::Change);
  EXPECT_EQ(Failure([&] { const lab::Transaction reading(first, lab::Access::Read); }), busy);
  unsetenv("KOREL_LAB_WAIT");
  Command(1, "again");
  EXPECT_EQ(lab::PatienceLeft(), std::chrono::seconds(10));
  setenv("KOREL_LAB_WAIT", "86400", 1);
  EXPECT_EQ(lab::PatienceLeft(), std::chrono::seconds(86400));
  for (const char* wrong : {"", "-1", "ten", "86401"}) {
    setenv("KOREL_LAB_WAIT", wrong, 1);
    EXPECT_EQ(Failure([&] { const lab::Transaction reading(first, lab::Access::Read); }),
              std::string("KOREL_LAB_WAIT must be a number of seconds from 0 to 86400, got '") +
                  wrong + "'");
  }
}

TEST_F(StoreTest, NamesTheVariableThatIsOfNoUse) {
  WriteFile(Path("file"), "");
  const std::pair<std::string, std::string> cases[] = {
      {"/tmp", "the lab '/tmp' is not a file; set KOREL_LAB to the path of one"},
      {Path("file/lab.db"), "cannot open the lab '" + Path("file/lab.db") + "': Not a directory"},
  };
  for (const auto& [value, message] : cases) {
    setenv("KOREL_LAB", value.c_str(), 1);
    EXPECT_THAT(Open(), testing::HasSubstr(message));
  }
  // KOREL_LAB, XDG_STATE_HOME and HOME, of which a minus is not set; and where the lab is then.
  const std::array<const char*, 4> places[] = {
      {"/l", "/x", "/h", "/l"},
      {"-", "/x", "/h", "/x/korel/lab.db"},
      {"-", "", "/h", "/h/.local/state/korel/lab.db"},
      {"-", "-", "/h", "/h/.local/state/korel/lab.db"},
      {"-", "x", "/h", "XDG_STATE_HOME must be an absolute path, got 'x'"},
      {"-", "-", "h", "HOME must be an absolute path, got 'h'"},
      {"-", "-", "-", "no place for the lab: set KOREL_LAB to the absolute path of its file"},
      {"", "/x", "/h", "KOREL_LAB is set but empty; give the absolute path of the lab file"},
      {"l", "/x", "/h", "KOREL_LAB must be an absolute path, got 'l'"},
      {"/l/", "/x", "/h", "KOREL_LAB must name a file, got the directory '/l/'"}};
  for (const auto& [file, state, home, expected] : places) {
    for (const auto& [name, value] :
         {std::pair("KOREL_LAB", file), {"XDG_STATE_HOME", state}, {"HOME", home}}) {
      value == std::string("-") ? unsetenv(name) : setenv(name, value, 1);
    }
    std::string path;
    const std::string message = Failure([&] { path = lab::LabPath(); });
    EXPECT_EQ(path + message, expected);
  }
}

TEST_F(StoreTest, WhatIsMadeIsNotForOthersToWriteWhateverTheUmask) {
  for (const mode_t mask : {0, 022, 077}) {
    const std::string base = Path(std::to_string(mask));
    const auto modeOf = [&](const char* name) {
      return static_cast<mode_t>(std::filesystem::status(base + name).permissions());
    };
    setenv("KOREL_LAB", (base + "/deep/lab.db").c_str(), 1);
    setenv("KOREL_LAB_CALLS", (base + ".calls").c_str(), 1);
    const mode_t before = umask(mask);
    HostControl();
    lab::SaveLab(base + ".saved", false);
    lab::WriteFile(base + ".file", "", false);
    umask(before);
    EXPECT_EQ(modeOf(""), 0700U & ~mask);
    EXPECT_EQ(modeOf("/deep"), 0700U & ~mask);
    EXPECT_EQ(modeOf("/deep/lab.db"), 0644U & ~mask);
    for (const char* made : {".calls", ".saved", ".file"}) EXPECT_EQ(modeOf(made), 0600U) << made;
  }
}

}  // namespace
}  // namespace lab_test
