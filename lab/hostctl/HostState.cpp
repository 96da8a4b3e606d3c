#include "lab/model/HostState.h"

#include "lab/hostctl/Call.h"
#include "lab/hostctl/LabKorelInfo.h"
#include "platform/hostctl/KorelUtil.h"
#include "platform/hostctl/Optional.h"

namespace lab {

std::shared_ptr<Tovrin::Korel::KorelClusterInfo> LabKorelInfo::GetClusterInfo(bool detailed) {
  return Call("GetClusterInfo", ClusterInfo, detailed);
}

void LabKorelInfo::SetKorelMaxEnabled(bool enabled) {
  Call("SetKorelMaxEnabled", SetKorelMax, enabled);
}

std::int64_t LabKorelInfo::GetResyncThrottle() { return Call("GetResyncThrottle", ResyncThrottle); }

void LabKorelInfo::SetResyncThrottle(std::int64_t mbps) {
  Call("SetResyncThrottle", lab::SetResyncThrottle, mbps);
}

std::int64_t LabKorelInfo::GetResyncBandwidth() {
  return Call("GetResyncBandwidth", ResyncBandwidth);
}

}  // namespace lab

bool Tovrin::Korel::IsKorelMaxEnabled(KorelInfo&) {
  return lab::Call("IsKorelMaxEnabled", lab::IsKorelMax);
}

void HskCtl::Korel::KorelUtil::DecomCancel() { lab::Call("DecomCancel", lab::CancelMaintenance); }
