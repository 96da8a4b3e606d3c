#include "lab/model/Lab.h"
#include "tests/lab/Support.h"

namespace lab_test {
namespace {

using HostileNamesTest = LabTest;

const std::vector<std::string>& HostileNames() {
  static const std::vector<std::string> names{
      "", " ", "a b", "-leading", ".hidden", "..", "a/b", "$(reboot)", "a;b", "a'b", "line\nfeed",
      "\x1b[2J", "caf\xc3\xa9", "bad\xff", std::string("nul\0", 4), std::string(81, 'x'),
      // and one that no message should repeat whole
      std::string(100'000, 'x')};
  return names;
}

/// What the message quotes of the name.
std::string Cut(const std::string& name) {
  return name.size() > 100 ? name.substr(0, 100) + "..." : name;
}

std::string NotAName(const std::string& name, const std::string& kind) {
  return "'" + Cut(name) + "' is not a " + kind +
         " name: 1 to 80 letters, digits, points, underscores and hyphens, a letter or digit first";
}

TEST_F(HostileNamesTest, AreNoNamesOfDatastoresOrHosts) {
  const auto host = HostControl();
  host->CreateCluster(kClusterA, true, false);
  for (const std::string& name : HostileNames()) {
    SCOPED_TRACE(name.substr(0, 100));
    ExpectRefused(
        [&] {
          host->AddDatastore({kDatastore1, name, "", false});
        },
        NotAName(name, "datastore"));
    ExpectRefused([&] { host->SetDatastoreName("", name); }, NotAName(name, "datastore"));
    ExpectRefused(
        [&] {
          lab::InLab([&](lab::Store& store) { lab::AddHost(store, lab::StandardHost(name)); });
        },
        NotAName(name, "host"));
  }
  host->SetDatastoreName("", "a.b_C-9" + std::string(73, 'x'));
}

TEST_F(HostileNamesTest, AreNoDevicesOrUuids) {
  const auto host = HostControl();
  for (const std::string& name : HostileNames()) {
    SCOPED_TRACE(name.substr(0, 100));
    ExpectRefused([&] { host->AddDisks("mpx.dkhba0:C0:T1:L0", {name}); },
                  "the host has no device '" + Cut(name) + "'");
    ExpectRefused([&] { host->JoinClientCluster(name, false); }, NotUuid(Cut(name)));
  }
}

TEST_F(HostileNamesTest, FaultDomainsTakeAnyTextWithoutControlCharacters) {
  const auto host = HostControl();
  for (const std::string name : {" ", "a b", "-leading", "$(reboot)", "a'b", "caf\xc3\xa9"}) {
    host->SetFaultDomainName(name);
    EXPECT_EQ(host->GetFaultDomainName(), name);
  }
  std::string longest = "x";
  while (longest.size() < 256) longest += "\xe2\x82\xac";
  host->SetFaultDomainName(longest);
  EXPECT_EQ(host->GetFaultDomainName(), longest);
  const std::pair<std::string, std::string> refusals[] = {
      {"", "a fault domain name has 1 to 256 characters, got 0"},
      {longest + "x", "a fault domain name has at most 256 bytes, got 257"},
      {std::string(257, 'x'), "a fault domain name has 1 to 256 characters, got 257"},
      {"a\xc2\x9b", "fault domain name 'a\xc2\x9b' has a control character in it"},
      {"a\nb", "fault domain name 'a\nb' has a control character in it"},
      {"a\xff", "fault domain name 'a\xff' is not UTF-8"}};
  for (const auto& [name, message] : refusals) {
    SCOPED_TRACE(message);
    ExpectRefused([&, &tried = name] { host->SetFaultDomainName(tried); }, message);
  }
}

}  // namespace
}  // namespace lab_test
