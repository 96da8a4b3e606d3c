// A lab file that somebody else wrote: LabMutation.h says how the input makes it. Commands of the
// lab and of a host run on it, it is compared with a sound lab, and loaded into one.
//
// - Whatever the file holds, no sanitizer speaks, and no command takes a second.
// - The file is refused when it is opened, and then keeps its bytes; or it is a lab, and a check of
//   it says the same twice.
// - A lab in which a check finds nothing wrong stays one, whatever commands do.
// - Every failure has a message that is no other program's and not that of a broken command.
// - Only the lab is written to, its journal, and what `lab init --force` sets aside.

#include "lab/model/Lab.h"

#include <sys/resource.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>

#include "autocli/run/Driver.h"
#include "autocli/tools/SplitLine.h"
#include "fuzz/LabMutation.h"
#include "fuzz/Support.h"
#include "fuzz/WholeTree.h"
#include "lab/hostctl/HandedOut.h"
#include "lab/model/HostFiles.h"
#include "platform/hostctl/KorelUtil.h"

namespace {

using Json = nlohmann::ordered_json;
using Tovrin::Lib::Korel::KorelCtlException;

constexpr const char* kClusterA = "aaaaaaaa-0000-4000-8000-000000000001";
constexpr const char* kClusterB = "bbbbbbbb-0000-4000-8000-000000000002";

/// What only looks.
constexpr auto kLooks = std::to_array<const char*>({
    "lab show",
    "lab host list",
    "lab cluster list",
    "lab cluster show --uuid aaaaaaaa-0000-4000-8000-000000000001",
    "lab disk list",
    "lab file list",
    "lab file get --path /etc/motd",
    "lab fault list",
    "lab feature list",
    "lab history",
    "lab history --entry 16",
    "lab history --entry 7",
    "lab history --entry 2",
    "korel cluster get",
    "korel cluster list",
    "korel cluster preferredfaultdomain list",
    "korel cluster unicastagent list",
    "korel datastore list",
    "korel network list",
    "korel network security list",
    "korel policy getdefault",
    "korel storage list",
    "korel storagepool list",
    "korel trace get",
});

/// What changes the lab; the input chooses some.
constexpr auto kActs = std::to_array<const char*>({
    "lab undo",
    "lab undo --to 15",
    "lab undo --to 1",
    "lab undo --to 9223372036854775806",
    "lab load --file SOUND",
    "lab host add --name host9",
    "lab host remove --name host2",
    "lab host set --fault-domain west",
    "lab host reboot",
    "lab resync set --rate 100",
    "lab maintenance start",
    "lab daemon stop",
    "lab daemon start",
    "lab disk add --name new1 --size 100",
    "lab disk remove --device mpx.dkhba2:C0:T5:L0",
    "lab disk set --device mpx.dkhba2:C0:T1:L0 --healthy false",
    "lab interface add --name hsk9",
    "lab interface remove --name hsk2",
    "lab file put --path /etc/new --from SOUND",
    "lab file remove --path /etc/motd",
    "lab fault clear",
    "lab feature set --name client-mode --enabled false",
    "lab init --force",
    "korel cluster join -u bbbbbbbb-0000-4000-8000-000000000002",
    "korel cluster join -u dddddddd-0000-4000-8000-000000000004",
    "korel cluster korelmax set -e true",
    "korel cluster leave",
    "korel cluster new",
    "korel cluster preferredfaultdomain set -n east",
    "korel cluster restore",
    "korel cluster unicastagent clear",
    "korel datastore add -n ds9",
    "korel datastore clear",
    "korel datastore name set -n main",
    "korel faultdomain set -n fd7",
    "korel network clear",
    "korel network ip add -i hsk1",
    "korel network restore",
    "korel network security set -e true -r 60",
    "korel policy cleardefault -c vmem",
    "korel policy setdefault -c vmem -p stripes=2",
    "korel resync throttle set --level 7",
    "korel storage add -s mpx.dkhba0:C0:T2:L0 -d mpx.dkhba2:C0:T3:L0",
    "korel storage diskgroup rebuild -s mpx.dkhba0:C0:T1:L0",
    "korel storage diskgroup unmount -s mpx.dkhba0:C0:T1:L0",
    "korel storage remove -d mpx.dkhba2:C0:T2:L0",
    "korel storagepool remove -d mpx.dkhba1:C0:T2:L0",
    "korel trace set -s 200",
});

/// One folder with the lab alone in it, and one for all else.
struct Places {
  std::string folder = fuzz::Folder() + "/lab";
  std::string lab = folder + "/lab.db";
  std::string others = fuzz::Folder() + "/others";
  std::string sound = others + "/sound.db";
  std::string victim = others + "/victim";
};

const Places& Place() {
  static const Places places;
  return places;
}

double SecondsUsed() {
  rusage used{};
  getrusage(RUSAGE_SELF, &used);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return seconds(used.ru_utime) + seconds(used.ru_stime);
}

/// The messages of the line's errors; none when it succeeded.
std::vector<std::string> Run(std::string line) {
  static std::size_t number = 0;
  if (const auto sound = line.find("SOUND"); sound != std::string::npos) {
    line.replace(sound, 5, Place().sound);
  }
  std::string problem;
  const auto words = autocli::SplitLine(line, problem);
  fuzz::MemorySink out;
  const double start = SecondsUsed();
  const int status = autocli::RunBatchLine(words, ++number, fuzz::WholeTree(), {}, out);
  fuzz::Require(SecondsUsed() - start < 1, "a command ends within a second", line);
  const Json answer = Json::parse(out.Text(), nullptr, false);
  fuzz::Require(answer.is_object() && status <= 1, "a command answers or fails", line + out.Text());
  fuzz::RequirePrintable(out.Text());
  std::vector<std::string> messages;
  for (const Json& error : answer["errors"]) {
    messages.push_back(error["message"]);
    const std::string& message = messages.back();
    fuzz::Require(!message.empty() && !message.starts_with("the host control library failed"),
                  "a failure says why", line + ": " + message);
  }
  fuzz::Require(messages.empty() == (status == 0), "a failure has a message", line);
  return messages;
}

std::string Joined(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts) joined += text + "\n";
  return joined;
}

