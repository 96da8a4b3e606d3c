// A command line, quoted as in a batch, against the whole tree of commands. Those of the plug-in
// act on a host that answers out of memory, those of the lab on a fresh lab; neither starts a
// program, nor writes a file that the line names. What stands after a last " #" says how the host
// is: see Prepare().
//
// - Whatever is typed, no sanitizer speaks, and the exit status is 0, 1 or 2: no line breaks a
//   command (4), and there is no plug-in to fail (3).
// - With --formatter json, and in a batch, the answer is one JSON document on one line, and nothing
//   goes to standard error. "ok" says that there are no errors, the kinds of the errors give the
//   exit status.
// - A line that is refused, or that asks for help, leaves the lab be and asks the host for nothing
//   but whether features are on, which is what options depend on.
// - The exit status and the host operations are the same in every format.
// - Nothing that is written holds control characters but line feeds and the colours that were asked
//   for, or anything that is no UTF-8.
// - Whatever can complete the last word is a line of plain text, and to ask for it changes nothing.
// - A word, quoted, is split off as the word that it was.

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "autocli/line/Line.h"
#include "autocli/program/Program.h"
#include "autocli/run/Driver.h"
#include "autocli/tools/Complete.h"
#include "autocli/tools/SplitLine.h"
#include "fuzz/Support.h"
#include "fuzz/WholeTree.h"
#include "lab/model/HostFiles.h"
#include "lab/model/Lab.h"
#include "lab/model/Operations.h"
#include "lab/store/Query.h"
#include "tests/support/RecordingHost.h"

