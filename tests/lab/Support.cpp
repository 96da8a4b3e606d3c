#include "tests/lab/Support.h"

#include <unistd.h>

#include <cstdlib>
#include <map>
#include <sstream>

#include "lab/conversions/Uuids.h"
#include "lab/model/Clusters.h"
#include "lab/model/Disks.h"
#include "lab/model/Hardware.h"
#include "lab/model/HostFiles.h"
#include "lab/model/HostState.h"
#include "lab/model/Inventory.h"
#include "lab/model/TraceDaemon.h"
#include "platform/hostctl/Optional.h"
#include "tests/support/Database.h"

namespace lab_test {

using Tovrin::Lib::Korel::KorelCtlException;

void StandOn(const std::string& host) { setenv("KOREL_LAB_HOST", host.c_str(), 1); }

void AddHostsUpTo(int last) {
  for (int i = 2; i <= last; ++i) EXPECT_EQ(Play("1 addhost host" + std::to_string(i)), "");
}

std::unique_ptr<Tovrin::Korel::KorelInfo> HostControl() {
  return Tovrin::Lib::Korel::KorelPluginFactory::GetKorelPlugin()->GetKorelInfo();
}

std::unique_ptr<Tovrin::Korel::KorelInfo> At(const std::string& host) {
  StandOn(host);
  return HostControl();
}

std::string Failure(const std::function<void()>& work) {
  try {
    work();
    return {};
  } catch (const KorelCtlException& failure) {
    return failure.GetMessage();
  }
}

std::string State() {
  lab::ReadLab([](lab::Store&) {});  // makes it if there is none
  return test::RowsOf(std::getenv("KOREL_LAB"), "'faultCalls', 'history'");
}

void ExpectRefused(const std::function<void()>& work, const std::string& message) {
  const std::string before = State();
  EXPECT_EQ(Failure(work), message);
  EXPECT_EQ(State(), before);
}

void Command(int number, const std::string& line) {
  const std::string text = std::to_string(getpid()) + " " + std::to_string(number) + " " + line;
  setenv("AUTOCLI_LINE", text.c_str(), 1);
}

void Sql(const std::string& sql) { test::RunSql(std::getenv("KOREL_LAB"), sql); }

LabTest::LabTest() {
  setenv("KOREL_LAB", LabFile().c_str(), 1);
  for (const char* variable :
       {"KOREL_LAB_HOST", "KOREL_LAB_CALLS", "KOREL_LAB_WAIT", "AUTOCLI_LINE"}) {
    unsetenv(variable);
  }
}

namespace {

using HostInterface = Tovrin::Korel::KorelInfo;
using HskCtl::Korel::KorelUtil;
using Tovrin::Korel::KorelIpAddress;
using Tovrin::Korel::KorelNodeType;
using Datastore = Tovrin::Korel::KorelDatastore;
using AgentType = Tovrin::Korel::KorelUnicastAgentType;
using Tovrin::Network::Ipv4Address;
using Tovrin::Network::Ipv6Address;

/// What a verb is given: the host, and the words that follow.
struct Act {
  HostInterface* operator->() const { return &host; }
  /// Empty beyond the last one.
  std::string operator[](std::size_t i) const { return i < words.size() ? words[i] : ""; }
  bool Has(const char* word) const { return std::count(words.begin(), words.end(), word) > 0; }
  std::int64_t Number(std::size_t i) const { return std::stoll((*this)[i]); }
  Texts From(std::ptrdiff_t i) const {
    return {words.begin() + std::min(i, std::ssize(words)), words.end()};
  }
  std::optional<int> Told(std::size_t i) const {
    return (*this)[i] == "so" ? std::nullopt : std::optional(static_cast<int>(Number(i)));
  }
  Tovrin::Korel::Uuid Uuid() const { return KorelUtil::StringToKorelUuid(words.at(0)); }
  /// The second word by its first letter, of those of the values.
  template <typename Enum>
  Enum OneOf(const char* letters) const {
    return static_cast<Enum>(std::string(letters).find(words.at(1)[0]));
  }
  /// The first word is a UUID, and so no name of a device.
  bool IsUuid() const { return (*this)[0].size() == kZeros.size(); }
  /// Normal hosts, nodes, witnesses, metadata nodes and remote ones by their first letters.
  template <typename Type>
  Type Kind(std::size_t i) const {
    return static_cast<Type>(std::string("nwmr").find(((*this)[i] + "n")[0]));
  }