std::vector<std::string> Check() { return Run("lab check"); }

/// Looks at the lab of that path from now on.
void GoTo(const std::string& path) {
  try {
    lab::TakeInHostFiles();
  } catch (const KorelCtlException&) {
    // What is left of the input before.
  }
  lab::Store::CloseForProcess();
  setenv("KOREL_LAB", path.c_str(), 1);
}

void PutThere(const fuzz::LabFiles& files) {
  GoTo(Place().lab);
  std::filesystem::remove_all(Place().folder);
  std::filesystem::create_directory(Place().folder);
  fuzz::WriteFile(Place().lab, files.lab);
  if (!files.journal.empty()) fuzz::WriteFile(Place().lab + "-journal", files.journal);
}

void StandOn(const char* host) { setenv("KOREL_LAB_HOST", host, 1); }

void Prepare() {
  std::filesystem::create_directory(Place().others);
  fuzz::WriteFile(Place().victim, "a file of somebody else's");
  GoTo(Place().sound);
  lab::InitLab({lab::StandardHost("host1"), lab::StandardHost("host2")}, true);
  const auto host = [](const char* name) {
    StandOn(name);
    return Tovrin::Lib::Korel::KorelPluginFactory::GetKorelPlugin()->GetKorelInfo();
  };
  host("host1")->CreateCluster(kClusterA, true, false);
  host("host2")->CreateCluster(kClusterB, true, false);
  host("host2")->AddDatastore({"d0000000-0000-4000-8000-000000000001", "ds1", "", false});
  host("host1")->AddDatastore({"d0000000-0000-4000-8000-000000000001", "far", kClusterB, false});
  lab::ChangeLab([](lab::Store& store) {
    lab::PutFile(store, lab::CurrentHost(store), {"/etc/motd", "A=1\nB=2\nC\n", false});
  });
  const std::array kLines = {
      "korel storage add -s mpx.dkhba0:C0:T1:L0 -d mpx.dkhba2:C0:T1:L0 -d mpx.dkhba2:C0:T2:L0",
      "korel storagepool add -d mpx.dkhba1:C0:T2:L0",
      "korel cluster unicastagent add -t node -u 5291022a-ad03-df90-dd0f-b9f980cc005e -U true "
      "-a 10.0.0.1",
      "korel network ip add -i hsk0 -T korel -T witness",
      "korel policy setdefault -c vdisk -p copies=2",
      "korel trace set -s 100",
      "lab fault add --operation ClearDatastores --message unavailable --count 3",
      "lab fault add --operation AddDatastore --message late --after 1 --host host1",
      "lab fault remove --operation AddDatastore",
      "lab host set --fault-domain east",
      "lab disk set --device mpx.dkhba2:C0:T1:L0 --format-version 10 --data 1000",
      "lab check",
  };
  for (const char* line : kLines) {
    const auto messages = Run(line);
    fuzz::Require(messages.empty(), "the lab is prepared", line + (": " + Joined(messages)));
  }
  lab::Store::CloseForProcess();
}

