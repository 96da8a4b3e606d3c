#include "lab/model/Disks.h"
#include "lab/model/Inventory.h"
#include "lab/model/Lab.h"
#include "tests/lab/Support.h"

namespace lab_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

using InventoryTest = LabTest;
using Faults = std::vector<std::string>;

Faults FaultsOf(const std::string& text) {
  Faults faults{"replaced"};
  lab::ParseInventory(text, faults);
  return faults;
}

TEST_F(InventoryTest, HostsAreAsTheFileSays) {
  Faults faults;
  const auto hosts = lab::ParseInventory(R"({"hosts": [
      {"name": "a", "interfaces": ["eth0"], "devices": [
        {"name": "x:1", "ssd": true, "capacityFlash": true, "sizeGb": 7, "vendor": "V"}]},
      {"name": "b"}, {"name": "c", "devices": [], "interfaces": []}]})",
                                         faults);
  ASSERT_THAT(faults, IsEmpty());
  lab::InitLab(hosts, false);
  EXPECT_THAT(hosts[0].interfaces, ElementsAre("eth0"));
  EXPECT_THAT(hosts[1].interfaces, SizeIs(3)) << "standard";
  lab::InLab([&](lab::Store& store) {
    const auto known = lab::AllHosts(store);
    ASSERT_THAT(known, SizeIs(3));
    const auto devices = lab::DevicesOf(store, known[0]);
    ASSERT_THAT(devices, SizeIs(1));
    EXPECT_EQ(devices[0].name + devices[0].vendor, "x:1V");
    EXPECT_TRUE(devices[0].isFlash && devices[0].isCapacityFlash && devices[0].sizeGb == 7);
    EXPECT_THAT(lab::DevicesOf(store, known[1]), SizeIs(10));
    EXPECT_THAT(lab::DevicesOf(store, known[2]), SizeIs(0));
  });
}

TEST_F(InventoryTest, AllFaultsAreListedAtOnce) {
  const std::string name =
      "must be a name of 1 to 80 letters, digits, points, underscores and hyphens, a letter or "
      "digit first";
  const std::string device =
      "must be a name of 1 to 80 letters, digits, points, underscores, colons and hyphens, a "
      "letter or digit first";
  EXPECT_THAT(
      FaultsOf(R"({"hosts": [
        {"name": "../a", "interfaces": ["i", "i", 3], "disks": [], "device": []},
        {"name": "b", "interfaces": 1, "devices": [
           {"name": "d", "ssd": 1, "sizeGb": 0},
           {"name": "d", "capacityFlash": true, "sizeGb": 1e3, "vendor": 7},
           {"sizeGb": 99999999999999999999}, 5]},
        {"name": "b"}, []]})"),
      ElementsAre("hosts[0]: unknown key 'device', did you mean 'devices'?",
                  "hosts[0]: unknown key 'disks'", "hosts[0].name: " + name,
                  "hosts[0].interfaces[1]: 'i' is there twice", "hosts[0].interfaces[2]: " + name,
                  "hosts[1].devices[0].ssd: must be true or false",
                  "hosts[1].devices[0].sizeGb: must be an integer from 1 to 1000000",
                  "hosts[1].devices[1].capacityFlash: is for devices with \"ssd\": true",
                  "hosts[1].devices[1].sizeGb: must be an integer from 1 to 1000000",
                  "hosts[1].devices[1].vendor: must be a text",
                  "hosts[1].devices[1].name: 'd' is there twice",
                  "hosts[1].devices[2].name: " + device,
                  "hosts[1].devices[2].sizeGb: must be an integer from 1 to 1000000",
                  "hosts[1].devices[3]: must be an object", "hosts[1].interfaces: must be a list",
                  "hosts[2].name: 'b' is there twice", "hosts[3]: must be an object"));
}

TEST_F(InventoryTest, WhatIsNoInventoryIsRefused) {
  const std::pair<const char*, Faults> cases[] = {
      {"{}", {"hosts: must be a list"}},
      {"[]", {"the inventory: must be an object"}},
      {R"({"hosts":[]})", {"hosts: at least one host is needed"}},
      {R"({"hosts":7,"x":1})", {"the inventory: unknown key 'x'", "hosts: must be a list"}},
  };
  for (const auto& [text, faults] : cases) EXPECT_EQ(FaultsOf(text), faults) << text;
  for (const std::string& text :
       {std::string(), std::string("{\"hosts\": ["), std::string("{\"hosts\": 1e999}"),
        std::string("\xff\xfe"), std::string(100'000, '[')}) {
    EXPECT_THAT(FaultsOf(text), ElementsAre(StartsWith("not JSON: ")));
  }
}

}  // namespace
}  // namespace lab_test