  HostInterface& host;
  Texts words;
};

KorelIpAddress Group(const std::string& text) {
  const bool isV6 = text.find(':') != std::string::npos;
  if (isV6) return {true, {}, Ipv6Address(text), text};
  return {false, Ipv4Address(text), {}, text};
}

/// An interface with the traffic types that are joined by a plus, and "key=value" for what is not
/// to be as below.
void SetInterface(const Act& act) {
  std::map<std::string, std::string> values{{"a4", "224.2.3.4"}, {"a6", "FF19:0:0:0:0:2:3:4"},
                                            {"m4", "224.1.2.3"}, {"m6", "ff19::1:2:3"},
                                            {"ap", "23451"},     {"mp", "12345"},
                                            {"up", "12321"},     {"ttl", "5"}};
  for (const std::string& word : act.From(2)) {
    values.at(word.substr(0, word.find('='))) = word.substr(word.find('=') + 1);
  }
  const auto number = [&](const char* key) { return std::stoll(values.at(key)); };
  const auto carries = [&](const char* type) { return act[1].find(type) != std::string::npos; };
  act->SetHsknicConfig({act[0], Group(values["a4"]), Group(values["a6"]), Group(values["m4"]),
                        Group(values["m6"]), number("ap"), number("mp"), number("up"),
                        number("ttl"), carries("korel"), carries("witness"), ""});
}

void Rebuild(const Act& act) {
  std::vector<std::string> skipped;
  const auto rebuild =
      act.IsUuid() ? &HostInterface::RebuildDiskGroupByUuid : &HostInterface::RebuildDiskGroup;
  (act.host.*rebuild)(act[0], act[1], static_cast<int>(act.Number(2)), act.Has("force"), skipped);
}

using A = const Act&;

const std::map<std::string, void (*)(A)> kVerbs = {
    {"create", [](A a) { a->CreateCluster(a[0], !a.Has("once"), false); }},
    {"join", [](A a) { a->JoinCluster(a.Uuid(), a.Kind<KorelNodeType>(1), a[2], false, 0, 0); }},
    {"client", [](A a) { a->JoinClientCluster(a[0], false); }},
    {"leave", [](A a) { a->LeaveCluster(a.Uuid(), false); }},
    {"restore", [](A a) { a->RestoreCluster(a.Has("boot"), a.Has("postboot")); }},
    {"reboot", [](A) { Own(lab::Reboot); }},
    {"type", [](A a) { Own(lab::SetNodeType, a.Kind<KorelNodeType>(0)); }},
    {"domain", [](A a) { a.words.empty() ? a->ResetFaultDomain() : a->SetFaultDomainName(a[0]); }},
    {"prefer", [](A a) { a->SetPreferredFaultDomain(a[1], a[0]); }},
    {"encrypt", [](A a) { a->SetDataInTransitEncryption(a[0], a[1] == "on", a[2], 0); }},
    {"rekey", [](A a) { a->SetRekeyInterval(a[0], a.Number(1)); }},
    {"max", [](A a) { a->SetKorelMaxEnabled(a[0] == "on"); }},
    {"addhost",
     [](A a) {
       lab::ChangeLab([&](lab::Store& store) { lab::AddHost(store, lab::StandardHost(a[0])); });
     }},
    {"removehost",
     [](A a) {
       lab::ChangeLab(
           [&](lab::Store& store) { lab::RemoveHost(store, lab::HostNamed(store, a[0])); });
     }},
    {"plug",
     [](A a) {
       Own(lab::AddDevice,
           lab::DeviceInventory{a[0], a.Has("flash"), a.Has("tagged"), a.Number(1)});
     }},
    {"unplug", [](A a) { Own(lab::RemoveDevice, a[0]); }},
    {"wire", [](A a) { Own(lab::AddInterface, a[0]); }},
    {"unwire", [](A a) { Own(lab::RemoveInterface, a[0]); }},
    {"option",
     [](A a) {
       KorelUtil::SetTracedLogOptions({{a[0], a[1]}, {"urgent_num_of_files", "3"}});
     }},
    {"throttle", [](A a) { a->SetResyncThrottle(a.Number(0)); }},
    {"rate", [](A a) { Own(lab::SetResyncRate, a.Number(0)); }},
    {"maintain", [](A) { Own(lab::StartMaintenance); }},
    {"cancel", [](A) { KorelUtil::DecomCancel(); }},
    {"policy",
     [](A a) { SetDefaultPolicy(a.host, KorelUtil::StringToKorelPolicyClass(a[0]), a[1]); }},
    {"unpolicy",
     [](A a) {
       if (a.words.empty()) return a->ClearDefaultPolicies();
       ClearDefaultPolicy(a.host, KorelUtil::StringToKorelPolicyClass(a[0]));
     }},
    {"add", [](A a) { a->AddDatastore(Datastore(a[0], a[1], a[2], a.Has("default"))); }},
    {"rename", [](A a) { a->SetDatastoreName(a[0], a[1]); }},
    {"remove", [](A a) { a->RemoveDatastore(a[0]); }},
    {"clear", [](A a) { a->ClearDatastores(); }},
    // Type, UUID, address, port, cluster; then what is not said of most.
    {"agent",
     [](A a) {
       a->AddUnicastAgent(a[1], a.Kind<AgentType>(0), !a.Has("multicast"), a[2], a.Number(3),
                          !a.Has("unbound"), a[6], "", a[7], a[4]);
     }},
    {"unagent",
     [](A a) {
       a->RemoveUnicastAgent(a[1], a[2], a.Number(3), a.Kind<AgentType>(0), 0, a[4], false);
     }},
    {"interface", SetInterface},
    {"uninterface", [](A a) { a->RemoveHsknic(a[0], a.Has("force"), a[1]); }},
    {"clearnet", [](A a) { a->ClearNetworkConfig(); }},
    {"restorenet", [](A a) { a->RestoreNetworkConfig(); }},
    {"claim", [](A a) { a->AddDisks(a[0], a.From(1)); }},
    {"unclaim",
     [](A a) { a.IsUuid() ? a->RemoveDiskByUuid(a[0], a[1]) : a->RemoveDisk(a[0], a[1]); }},
    {"ungroup", [](A a) { a->RemoveDiskGroup(a[0], a[1]); }},
    {"pool", [](A a) { AddStoragePoolDisks(a.host, a.From(0)); }},
    {"unpool",
     [](A a) {
       a.IsUuid() ? RemoveStoragePoolDiskByUuid(a.host, a[0], a[1])
                  : RemoveStoragePoolDisk(a.host, a[0], a[1]);
     }},
    {"mount", [](A a) { a.IsUuid() ? a->MountDiskByUuid(a[0]) : a->MountDisk(a[0]); }},
    {"unmount",
     [](A a) { a.IsUuid() ? a->UnmountDiskByUuid(a[0]) : a->UnmountDisk(a[0], a.Has("force")); }},
    {"mountgroup", [](A a) { a->MountDiskGroup(a[0], a.Has("force")); }},
    {"unmountgroup", [](A a) { a->UnmountDiskGroup(a[0], a.Has("force")); }},
    {"emptygroup", [](A a) { a->UnmountDiskGroupWithMode(a[0], a[1]); }},
    {"rebuild", Rebuild},
    // What the init script of the trace daemon is told, and what it is expected to answer.
    {"exec",
     [](A a) {
       const int answer = KorelUtil::KorelExec(lab::kTraceDaemon, a[0], false, true, false);
       EXPECT_EQ(std::to_string(answer), a[1]) << a[0];
     }},
    // The answers to "status" and "restart", of which "so" is what is so.
    {"tell",
     [](A a) {
       Own(lab::SetTraceAnswers, lab::TraceAnswers{a.Told(0), a.Told(1)});
     }},
    {"file",
     [](A a) {
       Own(lab::PutFile, lab::HostFile{a[0], Long("(x)" + a[1]), a.Has("fixed")});
     }},
    {"unfile", [](A a) { Own(lab::RemoveFile, a[0]); }},
    {"flash", [](A a) { a->AddCapacityFlashTag(a[0]); }},
    {"unflash", [](A a) { a->RemoveCapacityFlashTag(a[0]); }},
    {"direct", [](A a) { a->AddKorelDirectTag(a[0]); }},
    {"undirect", [](A a) { a->RemoveKorelDirectTag(a[0]); }},
    {"sick", [](A a) { Own(lab::SetHealth, a[0], false); }},
    {"well", [](A a) { Own(lab::SetHealth, a[0], true); }},
    {"occupied", [](A a) { Own(lab::SetOccupant, a[0], a.OneOf<lab::Occupant>("npo")); }},
    {"saving", [](A a) { Own(lab::SetEfficiency, a[0], a.OneOf<lab::Efficiency>("ndc")); }},
    {"encrypted", [](A a) { Own(lab::SetEncryption, a[0], a.OneOf<lab::DiskEncryption>("nml")); }},
    {"wrong", [](A a) { Own(lab::SetWrongChecksum, a[0], a.OneOf<lab::WrongChecksum>("nde")); }},
    {"data", [](A a) { Own(lab::SetData, a[0], a.Number(1)); }},
    {"format", [](A a) { Own(lab::SetFormatVersion, a[0], static_cast<int>(a.Number(1))); }},
};

const std::pair<const char*, std::string> kShort[] = {
    {"A", kClusterA},
    {"B", kClusterB},
    {"C", "cccccccc-0000-4000-8000-000000000003"},
    {"D", "dddddddd-0000-4000-8000-000000000004"},
    {"dA", "570c9813-f857-80cc-a7cd-93cf37318925"},
    {"dB", "1386a853-2a94-86d8-beb0-e6bc945371f8"},
    {"d1", kDatastore1},
    {"d2", "d0000000-0000-4000-8000-000000000002"},
    {"n1", "11111111-0000-4000-8000-000000000001"},
    {"n2", "22222222-0000-4000-8000-000000000002"},
    {"zeros", kZeros},
    {"thumb", "01:23:45:67:89:AB:CD:EF:01:23:45:67:89:ab:cd:ef:01:23:45:67"},
    {"all", "EvacuateAllData"},
    {"half", "EnsureObjectAccessibility"},
    {"@conf", lab::kTraceConfigFile},
    {"in-groups", "on other mounted disks of the disk groups"},
    {"in-pool", "on other mounted disks of the storage pool"}};

/// Of the host that is stood on.
std::string UuidOfDevice(const std::string& name) {
  return lab::FindByName(Own(lab::DevicesOf), name).uuid;
}

/// A word as a text: "%0a" is that byte, "(xy)3" is "xyxyxy".
std::string Unfolded(const std::string& word) {
  std::string text;
  for (std::size_t i = 0; i < word.size(); ++i) {
    if (word[i] == '%') {
      text += static_cast<char>(std::stoi(word.substr(i + 1, 2), nullptr, 16));
      i += 2;
    } else if (word[i] == '(') {
      const std::size_t end = word.find(')', i);
      std::size_t digits = 0;
      const int count = std::stoi(word.substr(end + 1), &digits);
      for (int n = 0; n < count; ++n) text += Unfolded(word.substr(i + 1, end - i - 1));
      i = end + digits;
    } else {
      text += word[i];
    }
  }
  return text;
}

/// Three points in what is expected stand for anything.
bool Fits(std::string_view text, std::string_view expected) {
  const std::size_t points = expected.find("...");
  if (points == std::string::npos) return text == expected;
  if (!text.starts_with(expected.substr(0, points))) return false;
  expected.remove_prefix(points + 3);
  for (text.remove_prefix(points); !Fits(text, expected); text.remove_prefix(1)) {
    if (text.empty()) return false;
  }
  return true;
}

}  // namespace

std::string Long(const std::string& word) {
  for (const auto& [name, whole] : kShort) {
    if (word == name) return whole;
  }
  if (word.starts_with("#host")) return lab::DerivedUuid("node " + word.substr(1));
  if (word[0] == '#') return UuidOfDevice(word.substr(1));
  return word == "-" ? "" : Unfolded(word);
}

std::string Short(std::string text) {
  for (const auto& [name, whole] : kShort) {
    for (std::size_t at = 0; (at = text.find(whole)) != std::string::npos;) {
      text.replace(at, whole.size(), name);
    }
  }
  return text;
}

std::string Play(const std::string& script) {
  for (std::size_t begin = 0, end = 0; begin < script.size(); begin = end + 2) {
    end = std::min(script.find("; ", begin), script.size());
    std::istringstream act(script.substr(begin, end - begin));
    std::string host;
    std::string verb;
    act >> host >> verb;
    const std::string message = Failure([&] {
      const auto control = At("host" + host);
      Texts words;
      for (std::string word; act >> word;) words.push_back(Long(word));
      kVerbs.at(verb)({*control, words});
    });
    if (!message.empty()) return Short(message);
  }
  return {};
}

void RowsTest::Again() {
  lab::Store::CloseForProcess();
  if (first_.empty()) first_ = ReadFile(LabFile());
  WriteFile(LabFile(), first_);
}

void RowsTest::EachRow(const std::string& table,
                       const std::function<void(const std::string&, const std::string&)>& test) {
  std::istringstream lines(table);
  for (std::string line; std::getline(lines, line);) {
    if (line.empty()) continue;
    SCOPED_TRACE(line);
    const std::size_t arrow = line.find("->");
    ASSERT_NE(arrow, std::string::npos);
    const std::string expected = line.substr(std::min(arrow + 3, line.size()));
    std::string scripts = line.substr(0, arrow);
    scripts.erase(scripts.find_last_not_of(' ') + 1);
    for (std::size_t begin = 0, end = 0; end != scripts.size(); begin = end + 3) {
      end = std::min(scripts.find(" / ", begin), scripts.size());
      Again();
      test(scripts.substr(begin, end - begin), expected);
    }
  }
}

void RowsTest::Expect(const std::function<std::string()>& view, const std::string& table) {
  EachRow(table, [&](const std::string& script, const std::string& expected) {
    EXPECT_EQ(Play(script), "");
    const std::string seen = view();
    EXPECT_TRUE(Fits(seen, expected)) << seen;
  });
}

void RowsTest::ExpectRefusals(const std::string& table) {
  EachRow(table, [](const std::string& script, const std::string& message) {
    const std::size_t last = script.rfind("; ");
    const bool isPrepared = last != std::string::npos;
    EXPECT_EQ(Play(isPrepared ? script.substr(0, last) : ""), "");
    const std::string before = State();
    const std::string said = Play(isPrepared ? script.substr(last + 2) : script);
    EXPECT_TRUE(Fits(said, message)) << said;
    EXPECT_EQ(State(), before);
  });
}

void MakeHosts(const std::string& hosts) {
  std::vector<lab::HostInventory> inventory;
  std::istringstream words("/ " + hosts);
  for (std::string word; words >> word;) {
    if (word == "/") {
      inventory.push_back({"host" + std::to_string(inventory.size() + 1), {}, {}});
      continue;
    }
    const std::size_t equals = word.find('=');
    const int sizeGb = equals == std::string::npos ? 400 : std::stoi(word.substr(equals + 1));
    inventory.back().devices.push_back(
        {word.substr(0, equals), word[0] != 's', word[0] == 'f', sizeGb});
  }
  lab::InitLab(inventory, true);
}

std::string Groups() {
  StandOn("host1");
  const auto devices = Own(lab::DevicesOf);
  const auto membersOf = [&](std::int64_t caching) {
    std::string members;
    for (const lab::Device& device : devices) {
      if (!device.claim || device.claim->cachingDevice != caching || device.id == caching) continue;
      members += (members.empty() ? "" : " ") + device.name + ":" +
                 std::to_string(device.claim->usedGb) + (device.claim->isMounted ? "" : "-");
    }
    return members;
  };
  std::string groups;
  for (const lab::Device& device : devices) {
    if (!device.IsCachingOfGroup()) continue;
    groups += device.name + (device.claim->isMounted ? "(" : "-(") + membersOf(device.id) + ") ";
  }
  return groups + "pool(" + membersOf(0) + ")";
}

ClustersTest::ClustersTest() {
  AddHostsUpTo(6);
  // Cluster A's UUID is kept in small letters.
  EXPECT_EQ(Play("1 create AAAAAAAA-0000-4000-8000-000000000001; 2 join A; 3 create B; 4 client C; "
                 "6 join A witness host1"),
            "");
}

DisksTest::DisksTest() {
  MakeHosts("c1 c2 c3 s1 s2 s3 s4 f1=40 f2=40");
  EXPECT_EQ(Play("1 claim c1 s1 s2; 1 claim c2 s3; 1 pool f1; 1 data s1 100; 1 data s2 100; "
                 "1 data s3 100; 1 data f1 10"),
            "");
}

}  // namespace lab_test
