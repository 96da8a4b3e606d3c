#include <sys/wait.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "lab/memory/Copies.h"
#include "lab/memory/Undo.h"
#include "lab/model/Features.h"
#include "lab/model/InjectedFailures.h"
#include "lab/model/Lab.h"
#include "lab/store/Memory.h"
#include "platform/base/FeatureList.h"
#include "tests/lab/Support.h"

namespace lab_test {
namespace {

using HskCtl::Korel::KorelUtil;
using testing::ElementsAre;

void AddFault(const lab::InjectedFailure& failure) {
  lab::ChangeLab([&](lab::Store& store) { lab::AddInjectedFailure(store, failure); });
}

std::size_t CountEntries() {
  return lab::ReadLab([](lab::Store& store) { return lab::EntriesAfter(store, 0).size(); });
}

class CallTest : public RowsTest {
 protected:
  CallTest() { setenv("KOREL_LAB_CALLS", Path("calls").c_str(), 1); }

  /// The lines of the log.
  std::vector<std::string> Log() const {
    std::istringstream content(ReadFile(Path("calls")));
    std::vector<std::string> lines;
    for (std::string line; std::getline(content, line);) {
      auto json = nlohmann::ordered_json::parse(line);
      EXPECT_EQ(json["process"], getpid());
      EXPECT_THAT(json["time"], testing::MatchesRegex("....-..-..T..:..:..[.]...Z"));
      json.erase("process");
      json.erase("time");
      lines.push_back(json.dump());
    }
    return lines;
  }
};

TEST_F(CallTest, EachOperationIsOneLineAndConversionsAreNone) {
  KorelUtil::KorelUuidToString(KorelUtil::StringToKorelUuid(kClusterA));
  const auto host = HostControl();
  host->CreateCluster(kClusterA, true, false);
  EXPECT_NE(Failure([&] { host->AddDisks("a", {"b", "c"}); }), "");
  Command(7, "of a batch");
  EXPECT_TRUE(FeatureList::IsEnabled(Feature::ClientMode));
  // Bytes that are no text still make a line of JSON.
  EXPECT_NE(Failure([&] { host->SetFaultDomainName("a\n\x1b[2J\xff\"\\ \xc3\xa9"); }), "");
  auto lines = Log();
  EXPECT_EQ(nlohmann::json::parse(lines.back())["arguments"][0],
            "a\n\x1b[2J\xef\xbf\xbd\"\\ \xc3\xa9");
  lines.pop_back();
  EXPECT_THAT(
      lines,
      ElementsAre(
          R"({"host":"host1","operation":"GetKorelInfo","arguments":[]})",
          R"({"host":"host1","operation":"CreateCluster","arguments":[")" + kClusterA +
              R"(",true,false]})",
          R"({"host":"host1","operation":"AddDisks","arguments":["a",["b","c"]],)"
          R"("error":"the host has no device 'a'; 'autocli lab disk list' lists those that it has"})",
          R"({"host":"host1","line":7,"operation":)"
          R"("IsFeatureEnabled","arguments":[373]})"));
}

TEST_F(CallTest, LogThatCannotBeWrittenIsRefusedBeforeAnythingChanges) {
  const auto host = HostControl();
  const auto name = [&] { host->SetFaultDomainName("east"); };
  setenv("KOREL_LAB_CALLS", "/tmp", 1);
  ExpectRefused(name,
                "KOREL_LAB_CALLS names a file that cannot be written, '/tmp': Is a directory");
  setenv("KOREL_LAB_CALLS", "/dev/full", 1);
  EXPECT_EQ(Failure(name),
            "SetFaultDomainName was carried out but could not be written to KOREL_LAB_CALLS, "
            "'/dev/full': No space left on device");
}

