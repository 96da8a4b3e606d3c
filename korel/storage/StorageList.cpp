#include <algorithm>

#include "korel/storage/Commands.h"

namespace OstrelCli::KorelNamespace {
namespace {

using Tovrin::Korel::KorelDiskInfo;
using Tovrin::Korel::KorelDiskList;
using Tovrin::Korel::KorelDiskTypes;
using Tovrin::Korel::Uuid;

/// UUID texts of the disks that the host sees under that name, or, without one, under that UUID.
std::vector<std::string> Find(const KorelDiskList& disks, const std::string& device,
                              const std::optional<Uuid>& uuid) {
  std::vector<std::string> found;
  for (const auto& disk : disks) {
    if (!device.empty() && disk->GetName() != device) continue;
    if (uuid && disk->GetUuid() != *uuid) continue;
    found.push_back(KorelUtil::KorelUuidToString(disk->GetUuid()));
  }
  return found;
}

/// UUID texts of the disks that the host's Korel configuration holds.
std::vector<std::string> ConfiguredDisks(const HostControl& host) {
  std::vector<Uuid> uuids;
  host->ListDiskUuids(uuids);
  std::vector<std::string> texts;
  for (const Uuid& uuid : uuids) texts.push_back(KorelUtil::KorelUuidToString(uuid));
  return texts;
}

void Fill(MetaStruct& row, const KorelDiskInfo& info) {
  const int mode = info.dataEfficiencyMode;
  row.SetField("Device", info.deviceName);
  row.SetField("Display Name", info.deviceName);
  row.SetField("Is SSD", info.isSsd);
  row.SetField("KOREL UUID", info.korelUuid);
  row.SetField("KOREL Disk Group UUID", info.diskGroupUuid);
  row.SetField("KOREL Disk Group Name", info.diskGroupName);
  row.SetField("Used by this host", info.isUsedByThisHost);
  row.SetField("In HXDS", info.isInHxds);
  row.SetField("On-disk format version", StorageList::MarshalVersion(info.onDiskFormatVersion));
  row.SetField("Deduplication", mode == 1);
  row.SetField("Compression", mode == 1 || mode == 2);
  row.SetField("Checksum", info.checksum);
  row.SetField("Checksum OK", info.isChecksumOk);
  row.SetField("Is Capacity Tier", info.isCapacityTier);
  row.SetField("Encryption Metadata Checksum OK", info.isEncryptionMetadataChecksumOk);
  row.SetField("Encryption", info.isEncrypted);
  row.SetField("DiskKeyLoaded", info.isDiskKeyLoaded);
  row.SetField("Is Mounted", info.isMounted);
  row.SetField("Creation Time", info.creationTime);
}

/// A record per disk, in the order of their UUID texts.
std::shared_ptr<MetaList> Rows(const HostControl& host, const KorelDiskList& disks,
                               std::vector<std::string> uuids) {
  std::sort(uuids.begin(), uuids.end());
  uuids.erase(std::unique(uuids.begin(), uuids.end()), uuids.end());
  auto list = ListOf(StorageList::GetOutputStructure());
  list->Reserve(uuids.size());
  for (const std::string& uuid : uuids) {
    KorelDiskInfo info;
    host->GetDiskInfo(KorelUtil::StringToKorelUuid(uuid), disks, info);
    const auto row = StorageList::GetOutputStructure();
    Fill(*row, info);
    list->Add(row);
  }
  return list;
}

}  // namespace

StorageList::StorageList() {
  SetDescription("List Korel storage configuration.");
  Show(*this, *GetOutputStructure(), "simple", "%Device%");
}

std::shared_ptr<MetaString> StorageList::MarshalVersion(std::int32_t version) {
  if (version == 3) return MetaString::New("2.5");
  if (version == 4) return MetaString::New("3");
  return MetaString::New(version == 0 ? "1" : std::to_string(version));
}

std::shared_ptr<MetaStruct> StorageList::GetOutputStructure() {
  return Structure("KorelStorageList", {{"Device", MetaType::String},
                                        {"Display Name", MetaType::String},
                                        {"Is SSD", MetaType::Bool},
                                        {"KOREL UUID", MetaType::String},
                                        {"KOREL Disk Group UUID", MetaType::String},
                                        {"KOREL Disk Group Name", MetaType::String},
                                        {"Used by this host", MetaType::Bool},
                                        {"In HXDS", MetaType::Bool},
                                        {"On-disk format version", MetaType::String},
                                        {"Deduplication", MetaType::Bool},
                                        {"Compression", MetaType::Bool},
                                        {"Checksum", MetaType::String},
                                        {"Checksum OK", MetaType::Bool},
                                        {"Is Capacity Tier", MetaType::Bool},
                                        {"Encryption Metadata Checksum OK", MetaType::Bool},
                                        {"Encryption", MetaType::Bool},
                                        {"DiskKeyLoaded", MetaType::Bool},
                                        {"Is Mounted", MetaType::Bool},
                                        {"Creation Time", MetaType::String}});
}

std::shared_ptr<InputSpec> StorageList::GetInputSpecInternal() {
  return Inputs(
      {{.name = "device",
        .shortName = "d",
        .description =
            "Filter the output of this command to only show a single device with specified device name."},
       {.name = "uuid",
        .shortName = "u",
        .description =
            "Filter the output of this command to only show a single device with specified uuid."}});
}

std::shared_ptr<OutputSpec> StorageList::GetOutputSpecInternal() {
  return Answers(ListOf(GetOutputStructure()));
}

void StorageList::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  const std::string device = input->GetParameter("device");
  const std::string uuid = input->GetParameter("uuid");
  if (!device.empty() && !uuid.empty()) {
    return Refuse(output, "Only one of --device or --uuid can be specified.");
  }
  Attempt(output, "Unable to list devices: ", [&] {
    KorelDiskList disks;
    KorelUtil::GetKorelDisks(disks, KorelDiskTypes::All);
    std::optional<Uuid> wanted;
    if (!uuid.empty()) wanted = KorelUtil::StringToKorelUuid(uuid);
    const auto found = Find(disks, device, wanted);
    const HostControl host;
    const auto configured = ConfiguredDisks(host);
    if (!device.empty() && found.empty()) {
      return Refuse(output, "Unable to find device with name: " + device);
    }
    if (!uuid.empty() && found.empty()) {
      return Refuse(output, "Unable to find device with uuid: " + uuid);
    }
    const bool isFiltered = !device.empty() || !uuid.empty();
    output->SetRootObject(Rows(host, disks, isFiltered ? found : configured));
  });
}

}  // namespace OstrelCli::KorelNamespace
