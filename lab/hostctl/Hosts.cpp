#include "lab/model/Hosts.h"

#include "lab/hostctl/Call.h"
#include "lab/hostctl/LabKorelInfo.h"
#include "platform/hostctl/KorelUtil.h"

namespace lab {

void LabKorelInfo::SetFaultDomainName(const std::string& name) {
  Call("SetFaultDomainName", SetFaultDomain, name);
}

void LabKorelInfo::ResetFaultDomain() { Call("ResetFaultDomain", lab::ResetFaultDomain); }

std::string LabKorelInfo::GetFaultDomainName() {
  return Call("GetFaultDomainName", [](Store&, const Host& host) { return host.faultDomain; });
}

}  // namespace lab

std::string HskCtl::Korel::KorelUtil::GetFaultDomainId() {
  return lab::Call("GetFaultDomainId", [](lab::Store&, const lab::Host& host) {
    return lab::FaultDomainId(host.faultDomain);
  });
}
