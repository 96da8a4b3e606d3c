#include "tests/lab/ClusterSupport.h"

#include "lab/model/HostState.h"

namespace lab_test {

using HskCtl::Korel::KorelUtil;
using Tovrin::Korel::KorelNodeType;

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

void Reboot(const std::string& host) { OnHost(host, lab::Reboot); }

Tovrin::Korel::KorelClusterInfoDetailed Directory(const std::string& uuid) {
  Tovrin::Korel::KorelClusterInfoDetailed info;
  KorelUtil::GetInfoFromHXDS(uuid, info);
  return info;
}

std::int64_t Generation(const std::string& uuid) { return Directory(uuid).configGeneration.number; }

std::string NodeUuidOf(const std::string& host) {
  return lab::InLab([&](lab::Store& store) { return lab::HostNamed(store, host).nodeUuid; });
}

}  // namespace lab_test
