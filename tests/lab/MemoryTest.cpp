#include <filesystem>

#include "lab/memory/Copies.h"
#include "lab/memory/Undo.h"
#include "lab/model/HostFiles.h"
#include "lab/store/Memory.h"
#include "lab/store/Query.h"
#include "tests/lab/Support.h"

namespace lab_test {
namespace {

using testing::ElementsAre;

class MemoryTest : public LabTest {
 protected:
  static std::vector<lab::Entry> Entries() {
    return lab::ReadLab([](lab::Store& store) { return lab::EntriesAfter(store, 0); });
  }
  static std::vector<std::string> Told(const std::vector<lab::FieldChange>& changes) {
    std::vector<std::string> texts;
    for (const auto& [kind, subject, field, before, after] : changes) {
      texts.push_back(std::string(kind) + " " + subject + ": " + field.value_or("-") + " " +
                      before.value_or("-") + " > " + after.value_or("-"));
    }
    return texts;
  }
  /// What the entry of that number changed.
  static std::vector<std::string> Told(std::int64_t number) {
    return lab::ReadLab([&](lab::Store& store) {
      std::vector<lab::Changeset> later;
      auto entries = lab::EntriesAfter(store, number - 1);
      for (auto each = entries.rbegin() + 1; each != entries.rend(); ++each) {
        later.push_back(*each->changes);
      }
      return Told(lab::InWords(store, *entries.back().changes, lab::Combined(store, later)));
    });
  }
  static void SetThrottle(int mbps) { HostControl()->SetResyncThrottle(mbps); }
  static std::int64_t Throttle() { return HostControl()->GetResyncThrottle(); }
};

TEST_F(MemoryTest, TheFirstCommandIsTakenBackWithoutTheMakingOfTheLab) {
  HostControl()->CreateCluster(kClusterA, true, false);
  lab::UndoLastCommand();
  EXPECT_EQ(HostControl()->GetClusterUuid(), kZeros);
  EXPECT_EQ(Entries().back().operation, "makes the lab");
}

TEST_F(MemoryTest, UndoTakesBackTheLastCommandWholeAndTwiceChangesNothing) {
  AddHostsUpTo(2);
  const std::string first = State();
  Command(1, "one");
  ASSERT_EQ(Play("1 create A; 1 claim mpx.dkhba0:C0:T1:L0 mpx.dkhba2:C0:T1:L0; "
                 "1 agent node n1 10.0.0.1 1"),
            "");
  const std::string second = State();
  StandOn("host2");
  Command(2, "two");
  lab::UndoLastCommand();
  EXPECT_EQ(State(), first);
  Command(3, "three");
  lab::UndoLastCommand();
  EXPECT_EQ(State(), second);
  // A host goes with all that belongs to it, and comes back with it.
  Command(4, "four");
  lab::InitLab({lab::StandardHost("other")}, true);
  Command(5, "five");
  unsetenv("KOREL_LAB_HOST");
  lab::UndoLastCommand();
  EXPECT_EQ(State(), second);
  Command(6, "six");
  lab::UndoTo(1);
  lab::ReadLab([](lab::Store& store) { EXPECT_EQ(lab::AllHosts(store).size(), 1U); });
  EXPECT_EQ(Entries().front().operation, "takes back entries 2 to 9");
  ExpectRefused([] { lab::UndoTo(0); }, "entry 1 cannot be taken back: it makes the lab");
  ExpectRefused([] { lab::UndoTo(99); }, "there is no entry 99; the newest is 10");
  ExpectRefused([] { lab::UndoTo(10); }, "nothing came after entry 10");
}

TEST_F(MemoryTest, NothingIsTakenBackUnlessItLeadsToTheStateOfThen) {
  Command(1, "one");
  SetThrottle(7);
  Command(2, "two");
  HostControl()->SetFaultDomainName("east");
  SetThrottle(8);
  // Another process comes between: what it did not touch can be taken back, what it did cannot.
  Sql("UPDATE history SET command = 2 WHERE number IN (2, 4)");
  Sql("UPDATE history SET command = 3 WHERE number = 3");
  lab::UndoLastCommand();
  EXPECT_EQ(Throttle(), 0);
  EXPECT_EQ(HostControl()->GetFaultDomainName(), "east");
  SetThrottle(9);
  Sql("UPDATE hosts SET resyncThrottle = 10");
  ExpectRefused(lab::UndoLastCommand,
                "entry 6 cannot be taken back: what it changed is no longer as it left it; "
                "'autocli lab undo --to 5' takes back all that came since as well");
  ExpectRefused([] { lab::UndoTo(5); },
                "entry 6 cannot be taken back: what it changed is no longer as it left it, and no "
                "entry of the memory says why");
  Sql("UPDATE hosts SET resyncThrottle = 9; UPDATE history SET version = 3 WHERE number = 6");
  ExpectRefused(lab::UndoLastCommand,
                "entry 6 cannot be taken back: it is of version 3 of the lab");
  Sql("UPDATE history SET version = 5, changes = x'5402' WHERE number = 6");
  EXPECT_NE(Failure(lab::UndoLastCommand), "");
  Sql("DELETE FROM history WHERE number = 6; UPDATE history SET command = 1 WHERE number = 5;"
      "DELETE FROM history WHERE number = 1");
  ExpectRefused(lab::UndoLastCommand, "entry 1, with which the last command began, is forgotten");
}

TEST_F(MemoryTest, NothingIsTakenBackThatWouldBreakARule) {
  Command(1, "one");
  ASSERT_EQ(Play("1 create A; 1 max on; 1 max off; 1 claim mpx.dkhba0:C0:T1:L0 "
                 "mpx.dkhba2:C0:T1:L0; 1 throttle 7"),
            "");
  // As if the last command had not claimed disks, but another in between.
  Sql("UPDATE history SET command = 4 WHERE number IN (4, 6)");
  ExpectRefused(lab::UndoLastCommand,
                "entry 4 cannot be taken back: then host 'host1' is a Korel "
                "Max host with disks in use");
}

TEST_F(MemoryTest, EntriesSayWhoDidWhatAndWhatItIsCalledThen) {
  Command(4, "korel cluster new");
  ASSERT_EQ(Play("1 create A; 1 add d1 old"), "");
  unsetenv("AUTOCLI_LINE");
  ASSERT_EQ(Play("1 rename d1 new; 1 remove d1"), "");
  const auto entries = Entries();
  ASSERT_EQ(entries.size(), 5U);
  EXPECT_EQ(entries[3].operation, "CreateCluster [\"" + kClusterA + "\",true,false]");
  EXPECT_EQ(entries[3].line, "korel cluster new");
  EXPECT_EQ(entries[3].host, "host1");
  EXPECT_EQ(entries[2].command, entries[3].command);
  EXPECT_EQ(entries[1].line, "");
  EXPECT_EQ(entries[0].command, entries[1].command) << "a process that is told nothing is one";
  EXPECT_THAT(Told(3), testing::Contains("added datastore old: UUID - > " + kDatastore1));
  EXPECT_THAT(Told(4), testing::Contains("changed datastore old: name old > new"));
  EXPECT_THAT(Told(5), testing::Contains("removed datastore new: cluster " + kClusterA + " > -"));
  HostControl()->GetDatastores();
  EXPECT_EQ(Entries().size(), 5U) << "what changes nothing leaves no entry";
  Command(5, std::string(4095, 'x') + "\xc3\xa9");
  ASSERT_EQ(Play("1 claim mpx.dkhba0:C0:T1:L0 mpx.dkhba2:C0:T6:L0 mpx.dkhba2:C0:T5:L0"), "");
  EXPECT_EQ(Entries().front().line, std::string(4095, 'x') + "...");
  EXPECT_THAT(Told(6).at(10), testing::StartsWith("added claimed device mpx.dkhba2:C0:T6"));
}

TEST_F(MemoryTest, FilesAreToldLineByLine) {
  std::int64_t number = 1;
  const auto told = [&](const std::string& content) {
    Own(lab::PutFile, lab::HostFile{"/x", content, false});
    return Told(++number);
  };
  told("A=1\nA=3\nb\nB=5\n");
  EXPECT_THAT(told("A=1\nA=4\nb\nc\n"), ElementsAre("changed file /x of host1: A (2) 3 > 4",
                                                    "changed file /x of host1: B 5 > -",
                                                    "changed file /x of host1: line 4 - > c"));
  EXPECT_EQ(told(std::string(lab::kMostFileBytes, '\n')).size(), std::size_t{65536} + 2);
  told(std::string(lab::kMostFileBytes / 2, '\n'));
}

TEST_F(MemoryTest, KeepsTheNewestThousandEntriesAndEightMebibytes) {
  for (int i = 1; i <= 1003; ++i) SetThrottle(1 + i % 2);
  auto entries = Entries();
  EXPECT_EQ(entries.size(), 1000U);
  EXPECT_EQ(entries.front().number, 1004);
  ExpectRefused([] { lab::UndoTo(3); }, "entry 4 is forgotten; the oldest is 5");
  // As if the newest had left room for one more of its size, and for one byte less.
  Sql("UPDATE history SET size = 8388608 - size, total = total - 2 * size + 8388608 "
      "WHERE number = 1004");
  SetThrottle(1);
  EXPECT_EQ(Entries().size(), 2U);
  SetThrottle(101);
  EXPECT_EQ(Entries().back().number, 1005);
  Command(1, "large");
  lab::ChangeLab([](lab::Store& store) {
    for (int i = 0; i < 150; ++i) {
      lab::PutFile(store, lab::CurrentHost(store),
                   {"/" + std::to_string(i), std::string(lab::kMostFileBytes, 'x'), false});
    }
  });
  EXPECT_EQ(Entries().size(), 1U) << "the newest stays, however large it is";
  Command(2, "undo");
  lab::UndoLastCommand();
}

TEST_F(MemoryTest, LabsAreSavedLoadedAndCompared) {
  HostControl()->CreateCluster(kClusterA, true, false);
  const std::string saved = State();
  const std::string file = Path("saved");
  lab::SaveLab(file, false);
  HostControl()->SetFaultDomainName("east");
  AddHostsUpTo(2);
  EXPECT_THAT(Told(lab::DifferenceFrom(file)),
              testing::IsSupersetOf({"changed host host1: fault domain - > east",
                                     "added interface hsk2 of host2: position - > 2"}));
  const std::string changed = State();
  ExpectRefused([&] { lab::SaveLab(file, false); },
                "'" + file + "' is there already; --force replaces it");
  for (const auto& write : {std::function<void()>([&] { lab::SaveLab(LabFile(), true); }),
                            std::function<void()>([&] { lab::WriteFile(LabFile(), "", true); }),
                            std::function<void()>([&] { lab::LoadLab(LabFile()); }),
                            std::function<void()>([&] { lab::ReadSmallFile(LabFile()); })}) {
    ExpectRefused(write, "'" + LabFile() + "' is the lab itself");
  }
  Command(1, "load");
  lab::LoadLab(file);
  EXPECT_EQ(State(), saved);
  EXPECT_THAT(lab::DifferenceFrom(file), testing::IsEmpty());
  Command(2, "undo");
  lab::UndoLastCommand();
  EXPECT_EQ(State(), changed);
  lab::SaveLab(file, true);
  setenv("KOREL_LAB", file.c_str(), 1);
  EXPECT_EQ(State(), changed) << "a saved lab is a lab";
  lab::Store::CloseForProcess();
  Sql("UPDATE hosts SET name = '../x' WHERE id = 1");
  setenv("KOREL_LAB", LabFile().c_str(), 1);
  EXPECT_THAT(Failure([&] { lab::LoadLab(file); }),
              testing::StartsWith("'" + file + "' is no sound lab: '../x': "));
  WriteFile(file, "no lab");
  ExpectRefused([&] { lab::LoadLab(file); }, "'" + file + "' is not a lab");
  ExpectRefused([&] { lab::LoadLab(Path("none")); },
                "cannot read '" + Path("none") + "': No such file or directory");
  EXPECT_EQ(State(), changed);
  EXPECT_FALSE(std::filesystem::exists(Path("none")));
}

}  // namespace
}  // namespace lab_test
