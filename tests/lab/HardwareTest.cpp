#include <set>

#include "lab/model/Check.h"
#include "lab/model/Disks.h"
#include "tests/lab/Support.h"

namespace lab_test {
namespace {

using HardwareTest = DisksTest;

/// The devices of the first host and what they are fit for, and the names of all hosts.
std::string Inventory() {
  return lab::ReadLab([](lab::Store& store) {
    std::string text;
    const auto hosts = lab::AllHosts(store);
    for (const lab::Device& device : lab::DevicesOf(store, hosts.front())) {
      text += device.name + (device.IsForCapacity() ? "" : "*") +
              (device.claim ? "" : ":" + std::to_string(device.sizeGb)) + " ";
    }
    for (const lab::Host& host : hosts) text += host.name + " ";
    EXPECT_THAT(lab::Problems(store), testing::IsEmpty());
    return text;
  });
}

TEST_F(HardwareTest, DevicesAndHostsComeAndGo) {
  Expect(Inventory, R"(
                                -> c1* c2* c3*:400 s1 s2 s3 s4:400 f1 f2:40 host1 
1 plug a:1 1                    -> c1* c2* c3*:400 s1 s2 s3 s4:400 f1 f2:40 a:1:1 host1 
1 plug x 1000000 flash; 1 plug y 7 flash tagged -> ... f2:40 x*:1000000 y:7 host1 
1 unplug s4; 1 unplug c3        -> c1* c2* s1 s2 s3 f1 f2:40 host1 
1 sick s1; 1 unclaim s1 NoAction; 1 unplug s1; 1 plug s1 500; 1 claim c1 s1 -> c1* c2* c3*:400 s2 s3 s4:400 f1 f2:40 s1 host1 
1 addhost a; 1 addhost b; 1 removehost a -> ... b 
1 addhost host2; 1 removehost host1 -> mpx.dkhba0:C0:T1:L0*:800 ... host2 
1 addhost host2; 2 create A; 2 interface hsk1 korel; 2 policy vmem copies=1; 2 leave A; 1 removehost host2 -> ... f2:40 host1 
)");
  ExpectRefusals(R"(
1 plug s4 1          -> the host has a device 's4' already; 'autocli lab disk remove --device s4'...
1 plug -%20a 1 / 1 plug - 1 -> ... is not a device name...
1 plug x 0 / 1 plug x 1000001 -> the size of device 'x' in GB must be from 1 to 1000000, got...
1 unplug x           -> the host has no device 'x'; ...
1 unplug s1          -> ... in use in disk group 'c1'; 'korel storage remove --disk s1...
1 unplug c1 / 1 unplug f1 -> ... in use in ...; 'korel storage...
1 removehost host2   -> the lab has no host 'host2'; the hosts are host1
1 removehost host1   -> host 'host1' is the last one, and a lab has one at least; 'autocli lab host add'...
1 addhost host2; 2 create A; 1 removehost host2 -> host 'host2' is in cluster A; 'KOREL_LAB_HOST=host2 korel cluster leave' takes it out
1 addhost host2; 2 create A; 2 reboot; 1 removehost host2 -> host 'host2' is in cluster A; 'KOREL_LAB_HOST=host2 korel cluster restore', then 'KOREL_LAB_HOST=host2 korel cluster leave' takes it out
1 addhost host2; 2 client C; 1 removehost host2 -> host 'host2' is in cluster C; ...
)");
}

TEST_F(HardwareTest, InterfacesComeAndGo) {
  AddHostsUpTo(2);
  const auto configured = [] {
    std::string names;
    for (const auto& config : At("host2")->GetHsknicConfigs()) names += config->GetHsknicName();
    return names;
  };
  Expect(configured, R"(
2 wire eth0; 2 interface eth0 korel; 2 interface hsk2 korel -> hsk2eth0
2 unwire hsk0; 2 wire hsk0; 2 interface hsk1 korel; 2 interface hsk0 korel -> hsk1hsk0
1 wire eth0; 1 interface eth0 korel; 1 uninterface eth0 korel force; 1 unwire eth0 ->
)");
  ExpectRefusals(R"(
2 wire hsk1   -> the host has an interface 'hsk1' already...
2 wire ../a   -> '../a' is not a interface...
2 unwire eth0 -> the host has no interface 'eth0'...
2 interface hsk1 korel; 2 unwire hsk1 / 2 interface hsk1 korel; 2 clearnet; 2 unwire hsk1 -> interface 'hsk1' is in the...; 'korel network remove --force --interface-name hsk1' takes it out
2 agent witness zeros 10.0.0.7 1 zeros - hsk1; 2 unwire hsk1 -> a unicast agent is bound to interface 'hsk1'; 'korel cluster unicastagent remove --type witness --uuid zeros --addr 10.0.0.7' removes it
)");
}

TEST_F(HardwareTest, ADeviceThatIsPutInIsAnother) {
  std::set<std::string> uuids{Long("#s4")};
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(Play("1 unplug s4; 1 plug s4 400"), "");
    uuids.insert(Long("#s4"));
  }
  EXPECT_EQ(uuids.size(), 4U);
}

}  // namespace
}  // namespace lab_test
