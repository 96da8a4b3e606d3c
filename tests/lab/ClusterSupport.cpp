#include "tests/lab/ClusterSupport.h"

#include "lab/model/HostState.h"

namespace lab_test {

using HskCtl::Korel::KorelUtil;
using Tovrin::Korel::KorelNodeType;

std::unique_ptr<Tovrin::Korel::KorelInfo> At(const std::string& host) {
  StandOn(host);
  return HostControl();
}

void Create(const std::string& uuid) { HostControl()->CreateCluster(uuid, true, false); }

void Join(const std::string& uuid, KorelNodeType type, const std::string& preferred) {
  HostControl()->JoinCluster(KorelUtil::StringToKorelUuid(uuid), type, preferred, false, 0, 0);
}

void JoinWitness(const std::string& uuid, const std::string& preferred) {
  Join(uuid, KorelNodeType::Witness, preferred);
}

void JoinClient(const std::string& uuid) { HostControl()->JoinClientCluster(uuid, false); }

void Leave(const std::string& uuid) {
  HostControl()->LeaveCluster(KorelUtil::StringToKorelUuid(uuid), false);
}

void Restore() { HostControl()->RestoreCluster(false, false); }

void Reboot(const std::string& host) { OnHost(host, lab::Reboot); }

void ExpectRefusedAt(
    const std::string& host,
    const std::vector<std::pair<std::function<void()>, std::string>>& actsAndMessages) {
  SCOPED_TRACE(host);
  StandOn(host);
  ExpectRefusals(actsAndMessages);
}

ClustersTest::ClustersTest() {
  AddHostsUpTo(6);
  StandOn("host1");
  Create("AAAAAAAA-0000-4000-8000-000000000001");  // kept as cluster A's, in small letters
  StandOn("host2");
  Join(kClusterA);
  StandOn("host3");
  Create(kClusterB);
  StandOn("host4");
  JoinClient(kClusterC);
  StandOn("host6");
  JoinWitness(kClusterA, "host1");
  StandOn("host1");
}

}  // namespace lab_test