TEST_F(CallTest, FaultsStrikeAsOftenAsTheyAreToldWhicheverHostAsks) {
  AddHostsUpTo(2);
  const auto set = [] { HostControl()->SetResyncThrottle(1); };
  const auto get = [] { HostControl()->GetResyncThrottle(); };
  using Faults = std::vector<lab::InjectedFailure>;
  const std::tuple<std::function<void()>, Faults, const char*> cases[] = {
      {set, {{"SetResyncThrottle", "", "replaced", 9}, {"SetResyncThrottle", "", "!", 1}}, "!...."},
      {set, {{"SetResyncThrottle", "", "!", 3}}, "!!!.."},
      {get, {{"GetResyncThrottle", "", "!", 2}}, "!!..."},
      {get, {{"GetResyncThrottle", "", "!", {}}}, "!!!!!"},
      {set, {{"GetResyncThrottle", "", "!", 1}}, "....."},
      {set, {{"SetResyncThrottle", "", "!", 1, 2}}, "..!.."},
      {get, {{"GetResyncThrottle", "", "!", {}, 3}}, "...!!"},
      {get, {{"GetResyncThrottle", "", {}, {}, 0, 1}}, "....."},
      {get, {{"GetResyncThrottle", "host2", "!", 1}}, ".!..."},
      {get, {{"GetResyncThrottle", "host2", "!", 1}, {"GetResyncThrottle", "", "x", 3}}, "x!xx."},
      {set,
       {{"SetResyncThrottle", "host2", "!", 1, 1}, {"SetResyncThrottle", "", "x", {}, 1}},
       ".xx!x"},
  };
  for (const auto& [call, faults, strikes] : cases) {
    Again();
    for (const auto& fault : faults) AddFault(fault);
    const std::size_t entries = CountEntries();
    std::string all;
    for (const char* host : {"host1", "host2", "host1", "host2", "host1"}) {
      StandOn(host);
      const std::string message = Failure(call);
      all += message.empty() ? "." : message;
    }
    EXPECT_EQ(all, strikes);
    EXPECT_LE(CountEntries(), entries + 2) << "counting leaves no entry, setting does on each host";
  }
  Again();
  AddFault({"SetResyncThrottle", "", "first", 2});
  AddFault({"GetKorelInfo", "", "second", 1});
  EXPECT_EQ(HostControl(), nullptr);
  EXPECT_EQ(Failure([] { HostControl()->SetResyncThrottle(513); }), "first") << "before all else";
  EXPECT_EQ(HostControl()->GetResyncThrottle(), 0);
  const auto listed = lab::ReadLab(lab::AllInjectedFailures);
  EXPECT_EQ(listed.at(0).CallsLeft(), 0);
  EXPECT_EQ(listed.at(1).CallsLeft(), 1);
}

TEST_F(CallTest, FaultsGoOneByOneAndCountOnAfterTheyWereTakenBack) {
  AddHostsUpTo(2);
  const auto get = [] { HostControl()->GetResyncThrottle(); };
  const auto remove = [](const char* operation, const std::optional<std::string>& host) {
    lab::ChangeLab([&](lab::Store& store) { lab::RemoveInjectedFailure(store, operation, host); });
  };
  AddFault({"GetResyncThrottle", "", "any", 3});
  AddFault({"GetResyncThrottle", "host2", "own", {}});
  StandOn("host1");
  EXPECT_EQ(Failure(get), "any");
  remove("GetResyncThrottle", "host2");
  StandOn("host2");
  EXPECT_EQ(Failure(get), "any");
  ExpectRefused([&] { remove("GetResyncThrottle", "host2"); },
                "there is no fault of GetResyncThrottle on host 'host2'; 'autocli lab fault list' "
                "lists them");
  Command(1, "remove");
  remove("GetResyncThrottle", {});
  EXPECT_EQ(Failure(get), "");
  Command(2, "undo");
  lab::UndoLastCommand();
  EXPECT_EQ(Failure(get), "any");
  EXPECT_EQ(Failure(get), "") << "it struck twice before it was removed";
  AddFault({"GetResyncThrottle", "", "again", 1});
  lab::SaveLab(Path("armed"), false);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(Failure(get), "again") << "a lab that is loaded counts as the saved one did";
    EXPECT_EQ(Failure(get), "");
    lab::LoadLab(Path("armed"));
  }
  lab::ChangeLab(lab::ClearInjectedFailures);
  EXPECT_EQ(Failure(get), "");
}

