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
using testing::IsEmpty;

void AddFault(const std::string& operation, const std::string& message,
              std::optional<std::int64_t> count = std::nullopt) {
  lab::InLab([&](lab::Store& store) { lab::AddFault(store, {operation, message, count}); });
}

class CallTest : public LabTest {
 protected:
  CallTest() { setenv("KOREL_LAB_CALLS", LogFile().c_str(), 1); }

  std::string LogFile() const { return Path("calls"); }

  /// The lines since the last time.
  std::vector<std::string> Log() const {
    std::istringstream content(ReadFile(LogFile()));
    std::vector<std::string> lines;
    for (std::string line; std::getline(content, line);) lines.push_back(line);
    std::filesystem::remove(LogFile());
    return lines;
  }
};

TEST_F(CallTest, EachOperationIsOneLine) {
  const auto host = HostControl();
  host->CreateCluster(kClusterA, true, false);
  host->AddDatastore({kDatastore1, "ds1", "", false});
  EXPECT_NE(Failure([&] { host->AddDisks("a", {"b", "c"}); }), "");
  EXPECT_NE(Failure([&] {
              host->JoinCluster({0xabcULL << 52U, 2}, Tovrin::Korel::KorelNodeType::Witness, "fd",
                                true, 0, 0);
            }),
            "");
  std::vector<std::string> uuids;
  KorelUtil::FetchDiskUuids(
      {std::make_shared<Tovrin::Korel::KorelDiskLun>(Tovrin::Korel::Uuid{0, 1}, "d")}, uuids, "",
      "");
  EXPECT_TRUE(FeatureList::IsEnabled(Feature::ClientMode));
  EXPECT_THAT(
      Log(),
      ElementsAre(
          R"({"operation":"GetKorelInfo","arguments":[]})",
          R"({"operation":"CreateCluster","arguments":[")" + kClusterA + R"(",true,false]})",
          R"({"operation":"AddDatastore","arguments":[{"uuid":")" + kDatastore1 +
              R"(","name":"ds1","clusterUuid":"","isDefault":false}]})",
          R"({"operation":"AddDisks","arguments":["a",["b","c"]],)"
          R"("error":"the host has no device 'a'"})",
          R"({"operation":"JoinCluster","arguments":["abc00000-0000-0000-0000-000000000002",1,)"
          R"("fd",true,0,0],"error":"there is no cluster abc00000-0000-0000-0000-000000000002"})",
          R"({"operation":"FetchDiskUuids","arguments":[[{"uuid":)"
          R"("00000000-0000-0000-0000-000000000001","name":"d"}],"",""]})",
          R"({"operation":"IsFeatureEnabled","arguments":[373]})"));
}

TEST_F(CallTest, ConversionsAndTheLabsOwnCommandsAreNotLogged) {
  KorelUtil::KorelUuidToString(KorelUtil::StringToKorelUuid(kClusterA));
  Tovrin::Misc::HostPath("/etc/x");
  AddFault("AddDisks", "x");
  EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(CallTest, LineOfHostileBytesIsValidJson) {
  const std::string name = "a\n\x1b[2J\xff\"\\ \xc3\xa9";
  EXPECT_NE(Failure([&] { HostControl()->AddDatastore({kDatastore1, name, "", false}); }), "");
  const auto lines = Log();
  ASSERT_EQ(lines.size(), 2U);
  const auto line = nlohmann::json::parse(lines[1]);
  EXPECT_EQ(line["arguments"][0]["name"], "a\n\x1b[2J\xef\xbf\xbd\"\\ \xc3\xa9");
}

TEST_F(CallTest, LogThatCannotBeWrittenIsRefusedBeforeAnythingChanges) {
  HostControl()->CreateCluster(kClusterA, true, false);
  const auto host = HostControl();
  std::filesystem::create_directory(Path("folder"));
  for (const auto& [path, why] : {std::pair{Path("folder"), "Is a directory"},
                                  std::pair{Path("no/such/file"), "No such file or directory"},
                                  std::pair{std::string(), "No such file or directory"}}) {
    SCOPED_TRACE(path);
    setenv("KOREL_LAB_CALLS", path.c_str(), 1);
    ExpectRefused(
        [&] {
          host->AddDatastore({kDatastore1, "ds1", "", false});
        },
        "KOREL_LAB_CALLS names a file that cannot be written, '" + path + "': " + why);
  }
  setenv("KOREL_LAB_CALLS", "/dev/full", 1);
  EXPECT_EQ(Failure([&] {
              host->AddDatastore({kDatastore1, "ds1", "", false});
            }),
            "AddDatastore was carried out but could not be written to KOREL_LAB_CALLS, "
            "'/dev/full': No space left on device");
}

TEST_F(CallTest, FaultComesBeforeTheOperationAndIsLogged) {
  const auto host = HostControl();
  AddFault("CreateCluster", "no power", 2);
  const std::string before = State();
  EXPECT_EQ(Failure([&] { host->CreateCluster(kClusterA, true, false); }), "no power");
  EXPECT_EQ(Failure([&] { host->CreateCluster("nonsense", true, false); }), "no power");
  EXPECT_NE(State(), before) << "counted down";
  EXPECT_EQ(host->GetClusterUuid(), kZeros);
  host->CreateCluster(kClusterA, true, false);
  EXPECT_EQ(Log().at(1), R"({"operation":"CreateCluster","arguments":[")" + kClusterA +
                             R"(",true,false],"error":"no power"})");
}

