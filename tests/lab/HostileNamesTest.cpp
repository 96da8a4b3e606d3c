#include "lab/model/Lab.h"
#include "tests/lab/Support.h"

namespace lab_test {
namespace {

using HostileNamesTest = LabTest;

TEST_F(HostileNamesTest, AreNoNamesOfDatastoresHostsOrDevices) {
  const auto host = HostControl();
  host->CreateCluster(kClusterA, true, false);
  const std::string rule =
      " name: 1 to 80 letters, digits, points, underscores and hyphens, a letter or digit first";
  for (const auto& name :
       {std::string(), std::string("-leading"), std::string("a/b"), std::string("nul\0", 4),
        std::string(81, 'x'), std::string(100'000, 'x')}) {
    // No message repeats a long one whole.
    const std::string cut = name.size() > 100 ? name.substr(0, 100) + "..." : name;
    const lab::HostInventory standard = lab::StandardHost(name);
    ExpectRefused([&] { host->SetDatastoreName("", name); },
                  "'" + cut + "' is not a datastore" + rule);
    ExpectRefused([&] { lab::ChangeLab([&](auto& store) { lab::AddHost(store, standard); }); },
                  "'" + cut + "' is not a host" + rule);
  }
  host->SetDatastoreName("", "a.b_C-9" + std::string(73, 'x'));
}

TEST_F(HostileNamesTest, FaultDomainsTakeAnyTextWithoutControlCharacters) {
  const auto host = HostControl();
  host->SetFaultDomainName("$(reboot) 'a");
  EXPECT_EQ(host->GetFaultDomainName(), "$(reboot) 'a");
  const std::pair<std::string, std::string> refusals[] = {
      {"", "a fault domain name has 1 to 256 characters, got 0"},
      {"a\xc2\x9b", "fault domain name 'a\xc2\x9b' has a control character in it"},
      {"a\xff", "fault domain name 'a\xff' is not UTF-8"}};
  for (const auto& [name, message] : refusals) {
    ExpectRefused([&, &tried = name] { host->SetFaultDomainName(tried); }, message);
  }
}

}  // namespace
}  // namespace lab_test
