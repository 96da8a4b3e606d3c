#include "lab/model/Disks.h"
#include "lab/model/Inventory.h"
#include "tests/lab/Support.h"

namespace lab_test {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::EndsWith;
using testing::SizeIs;
using testing::StartsWith;

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
        {"name": "x:1", "ssd": true, "capacityFlash": true, "sizeGb": 1000000, "vendor": "V"}]},
      {"name": "b"}]})");
  const auto hosts = lab::ParseInventory(lab::ReadInventoryFile(Path("inventory")), faults);
  ASSERT_THAT(faults, testing::IsEmpty());
  lab::InitLab(hosts, false);
  EXPECT_THAT(hosts[0].interfaces, ElementsAre("eth0"));
  lab::ChangeLab([&](lab::Store& store) {
    const auto known = lab::AllHosts(store);
    EXPECT_EQ(lab::CurrentHost(store).name, "a") << "the first, as none is named host1";
    const auto device = lab::DevicesOf(store, known.at(0)).at(0);
    EXPECT_TRUE(device.isFlash && device.isCapacityFlash && device.sizeGb == 1000000);
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
           {"name": "d", "capacityFlash": true, "sizeGb": 1e3, "vendor": 7}, 5,
           {"name": "e", "sizeGb": 1000001}, {"name": "f", "sizeGb": 1}]},
        {"name": "b"}, []]})"),
      ElementsAre("hosts[0]: unknown key 'device', did you mean 'devices'?",
                  "hosts[0]: unknown key 'disks'", "hosts[0].name" + name,
                  "hosts[0].interfaces[1]: 'i' is there twice", "hosts[0].interfaces[2]" + name,
                  "hosts[1].devices[0].ssd: must be true or false", "hosts[1].devices[0]" + size,
                  "hosts[1].devices[1].capacityFlash: is for devices with \"ssd\": true",
                  "hosts[1].devices[1]" + size, "hosts[1].devices[1].vendor: must be a text",
                  "hosts[1].devices[1].name: 'd' is there twice",
                  "hosts[1].devices[2]: must be an object", "hosts[1].devices[3]" + size,
                  "hosts[1].interfaces: must be a list", "hosts[2].name: 'b' is there twice",
                  "hosts[3]: must be an object"));
  EXPECT_THAT(FaultsOf(R"({"hosts":[]})"), ElementsAre("hosts: at least one host is needed"));
}

TEST_F(InventoryTest, OnlyOneWholeDocumentIsAnInventory) {
  const std::string good = R"({"hosts": [{"name": "a"}]})";
  EXPECT_THAT(FaultsOf(good + " \n"), testing::IsEmpty());
  for (const std::string& rest : {std::string(1, '\0'), "\0 more"s, "}"s, " {}"s, "\xff"s}) {
    EXPECT_THAT(FaultsOf(good + rest), ElementsAre(StartsWith("not JSON: "))) << rest;
  }
}

/// The deep value stands for the @.
TEST_F(InventoryTest, DeepNestingIsRefusedWhereverItIs) {
  const std::pair<std::string, std::string> cases[] = {
      {"@", ""},
      {R"({"more": @, "hosts": [{"name": "a"}]})", "more"},
      {R"({"hosts": [{"interfaces": ["i", @]}]})", "hosts[0].interfaces[1]"},
      {R"({"hosts": [{"devices": [{}, {"ssd": @}]}]})", "hosts[0].devices[1].ssd"}};
  for (const auto& [open, close] : {std::pair("[", "]"), std::pair("{\"k\":", "}")}) {
    std::string before;
    std::string after;
    for (int i = 0; i < 100'000; ++i) before += open;
    for (int i = 0; i < 100'000; ++i) after += close;
    for (auto [text, place] : cases) {
      text.replace(text.find('@'), 1, before + "1" + after);
      EXPECT_THAT(
          FaultsOf(text),
          ElementsAre(AllOf(StartsWith(place), EndsWith(": is nested more than 100 levels deep"))));
    }
  }
  EXPECT_THAT(FaultsOf(R"({"hosts": [{"name": "a", "more": )" + std::string(97, '[') +
                       std::string(97, ']') + "}]}"),
              ElementsAre("hosts[0]: unknown key 'more'"));
}

TEST_F(InventoryTest, AKeyIsThereOnce) {
  EXPECT_THAT(FaultsOf(R"({"hosts": [{"name": "a", "name": "b", "devices": [
        {"name": "d", "sizeGb": 1, "model": {"k": 1, "k": {"name": 1}}},
        {"name": "e", "sizeGb": 1, "sizeGb": 2, "vendor": "d"}]}, {"name": "c"}], "hosts": []})"),
              ElementsAre("hosts[0]: the key 'name' is there twice",
                          "hosts[0].devices[0].model: the key 'k' is there twice",
                          "hosts[0].devices[1]: the key 'sizeGb' is there twice",
                          "the inventory: the key 'hosts' is there twice"));
}

TEST_F(InventoryTest, ManyFaultsAreCounted) {
  const auto faultsOfHosts = [](int count) {
    std::string hosts = "1";
    for (int i = 1; i < count; ++i) hosts += ",1";
    return FaultsOf("{\"hosts\":[" + hosts + "]}");
  };
  EXPECT_THAT(faultsOfHosts(100), SizeIs(100));
  EXPECT_THAT(faultsOfHosts(123), SizeIs(101));
  EXPECT_EQ(faultsOfHosts(123).back(), "and 23 more faults");
  EXPECT_EQ(faultsOfHosts(101).back(), "and 1 more fault");
}

}  // namespace
}  // namespace lab_test
