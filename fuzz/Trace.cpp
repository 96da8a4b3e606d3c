// The trace daemon's configuration file, shown and rewritten by the commands.
//
// - Whatever the file holds, "trace get" shows it, and "trace set" rewrites it: neither reports an
//   error.
// - Rewriting keeps every value, as far as no option changes it.
// - A second rewriting leaves the text as the first one made it.
// - Values are shown the same before and after, but for the volume that the daemon selected, which
//   rewriting drops.

#include <filesystem>
#include <nlohmann/json.hpp>

#include "autocli/run/Driver.h"
#include "fuzz/Support.h"
#include "korel/Tree.h"
#include "korel/trace/TraceConfig.h"
#include "platform/autocli/Declare.h"
#include "tests/support/RecordingHost.h"

namespace {

using Json = nlohmann::ordered_json;
using namespace OstrelCli::KorelNamespace;

const std::string& ConfigFile() {
  static const std::string file = fuzz::Folder() + "/etc/ostrel/korel/koreltraced.conf";
  static const bool isPlaced =
      std::filesystem::create_directories(std::filesystem::path(file).parent_path());
  fuzz::Require(isPlaced, "the file has a folder");
  return file;
}

/// The result of a command, which has to succeed.
Json Run(std::vector<std::string> words) {
  static const auto root = [] {
    auto space = Corvex::AutoCli::Namespace::New();
    Corvex::Declare::RegisterTop(*space, Tree());
    return space;
  }();
  test::RecordingHost host;
  host.root = fuzz::Folder();
  words.insert(words.begin(), {"--formatter", "json", "korel", "trace"});
  fuzz::MemorySink out;
  fuzz::MemorySink err;
  const int status = autocli::RunLine(words, {root}, {}, out, err);
  const Json answer = Json::parse(out.Text(), nullptr, false);
  fuzz::Require(status == 0 && answer.is_object() && answer["ok"] == true, "the command succeeds",
                out.Text());
  return answer["result"];
}

TraceValues Values() {
  test::RecordingHost host;
  host.root = fuzz::Folder();
  const auto values = ReadTraceConfig();
  fuzz::Require(values.has_value(), "the file is read");
  return *values;
}

void RequireSameValues(const TraceValues& old, const TraceValues& now) {
  for (const TraceNumber& number : kTraceNumbers) {
    fuzz::Require(TraceValue(old, number) == TraceValue(now, number), "a number is kept",
                  number.key);
  }
  fuzz::Require(TraceDirectory(old, kTraceVolume, "") == TraceDirectory(now, kTraceVolume, ""),
                "the volume is kept");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::WriteFile(ConfigFile(), fuzz::AsText(data, size));
  const TraceValues before = Values();
  Json shown = Run({"get"});
  const bool isUrgentLogged = shown["Log Urgent Traces To Syslog"] == true;
  const std::vector<std::string> rewrite = {"set", "--logtosyslog", isUrgentLogged ? "on" : "off"};
  Run(rewrite);
  const std::string after = fuzz::ReadFile(ConfigFile());
  RequireSameValues(before, Values());
  Run(rewrite);
  fuzz::Require(fuzz::ReadFile(ConfigFile()) == after, "a second rewriting changes nothing", after);
  Json shownAgain = Run({"get"});
  for (Json* one : {&shown, &shownAgain}) one->erase("KOREL Traces Directory");
  fuzz::Require(shown == shownAgain, "what is shown is kept", shown.dump() + shownAgain.dump());
  return 0;
}
