#include "lab/model/Disks.h"
#include "lab/model/Inventory.h"
#include "lab/model/Lab.h"
#include "tests/lab/Support.h"

namespace lab_test {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

using InventoryTest = LabTest;

std::vector<std::string> FaultsOf(const std::string& text) {
  std::vector<std::string> faults{"replaced"};
  lab::ParseInventory(text, faults);
  return faults;
}

TEST_F(InventoryTest, HostsAreAsTheFileSays) {
  std::vector<std::string> faults;
  WriteFile(Path("inventory"), R"({"hosts": [
      {"name": "a", "interfaces": ["eth0"], "devices": [
        {"name": "x:1", "ssd": true, "capacityFlash": true, "sizeGb": 7, "vendor": "V"}]},
      {"name": "b"}]})");
  const auto hosts = lab::ParseInventory(lab::ReadInventoryFile(Path("inventory")), faults);
  ASSERT_THAT(faults, testing::IsEmpty());
  lab::InitLab(hosts, false);
  EXPECT_THAT(hosts[0].interfaces, ElementsAre("eth0"));
  lab::ChangeLab([&](lab::Store& store) {
    const auto known = lab::AllHosts(store);
    const auto device = lab::DevicesOf(store, known.at(0)).at(0);
    EXPECT_TRUE(device.isFlash && device.isCapacityFlash && device.sizeGb == 7);
    EXPECT_THAT(lab::DevicesOf(store, known.at(1)), SizeIs(10));
  });
}

TEST_F(InventoryTest, AllFaultsAreListedAtOnce) {
  const std::string name =
      ": must be a name of 1 to 80 letters, digits, points, underscores and hyphens, a letter or "
      "digit first";
  const std::string size = ".sizeGb: must be an integer from 1 to 1000000";
  EXPECT_THAT(
      FaultsOf(R"({"hosts": [
        {"name": "../a", "interfaces": ["i", "i", 3], "disks": [], "device": []},
        {"name": "b", "interfaces": 1, "devices": [
           {"name": "d", "ssd": 1, "sizeGb": 0},
           {"name": "d", "capacityFlash": true, "sizeGb": 1e3, "vendor": 7}, 5]},
        {"name": "b"}, []]})"),
      ElementsAre("hosts[0]: unknown key 'device', did you mean 'devices'?",
                  "hosts[0]: unknown key 'disks'", "hosts[0].name" + name,
                  "hosts[0].interfaces[1]: 'i' is there twice", "hosts[0].interfaces[2]" + name,
                  "hosts[1].devices[0].ssd: must be true or false", "hosts[1].devices[0]" + size,
                  "hosts[1].devices[1].capacityFlash: is for devices with \"ssd\": true",
                  "hosts[1].devices[1]" + size, "hosts[1].devices[1].vendor: must be a text",
                  "hosts[1].devices[1].name: 'd' is there twice",
                  "hosts[1].devices[2]: must be an object", "hosts[1].interfaces: must be a list",
                  "hosts[2].name: 'b' is there twice", "hosts[3]: must be an object"));
  EXPECT_THAT(FaultsOf(R"({"hosts":[]})"), ElementsAre("hosts: at least one host is needed"));
  EXPECT_THAT(FaultsOf(std::string(100'000, '[')), ElementsAre(testing::StartsWith("not JSON: ")));
}

}  // namespace
}  // namespace lab_test
