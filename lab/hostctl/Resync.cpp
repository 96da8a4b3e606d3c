#include "lab/hostctl/Call.h"
#include "lab/hostctl/LabKorelInfo.h"
#include "lab/hostctl/Records.h"
#include "lab/model/HostState.h"
#include "lab/model/Policies.h"

namespace lab {

using Tovrin::Korel::KorelPolicyClass;

std::int64_t LabKorelInfo::GetResyncThrottle() {
  return Call("GetResyncThrottle", Arguments(), ResyncThrottle);
}

void LabKorelInfo::SetResyncThrottle(std::int64_t mbps) {
  Call("SetResyncThrottle", Arguments(mbps),
       [&](Store& store, const Host& host) { lab::SetResyncThrottle(store, host, mbps); });
}

std::int64_t LabKorelInfo::GetResyncBandwidth() {
  return Call("GetResyncBandwidth", Arguments(), ResyncBandwidth);
}

void LabKorelInfo::ClearDefaultPolicies() {
  Call("ClearDefaultPolicies", Arguments(),
       [](Store& store, const Host& host) { lab::ClearDefaultPolicies(store, host); });
}

std::string LabKorelInfo::GetDefaultPolicy(KorelPolicyClass policyClass) {
  return Call(
      "GetDefaultPolicy", Arguments(Number(policyClass)),
      [&](Store& store, const Host& host) { return DefaultPolicy(store, host, policyClass); });
}

void LabKorelInfo::SetDefaultPolicy(KorelPolicyClass policyClass, const std::string& value) {
  Call("SetDefaultPolicy", Arguments(Number(policyClass), value),
       [&](Store& store, const Host& host) {
         lab::SetDefaultPolicy(store, host, policyClass, value);
       });
}

}  // namespace lab