TEST_F(CallTest, DelayedCallsKeepNobodyWaiting) {
  AddHostsUpTo(2);
  AddFault({"SetResyncThrottle", "host1", {}, 1, 0, 2000});
  StandOn("host1");
  const auto start = std::chrono::steady_clock::now();
  const pid_t child = fork();
  if (child == 0) {
    lab::Store::CloseForProcess();
    HostControl()->SetResyncThrottle(7);
    _exit(0);
  }
  while (lab::ReadLab(lab::AllInjectedFailures).front().calls == 0) usleep(1000);
  StandOn("host2");
  HostControl()->SetResyncThrottle(5);
  EXPECT_EQ(waitpid(child, nullptr, WNOHANG), 0) << "host2 waited for host1";
  waitpid(child, nullptr, 0);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(2000));
  StandOn("host1");
  EXPECT_EQ(HostControl()->GetResyncThrottle(), 7) << "a slow operation is carried out";
}

TEST_F(CallTest, ImpossibleFaultsAreRefused) {
  const std::pair<lab::InjectedFailure, const char*> cases[] = {
      {{"AddDatastor", "", "x"},
       "no host control operation is named 'AddDatastor', did you mean 'AddDatastore'?; 'autocli "
       "lab fault operations' lists them"},
      {{"AddDatastore", "", "x", 0}, "the count of a fault must be at least 1"},
      {{"AddDatastore", "", "x", {}, -1}, "the calls that a fault spares cannot be fewer than 0"},
      {{"AddDatastore", "", "x", {}, 0, 3600001},
       "the delay of a fault must be 0 to 3600000 milliseconds"},
      {{"AddDatastore", "", {}},
       "a fault needs a message, with which calls fail, or a delay, or both"},
  };
  for (const auto& [failure, message] : cases) {
    ExpectRefused([&failure = failure] { AddFault(failure); }, message);
  }
  EXPECT_THAT(Failure([] {
                AddFault({"AddDatastore", "host9", "x"});
              }),
              testing::HasSubstr("'host9'"));
}

TEST_F(CallTest, FeaturesAreOnUntilTheyAreSwitchedOff) {
  const auto switchOff = [](const char* name) {
    lab::ChangeLab([&](lab::Store& store) { lab::SetFeature(store, name, false); });
  };
  using Tovrin::Korel::KORELFeature;
  const std::tuple<const char*, KORELFeature, std::function<bool()>> features[] = {
      {"client-mode", KORELFeature::ClientMode,
       [] { return FeatureList::IsEnabled(Feature::ClientMode); }},
      {"rebuild-trim", KORELFeature::RebuildTrim, KorelUtil::IsKorelRebuildTrimFssEnabled},
      {"metadata-node", KORELFeature::MetadataNode, KorelUtil::IsKorelMetadataNodeFeatureEnabled},
      {"korel2-config", KORELFeature::Korel2Config, KorelUtil::IsKorel2ConfigFssEnabled},
      {"archival-protection", KORELFeature::ArchivalProtection,
       KorelUtil::IsKorelDpArchivalProtectionFeatureEnabled},
  };
  for (const auto& [name, feature, isEnabled] : features) {
    EXPECT_TRUE(isEnabled() && KorelUtil::IsKorelFeatureEnabled(feature)) << name;
    switchOff(name);
    EXPECT_FALSE(isEnabled() || KorelUtil::IsKorelFeatureEnabled(feature)) << name;
  }
  ExpectRefused([&] { switchOff("client"); }, "no feature is named 'client'");
}

}  // namespace
}  // namespace lab_test
