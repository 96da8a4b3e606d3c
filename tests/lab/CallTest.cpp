#include <nlohmann/json.hpp>
#include <sstream>

#include "lab/model/Faults.h"
#include "lab/model/Features.h"
#include "lab/model/Lab.h"
#include "platform/base/FeatureList.h"
#include "tests/lab/Support.h"

namespace lab_test {
namespace {

using HskCtl::Korel::KorelUtil;
using testing::ElementsAre;

void AddFault(const std::string& operation, const std::string& message,
              std::optional<std::int64_t> count = std::nullopt) {
  lab::InLab([&](lab::Store& store) { lab::AddFault(store, {operation, message, count}); });
}

class CallTest : public LabTest {
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
  host->AddDatastore({kDatastore1, "ds1", "", false});
  EXPECT_NE(Failure([&] { host->AddDisks("a", {"b", "c"}); }), "");
  EXPECT_NE(Failure([&] { host->LeaveCluster({0xabcULL << 52U, 2}, true); }), "");
  EXPECT_TRUE(FeatureList::IsEnabled(Feature::ClientMode));
  // Bytes that are no text still make a line of JSON.
  EXPECT_NE(Failure([&] { host->SetFaultDomainName("a\n\x1b[2J\xff\"\\ \xc3\xa9"); }), "");
  auto lines = Log();
  EXPECT_EQ(nlohmann::json::parse(lines.back())["arguments"][0],
            "a\n\x1b[2J\xef\xbf\xbd\"\\ \xc3\xa9");
  lines.pop_back();
  EXPECT_THAT(
      lines, ElementsAre(
                 R"({"operation":"GetKorelInfo","arguments":[]})",
                 R"({"operation":"CreateCluster","arguments":[")" + kClusterA + R"(",true,false]})",
                 R"({"operation":"AddDatastore","arguments":[{"uuid":")" + kDatastore1 +
                     R"(","name":"ds1","clusterUuid":"","isDefault":false}]})",
                 R"({"operation":"AddDisks","arguments":["a",["b","c"]],)"
                 R"("error":"the host has no device 'a'"})",
                 testing::StartsWith(R"({"operation":"LeaveCluster","arguments":[)"
                                     R"("abc00000-0000-0000-0000-000000000002",true],"error":")"),
                 R"({"operation":"IsFeatureEnabled","arguments":[373]})"));
}

TEST_F(CallTest, LogThatCannotBeWrittenIsRefusedBeforeAnythingChanges) {
  const auto host = HostControl();
  const auto name = [&] { host->SetFaultDomainName("east"); };
  for (const auto& [path, why] :
       {std::pair{"/tmp", "Is a directory"}, std::pair{"", "No such file or directory"}}) {
    setenv("KOREL_LAB_CALLS", path, 1);
    ExpectRefused(name, Tovrin::Misc::StrCat("KOREL_LAB_CALLS names a file that cannot be written, "
                                             "'",
                                             path, "': ", why));
  }
  setenv("KOREL_LAB_CALLS", "/dev/full", 1);
  EXPECT_EQ(Failure(name),
            "SetFaultDomainName was carried out but could not be written to KOREL_LAB_CALLS, "
            "'/dev/full': No space left on device");
}

TEST_F(CallTest, FaultComesBeforeTheOperationAndIsLogged) {
  const auto host = HostControl();
  AddFault("CreateCluster", "no power", 2);
  for (const char* uuid : {kClusterA.c_str(), "nonsense"}) {
    EXPECT_EQ(Failure([&] { host->CreateCluster(uuid, true, false); }), "no power");
  }
  EXPECT_EQ(host->GetClusterUuid(), kZeros);
  host->CreateCluster(kClusterA, true, false);
  EXPECT_EQ(Log().at(1), R"({"operation":"CreateCluster","arguments":[")" + kClusterA +
                             R"(",true,false],"error":"no power"})");
  AddFault("GetKorelInfo", "other version", 1);
  EXPECT_EQ(HostControl(), nullptr);
}

TEST_F(CallTest, ExactlyTheCountedCallsFailAcrossProcessesAndOthersUntilCleared) {
  AddFault("GetNodeType", "gone", 3);
  EXPECT_EQ(FailuresInProcesses(8, [](int) { KorelUtil::GetNodeType(); }), 3);
  AddFault("GetNodeType", "first");
  AddFault("GetNodeType", "second");
  for (int i = 0; i < 3; ++i) EXPECT_EQ(Failure([] { KorelUtil::GetNodeType(); }), "second");
  lab::InLab(lab::ClearFaults);
  EXPECT_EQ(Failure([] { KorelUtil::GetNodeType(); }), "") << "the first one was replaced";
}

TEST_F(CallTest, RefusesFaultsThatCannotHappen) {
  const std::string unknown = "no host control operation is named ";
  const std::tuple<std::string, int, std::string> cases[] = {
      {"AddDatastor", 1, unknown + "'AddDatastor', did you mean 'AddDatastore'?"},
      {"", 1, unknown + "''"},
      {"AddDatastore", 0, "the count of a fault must be at least 1"},
  };
  for (const auto& [operation, count, message] : cases) {
    ExpectRefused([&, &name = operation, times = count] { AddFault(name, "x", times); }, message);
  }
}

TEST_F(CallTest, FeaturesAreOnUntilTheyAreSwitchedOff) {
  const std::pair<const char*, std::function<bool()>> cases[] = {
      {"client-mode", [] { return FeatureList::IsEnabled(Feature::ClientMode); }},
      {"rebuild-trim", KorelUtil::IsKorelRebuildTrimFssEnabled},
      {"metadata-node", KorelUtil::IsKorelMetadataNodeFeatureEnabled},
      {"korel2-config", KorelUtil::IsKorel2ConfigFssEnabled},
      {"archival-protection", KorelUtil::IsKorelDpArchivalProtectionFeatureEnabled},
  };
  const auto switchOff = [](const char* name) {
    lab::InLab([&](lab::Store& store) { lab::SetFeature(store, name, false); });
  };
  for (const auto& [name, isOn] : cases) {
    EXPECT_TRUE(isOn()) << name;
    switchOff(name);
    EXPECT_FALSE(isOn()) << name;
  }
  ExpectRefused([&] { switchOff("client"); }, "no feature is named 'client'");
}

}  // namespace
}  // namespace lab_test
