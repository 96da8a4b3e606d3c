#include <nlohmann/json.hpp>
#include <sstream>

#include "lab/model/Features.h"
#include "lab/model/InjectedFailures.h"
#include "lab/model/Lab.h"
#include "platform/base/FeatureList.h"
#include "tests/lab/Support.h"

namespace lab_test {
namespace {

using HskCtl::Korel::KorelUtil;
using testing::ElementsAre;

void AddFault(const std::string& operation, const std::string& message,
              std::optional<std::int64_t> count) {
  lab::ChangeLab([&](lab::Store& store) {
    lab::AddInjectedFailure(store, {operation, message, count});
  });
}

class CallTest : public RowsTest {
 protected:
  CallTest() { setenv("KOREL_LAB_CALLS", Path("calls").c_str(), 1); }

  /// The lines of the log.
  std::vector<std::string> Log() const {
    std::istringstream content(ReadFile(Path("calls")));
    std::vector<std::string> lines;
    for (std::string line; std::getline(content, line);) lines.push_back(line);
    return lines;
  }
};

TEST_F(CallTest, EachOperationIsOneLineAndConversionsAreNone) {
  KorelUtil::KorelUuidToString(KorelUtil::StringToKorelUuid(kClusterA));
  const auto host = HostControl();
  host->CreateCluster(kClusterA, true, false);
  EXPECT_NE(Failure([&] { host->AddDisks("a", {"b", "c"}); }), "");
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
          R"({"operation":"GetKorelInfo","arguments":[]})",
          R"({"operation":"CreateCluster","arguments":[")" + kClusterA + R"(",true,false]})",
          R"({"operation":"AddDisks","arguments":["a",["b","c"]],)"
          R"("error":"the host has no device 'a'; 'autocli lab disk list' lists those that it has"})",
          R"({"operation":"IsFeatureEnabled","arguments":[373]})"));
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
  const std::tuple<const char*, std::function<void()>, std::optional<std::int64_t>, const char*>
      cases[] = {{"SetResyncThrottle", set, 1, "!...."},
                 {"SetResyncThrottle", set, 3, "!!!.."},
                 {"GetResyncThrottle", get, 2, "!!..."},
                 {"GetResyncThrottle", get, {}, "!!!!!"},
                 {"GetResyncThrottle", set, 1, "....."}};
  for (const auto& [operation, call, count, strikes] : cases) {
    Again();
    AddFault(operation, "replaced", 9);
    AddFault(operation, "!", count);
    std::string all;
    for (const char* host : {"host1", "host2", "host1", "host2", "host1"}) {
      StandOn(host);
      const std::string message = Failure(call);
      all += message.empty() ? "." : message;
    }
    EXPECT_EQ(all, strikes) << operation;
  }
  Again();
  AddFault("SetResyncThrottle", "first", 2);
  AddFault("GetKorelInfo", "second", 1);
  EXPECT_EQ(HostControl(), nullptr);
  EXPECT_EQ(Failure([] { HostControl()->SetResyncThrottle(513); }), "first") << "before all else";
  EXPECT_EQ(lab::ReadLab(lab::AllInjectedFailures).size(), 1U);
  EXPECT_EQ(HostControl()->GetResyncThrottle(), 0);
  lab::ChangeLab(lab::ClearInjectedFailures);
  EXPECT_EQ(Failure(set), "");
  ExpectRefused([] { AddFault("AddDatastor", "x", 1); },
                "no host control operation is named 'AddDatastor', did you mean 'AddDatastore'?");
  ExpectRefused([] { AddFault("AddDatastore", "x", 0); },
                "the count of a fault must be at least 1");
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