/// False when the lab is refused.
bool IsOpened() {
  try {
    lab::ReadLab([](lab::Store&) {});
    return true;
  } catch (const KorelCtlException& failure) {
    return false;
  }
}

void RequireOnlyLabIsTouched(const std::string& sound) {
  for (const auto& entry : std::filesystem::directory_iterator(Place().folder)) {
    fuzz::Require(entry.path().filename().string().starts_with("lab.db"), "only the lab is written",
                  entry.path());
  }
  const std::filesystem::directory_iterator others(Place().others);
  fuzz::Require(std::distance(begin(others), end(others)) == 2, "nothing else is written");
  fuzz::Require(fuzz::ReadFile(Place().victim) == "a file of somebody else's",
                "other files stay as they are");
  fuzz::Require(fuzz::ReadFile(Place().sound) == sound, "a lab that is read stays as it is");
}

/// Nobody uses it, so the file is refused for what it holds and stays as it is.
void RequireRefused(const fuzz::LabFiles& files) {
  const bool isWhole = files.journal.empty();
  fuzz::Require(!isWhole || fuzz::ReadFile(Place().lab) == files.lab, "a refused file stays");
  for (const char* line : {"lab check", "lab undo", "lab history", "lab load --file SOUND"}) {
    // As in a process of its own: SQLite passes a damaged page that it has at hand.
    GoTo(Place().lab);
    fuzz::Require(!Run(line).empty(), "what is refused once is refused again", line);
  }
  fuzz::Require(!isWhole || fuzz::ReadFile(Place().lab) == files.lab, "a refused file stays");
  GoTo(Place().lab);
  if (!Run("lab init --force").empty()) return;
  fuzz::Require(!isWhole || fuzz::ReadFile(Place().lab + ".old") == files.lab,
                "what is replaced is set aside");
  fuzz::Require(Check().empty(), "a new lab is sound", Joined(Check()));
}

void Look() {
  const auto problems = Check();
  for (const char* line : kLooks) Run(line);
  const auto again = Check();
  // Of a damaged page SQLite says more when it reads it first.
  fuzz::Require(again.empty() == problems.empty(), "a check says the same twice",
                Joined(problems) + "and then\n" + Joined(again));
}

void Act(const std::vector<std::size_t>& acts) {
  const bool isSound = Check().empty();
  for (const std::size_t act : acts) {
    const char* line = kActs[act % kActs.size()];
    const auto failures = Run(line);
    if (!isSound) continue;
    const auto problems = Check();
    fuzz::Require(problems.empty(), "a sound lab stays sound", line + ("\n" + Joined(problems)));
    for (const std::string& failure : failures) {
      fuzz::Require(failure.find("cannot be used: ") == std::string::npos,
                    "a sound lab can be used", line + (": " + failure));
    }
  }
}

/// Compares the lab with a sound one, which is left as it was, and loads it there.
void RunFromSound(const fuzz::LabFiles& files, const std::string& sound) {
  GoTo(Place().sound);
  Run("lab diff --file " + Place().lab);
  const bool isLoaded = Run("lab load --file " + Place().lab).empty();
  fuzz::Require(!files.journal.empty() || fuzz::ReadFile(Place().lab) == files.lab,
                "a lab that is loaded stays as it is");
  fuzz::Require(Check().empty(), "a sound lab loads only sound ones", Joined(Check()));
  if (isLoaded) fuzz::Require(Run("lab undo").empty() && Check().empty(), "loading is undone");
  lab::Store::CloseForProcess();
  fuzz::WriteFile(Place().sound, sound);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string sound = [] {
    Prepare();
    return fuzz::ReadFile(Place().sound);
  }();
  static const auto labs = [] {
    auto made = fuzz::LabsToMutate(sound, Place().others);
    for (const auto& entry : std::filesystem::directory_iterator(Place().others)) {
      if (entry.path() != Place().sound && entry.path() != Place().victim) {
        std::filesystem::remove(entry.path());
      }
    }
    return made;
  }();
  fuzz::Pieces input(data, size);
  const std::size_t way = input.Below(3);
  const std::vector<std::size_t> acts = {input.Byte(), input.Byte()};
  StandOn(input.Below(2) == 0 ? "host1" : "host2");
  const fuzz::LabFiles files = fuzz::Mutated(labs, input, Place().victim);
  PutThere(files);
  if (way == 0) {
    RunFromSound(files, sound);
  } else if (!IsOpened()) {
    RequireRefused(files);
  } else {
    way == 1 ? Look() : Act(acts);
  }
  RequireOnlyLabIsTouched(sound);
  return 0;
}