TEST_F(CallTest, ExactlyTheCountedCallsFailAcrossProcesses) {
  AddFault("GetNodeType", "gone", 3);
  EXPECT_EQ(FailuresInProcesses(8, [](int) { KorelUtil::GetNodeType(); }), 3);
}

TEST_F(CallTest, FaultWithoutACountStaysUntilCleared) {
  AddFault("GetNodeType", "first");
  AddFault("GetNodeType", "");
  for (int i = 0; i < 3; ++i) {
    EXPECT_THROW(KorelUtil::GetNodeType(), Tovrin::Lib::Korel::KorelCtlException);
  }
  EXPECT_EQ(lab::InLab(lab::AllFaults).size(), 1U) << "the second one replaced the first";
  lab::InLab(lab::ClearFaults);
  EXPECT_NO_THROW(KorelUtil::GetNodeType());
}

TEST_F(CallTest, FaultOfGetKorelInfoYieldsNoObjectButABrokenLabThrows) {
  AddFault("GetKorelInfo", "other version", 1);
  EXPECT_EQ(HostControl(), nullptr);
  EXPECT_THAT(Log(), ElementsAre(R"({"operation":"GetKorelInfo","arguments":[],)"
                                 R"("error":"other version"})"));
  setenv("KOREL_LAB", "relative", 1);
  EXPECT_EQ(Failure([] { HostControl(); }), "KOREL_LAB must be an absolute path, got 'relative'");
}

TEST_F(CallTest, RefusesFaultsThatCannotHappen) {
  const struct {
    const char* operation;
    std::int64_t count;
    const char* message;
  } cases[] = {
      {"AddDatastor", 1,
       "no host control operation is named 'AddDatastor', did you mean 'AddDatastore'?"},
      {"getnodetype", 1,
       "no host control operation is named 'getnodetype', did you mean 'GetNodeType'?"},
      {"", 1, "no host control operation is named ''"},
      {"Frobnicate", 1, "no host control operation is named 'Frobnicate'"},
      {"AddDatastore", 0, "the count of a fault must be at least 1"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.operation);
    ExpectRefused([&] { AddFault(each.operation, "x", each.count); }, each.message);
  }
}

TEST_F(CallTest, FeaturesAreOnUntilTheyAreSwitchedOff) {
  const struct {
    const char* name;
    std::function<bool()> ask;
  } cases[] = {
      {"client-mode", [] { return FeatureList::IsEnabled(Feature::ClientMode); }},
      {"rebuild-trim", KorelUtil::IsKorelRebuildTrimFssEnabled},
      {"metadata-node", KorelUtil::IsKorelMetadataNodeFeatureEnabled},
      {"korel2-config", KorelUtil::IsKorel2ConfigFssEnabled},
      {"archival-protection", KorelUtil::IsKorelDpArchivalProtectionFeatureEnabled},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    EXPECT_TRUE(each.ask());
    lab::InLab([&](lab::Store& store) { lab::SetFeature(store, each.name, false); });
    EXPECT_FALSE(each.ask());
  }
  EXPECT_FALSE(KorelUtil::IsKorelFeatureEnabled(Tovrin::Korel::KORELFeature::RebuildTrim));
  ExpectRefused(
      [] { lab::InLab([](lab::Store& store) { lab::SetFeature(store, "client", true); }); },
      "no feature is named 'client'");
}

}  // namespace
}  // namespace lab_test
