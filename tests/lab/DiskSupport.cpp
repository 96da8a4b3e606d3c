#include "tests/lab/DiskSupport.h"

#include "lab/model/Disks.h"
#include "lab/model/Lab.h"

namespace lab_test {

using HskCtl::Korel::KorelUtil;
using Tovrin::Korel::KorelDiskTypes;

lab::DeviceInventory Device(const std::string& name, int sizeGb) {
  return {name, name[0] != 's', name[0] == 'f', sizeGb};
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

Tovrin::Korel::KorelDiskList Disks(KorelDiskTypes types) {
  Tovrin::Korel::KorelDiskList disks;
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

Tovrin::Korel::KorelDiskInfo Info(const std::string& device) {
  Tovrin::Korel::KorelDiskInfo info;
  HostControl()->GetDiskInfo(KorelUtil::StringToKorelUuid(UuidOf(device)),
                             Disks(KorelDiskTypes::All), info);
  return info;
}

std::int64_t DataOn(const std::string& device) {
  return lab::ChangeLab([&](lab::Store& store) {
    const auto devices = lab::DevicesOf(store, lab::CurrentHost(store));
    return lab::FindByName(devices, device).claim.value().usedGb;
  });
}

void MakeUnhealthy(const std::string& device) {
  lab::ChangeLab(
      [&](lab::Store& store) { lab::SetHealth(store, lab::CurrentHost(store), device, false); });
}

DiskLabTest::DiskLabTest() {
  MakeHosts({{Device("c1"), Device("c2"), Device("c3"), Device("s1"), Device("s2"), Device("s3"),
              Device("s4"), Device("f1", 40), Device("f2", 40)}});
  Claim("c1", {"s1", "s2"});
  Claim("c2", {"s3"});
  HostControl()->AddStoragePoolDisks({"f1"});
}

}  // namespace lab_test
