#pragma once

#include <string>
#include <vector>

#include "lab/model/Hosts.h"
#include "lab/store/Store.h"
#include "platform/hostctl/Records.h"

/// The storage pool of a host: flash devices without a caching device before them. Every function
/// throws KorelCtlException when it cannot do as told.
namespace lab {

/// Claims unclaimed flash devices, all or none.
void AddPoolDisks(Store& store, const Host& host, const std::vector<std::string>& devices);
/// Gives a device back, after what EvacuationFrom reads from the mode.
void RemovePoolDisk(Store& store, const Host& host, const std::string& device,
                    const std::string& evacuationMode);
void RemovePoolDiskByUuid(Store& store, const Host& host, const std::string& uuid,
                          const std::string& evacuationMode);
/// An unknown device is an error.
bool IsPoolDisk(Store& store, const Host& host, const std::string& device);
/// The record of one of the listed disks, which is in the pool. Without `fromCluster` the directory
/// is not asked, and so the disk not found in it.
Tovrin::Korel::KorelStoragePoolDiskInfo PoolDiskInfo(Store& store, const Host& host,
                                                     const Tovrin::Korel::Uuid& disk,
                                                     const Tovrin::Korel::KorelDiskList& disks,
                                                     bool fromCluster);

}  // namespace lab
