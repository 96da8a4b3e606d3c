#include "tests/lab/DiskSupport.h"

#include "lab/model/Disks.h"
#include "lab/model/Lab.h"

namespace lab_test {

using HskCtl::Korel::KorelUtil;
using Tovrin::Korel::KorelDiskInfo;
using Tovrin::Korel::KorelDiskList;
using Tovrin::Korel::KorelDiskTypes;

std::string Disk(int number) { return "mpx.dkhba2:C0:T" + std::to_string(number) + ":L0"; }

lab::DeviceInventory Spinning(const std::string& name, int sizeGb) {
  return {name, false, false, sizeGb};
}

lab::DeviceInventory Caching(const std::string& name) { return {name, true, false, 100}; }

lab::DeviceInventory Flash(const std::string& name, int sizeGb) {
  return {name, true, true, sizeGb};
}

void MakeHosts(const std::vector<std::vector<lab::DeviceInventory>>& hosts) {
  std::vector<lab::HostInventory> inventory;
  for (const auto& devices : hosts) {
    inventory.push_back({"host" + std::to_string(inventory.size() + 1), devices, {}});
  }
  lab::InitLab(inventory, true);
}

void Claim(const std::string& caching, const Names& capacity) {
  HostControl()->AddDisks(caching, capacity);
}

KorelDiskList Disks(KorelDiskTypes types) {
  KorelDiskList disks;
  KorelUtil::GetKorelDisks(disks, types);
  return disks;
}

std::string UuidOf(const std::string& device) {
  std::string uuid;
  KorelUtil::FetchKorelDiskIdentifier(Disks(KorelDiskTypes::All), device, uuid);
  return uuid;
}

Names Claimed() {
  Names names;
  for (const auto& disk : Disks(KorelDiskTypes::Claimed)) names.push_back(disk->GetName());
  return names;
}

Names Mounted() {
  Names names;
  for (const auto& disk : Disks(KorelDiskTypes::All)) {
    if (Info(disk->GetName()).isMounted) names.push_back(disk->GetName());
  }
  return names;
}

KorelDiskInfo Info(const std::string& device) {
  KorelDiskInfo info;
  HostControl()->GetDiskInfo(KorelUtil::StringToKorelUuid(UuidOf(device)),
                             Disks(KorelDiskTypes::All), info);
  return info;
}

std::int64_t DataOn(const std::string& device) {
  return lab::InLab([&](lab::Store& store) {
    const auto devices = lab::DevicesOf(store, lab::CurrentHost(store));
    return lab::FindByName(devices, device).claim.value().usedGb;
  });
}

void MakeUnhealthy(const std::string& device) {
  lab::InLab(
      [&](lab::Store& store) { lab::SetHealth(store, lab::CurrentHost(store), device, false); });
}

void SetFormatVersion(const std::string& device, int version) {
  lab::InLab([&](lab::Store& store) {
    lab::SetFormatVersion(store, lab::CurrentHost(store), device, version);
  });
}

}  // namespace lab_test