namespace {

using Json = nlohmann::ordered_json;
using Words = std::vector<std::string>;

/// Each letter turns a switch of the host, a number makes one of its operations fail; the text is
/// what its datastores, disks and interfaces are called.
void Prepare(test::RecordingHost& host, const std::string& state) {
  const auto has = [&](char letter) { return state.find(letter) != std::string::npos; };
  host.root = fuzz::Folder();
  host.hasInfo = !has('i');
  host.enabled = has('e');
  host.clientMode = has('c');
  host.clientModeFeature = !has('C');
  host.metadataFeature = !has('m');
  host.stretched = has('s');
  host.encryption = has('x');
  host.trimFeature = !has('t');
  host.agentRemoved = !has('a');
  if (has('w')) host.nodeType = Tovrin::Korel::KorelNodeType::Witness;
  if (has('u')) host.randomUuid.clear();
  host.status = has('d') ? 3 : has('D') ? -1 : 0;
  const std::string uuid = "aaaaaaaa-0000-4000-8000-000000000001";
  host.joinedClusters = {uuid, state};
  if (has('l')) host.clusterUuid = uuid;
  host.datastores = {{uuid, state, uuid, true}};
  host.disks = {{"disk1", uuid}, {state, "aaaaaaaa-0000-4000-8000-000000000002"}};
  host.configuredDisks = {uuid};
  if (has('p')) host.poolDisks = {"disk1"};
  host.agents = {{.address = state}};
  host.agentEntries = {"entry", has('b') ? "bad entry" : state};
  host.interfaces = {{state, {}, {}, {}, {}, 1, 2, 3, 4, true, has('w'), ""}};
  if (has('n')) host.configured = {"hsk1 korel", "hsk1 witness"};
  host.number = std::atoi(state.c_str());
  const std::size_t digit = state.find_first_of("0123456789");
  if (digit == std::string::npos) return;
  const auto operation = static_cast<std::size_t>(std::atoi(&state[digit]));
  host.failures[std::string(lab::kOperations[operation % lab::kOperations.size()])] = state;
}

/// How often the lab's file was written to since it was opened.
int LabChanges() {
  return std::stoi(lab::Texts(lab::Store::ForProcess(), "SELECT total_changes()").front());
}

/// A lab whose memory has two commands, of which one can be taken back, and a file that is no text.
std::string FreshLab(const std::string& path) {
  setenv("KOREL_LAB", path.c_str(), 1);
  lab::InitLab({lab::StandardHost("host1")}, true);
  lab::Store::CloseForProcess();
  lab::ChangeLab([](lab::Store& store) {
    lab::AddHost(store, lab::StandardHost("host2"));
    lab::PutFile(store, lab::HostNamed(store, "host1"), {"/odd", "\x1b[2J=\xff\n\xc2\x9b", true});
  });
  lab::Store::CloseForProcess();
  return fuzz::ReadFile(path);
}

/// Makes the lab and the host's files as they were where a line has changed them.
void Restore() {
  static const std::string config = fuzz::Folder() + "/etc/ostrel/korel/koreltraced.conf";
  static const std::string path = fuzz::Folder() + "/lab.db";
  static const std::string lab = [] {
    std::filesystem::create_directories(std::filesystem::path(config).parent_path());
    return FreshLab(path);
  }();
  fuzz::WriteFile(config, "KORELTRACED_ROTATE_MAX_FILES=9\n");
  if (LabChanges() == 0) return;
  lab::Store::CloseForProcess();
  fuzz::WriteFile(path, lab);
}

struct Outcome {
  int status = 0;
  std::string out;
  std::string err;
  Words calls;
  bool isLabChanged = false;
};

/// Runs on a host in that state.
template <typename Work>
Outcome RunOn(const std::string& state, const Work& work) {
  Restore();
  test::RecordingHost host;
  Prepare(host, state);
  fuzz::MemorySink out;
  fuzz::MemorySink err;
  const int status = work(out, err);
  fuzz::Require(status >= 0 && status <= 2, "the exit status is 0, 1 or 2", out.Text());
  return {status, out.Text(), err.Text(), host.calls, LabChanges() > 0};
}

/// How the words are understood on a host in that state.
autocli::Line Understood(const std::string& state, const Words& words) {
  test::RecordingHost host;
  Prepare(host, state);
  return autocli::ReadLine(fuzz::WholeTree(), words);
}

/// What a command asks its host about to declare its options is no more than that.
bool HasDoneNothing(const Outcome& outcome) {
  return !outcome.isLabChanged && std::ranges::all_of(outcome.calls, [](const std::string& call) {
    const bool isSwitch = call.starts_with("Is") && call.find("Enabled") != std::string::npos;
    return isSwitch || call == "GetKorelPolicyClasses" || call == "DescribePolicyKeys";
  });
}

void RequireDocument(const Outcome& outcome) {
  fuzz::Require(outcome.err.empty(), "JSON leaves standard error empty", outcome.err);
  fuzz::Require(outcome.out.find('\n') + 1 == outcome.out.size(), "JSON is one line", outcome.out);
  const Json document = Json::parse(outcome.out, nullptr, false);
  fuzz::Require(document.is_object() && document.contains("command") && document.contains("result"),
                "the answer is a JSON document", outcome.out);
  int status = 0;
  for (const Json& error : document["errors"]) {
    fuzz::Require(!error["message"].get<std::string>().empty(), "an error says why", outcome.out);
    status = std::max(status, error["kind"] == "usage" ? 2 : error["kind"] == "command" ? 1 : 4);
  }
  fuzz::Require(outcome.status == status, "the errors give the exit status", outcome.out);
  fuzz::Require(document["ok"] == (status == 0), "\"ok\" is the absence of errors", outcome.out);
  const bool isRefused = status == 2;
  fuzz::Require(!isRefused || (document["result"].is_null() && HasDoneNothing(outcome)),
                "a refused line does nothing", outcome.out);
}

/// Without the escapes that colours are made of.
std::string WithoutColours(std::string text) {
  for (const char* escape : {"\x1b[1m", "\x1b[36m", "\x1b[1;31m", "\x1b[0m"}) {
    for (std::size_t at = 0; (at = text.find(escape, at)) != std::string::npos;) {
      text.erase(at, std::string_view(escape).size());
    }
  }
  return text;
}

void RequireSplitsAgain(const Words& words) {
  std::string line;
  for (const std::string& word : words) {
    line += " \"";
    for (const char c : word) line += (c == '"' || c == '\\' ? "\\" : "") + std::string(1, c);
    line += '"';
  }
  std::string problem;
  fuzz::Require(autocli::SplitLine(line, problem) == words && problem.empty(),
                "quoted words are split off as they were", line);
}

void RequireCompletes(const Words& words, const std::string& state) {
  const Outcome outcome = RunOn(state, [&](auto& out, auto&) {
    setenv("AUTOCLI_COMPLETING", std::to_string(getpid()).c_str(), 1);
    for (const auto& [value, description] : autocli::Complete(fuzz::WholeTree(), words)) {
      fuzz::Require((value + description).find('\n') == std::string::npos, "a candidate is a line");
      out.Buffer() += value + description;
    }
    unsetenv("AUTOCLI_COMPLETING");
    return 0;
  });
  fuzz::RequirePrintable(outcome.out);
  fuzz::Require(!outcome.isLabChanged, "completing changes nothing");
}

/// The program as people run it: tools, text formats, colours.
void RunAsTyped(const Words& words, const std::string& state, const Outcome& inJson) {
  Words arguments = words;
  arguments.insert(arguments.begin(), "autocli");
  const Outcome typed = RunOn(state, [&](auto& out, auto& err) {
    return autocli::Run(arguments, fuzz::WholeTree().root, fuzz::Plugins(), out, err);
  });
  const bool isColored = std::ranges::any_of(
      words, [](const std::string& word) { return word.starts_with("--color"); });
  for (const std::string& text : {typed.out, typed.err}) {
    fuzz::RequirePrintable(isColored ? WithoutColours(text) : text);
  }
  const bool isTool = !words.empty() && fuzz::WholeTree().FindTool(words[0]) != nullptr;
  const auto call = Understood(state, words);
  if (isTool || call.globals->HasParameter("formatter")) return;
  fuzz::Require(typed.status == inJson.status, "every format has the same exit status", typed.err);
  fuzz::Require(typed.calls == inJson.calls, "every format has the same calls");
  if (call.IsQuestion()) fuzz::Require(HasDoneNothing(typed), "a question does nothing");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string line = fuzz::AsText(data, size);
  std::string problem;
  Words words = autocli::SplitLine(line, problem);
  // One writes files where it is told to, the other ends the process when it takes long.
  const bool isTool = !words.empty() && (words[0] == "--reference" || words[0] == "--complete");
  if (!problem.empty() || isTool) return 0;
  RequireSplitsAgain(words);

  const std::size_t mark = line.rfind(" #");
  const std::string state = mark == std::string::npos ? "" : line.substr(mark + 2);
  RequireDocument(RunOn(state, [&](auto& out, auto&) {
    return autocli::RunBatchLine(words, 1, fuzz::WholeTree(), {}, out);
  }));
  Words inJson = words;
  inJson.insert(inJson.begin(), {"--formatter", "json"});
  const Outcome outcome = RunOn(state, [&](auto& out, auto& err) {
    return autocli::RunLine(inJson, fuzz::WholeTree(), {}, out, err);
  });
  const auto call = Understood(state, inJson);
  const bool isTree = outcome.status == 0 && call.globals->HasParameter("describe");
  if (isTree) {
    fuzz::Require(Json::accept(outcome.out), "a description is JSON", outcome.out);
  } else {
    RequireDocument(outcome);
  }
  RunAsTyped(words, state, outcome);
  RequireCompletes(words, state);
  return 0;
}
