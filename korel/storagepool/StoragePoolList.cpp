#include "korel/storagepool/Commands.h"

namespace OstrelCli::KorelNamespace {
namespace {

using Tovrin::Korel::KorelDiskList;
using Tovrin::Korel::KorelDiskTypes;
using Tovrin::Korel::KorelStoragePoolDiskInfo;
using Tovrin::Korel::Uuid;

void Fill(MetaStruct& row, const KorelStoragePoolDiskInfo& info) {
  row.SetField("Device", info.deviceName);
  row.SetField("KOREL UUID", info.korelUuid);
  row.SetField("Is SSD", info.isSsd);
  row.SetField("Used by this host", info.isUsedByThisHost);
  row.SetField("Capacity", info.capacityBytes);
  // Of a disk that is not in use here a host does not know the rest.
  if (!info.isUsedByThisHost) return;
  row.SetField("In HXDS", info.isInHxds);
  row.SetField("On-disk format version", std::to_string(info.onDiskFormatVersion));
  row.SetField("Is Mounted", info.isMounted);
  if (!info.creationTime.empty()) row.SetField("Creation Time", info.creationTime);
}

}  // namespace

StoragePoolList::StoragePoolList() {
  SetDescription("List the physical disks of the Korel storage pool.");
  Show(*this, *GetOutputStructure(), "simple", "%Device%");
  SetDefaultOutputParameter("units:KorelStoragePoolList.Capacity", "B");
}

std::shared_ptr<MetaStruct> StoragePoolList::GetOutputStructure() {
  return Structure("KorelStoragePoolList", {{"Device", MetaType::String},
                                            {"KOREL UUID", MetaType::String},
                                            {"Is SSD", MetaType::Bool},
                                            {"Used by this host", MetaType::Bool},
                                            {"In HXDS", MetaType::Bool},
                                            {"On-disk format version", MetaType::String},
                                            {"Capacity", MetaType::Int},
                                            {"Is Mounted", MetaType::Bool},
                                            {"Creation Time", MetaType::String}});
}

std::shared_ptr<InputSpec> StoragePoolList::GetInputSpecInternal() {
  return Inputs({{.name = "device",
                  .shortName = "d",
                  .description = "Show only the disk with this device name."},
                 {.name = "uuid",
                  .shortName = "u",
                  .description = "Show only the disk with this Korel UUID."}});
}

std::shared_ptr<OutputSpec> StoragePoolList::GetOutputSpecInternal() {
  return Answers(ListOf(GetOutputStructure()));
}

void StoragePoolList::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  const std::string device = input->GetParameter("device");
  const std::string uuid = input->GetParameter("uuid");
  if (!device.empty() && !uuid.empty()) {
    return Refuse(output, "Only one of --device or --uuid can be specified.");
  }
  Attempt(output, "Unable to list storage pool disks: ", [&] {
    std::optional<Uuid> wanted;
    if (!uuid.empty()) wanted = KorelUtil::StringToKorelUuid(uuid);
    KorelDiskList disks;
    KorelUtil::GetKorelDisks(disks, KorelDiskTypes::All);
    const auto list = ListOf(GetOutputStructure());
    for (const auto& disk : disks) {
      if (!device.empty() && disk->GetName() != device) continue;
      if (wanted && disk->GetUuid() != *wanted) continue;
      if (!KorelUtil::IsStoragePoolDisk(disk->GetName())) continue;
      KorelStoragePoolDiskInfo info;
      KorelUtil::GetKorelStoragePoolDiskInfo(disk->GetUuid(), disks, true, info);
      const auto row = GetOutputStructure();
      Fill(*row, info);
      list->Add(row);
    }
    if (list->GetElements().empty() && !device.empty()) {
      return Refuse(output, "Unable to find storage pool disk with name: " + device);
    }
    if (list->GetElements().empty() && wanted) {
      return Refuse(output, "Unable to find storage pool disk with uuid: " + uuid);
    }
    output->SetRootObject(list);
  });
}

}  // namespace OstrelCli::KorelNamespace
