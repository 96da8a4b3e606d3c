#pragma once

#include <string>
#include <vector>

#include "lab/model/Disks.h"
#include "lab/model/Hosts.h"
#include "lab/store/Store.h"

namespace lab {

/// What happens to the data of disks that go out of use.
enum class Evacuation {
  None,           ///< nothing
  Accessibility,  ///< half of it moves: that of which no other disk has a copy
  All,            ///< all of it moves
};

/// Reads an evacuation mode: "NoAction", or empty for it, "EnsureObjectAccessibility" or
/// "EvacuateAllData". Throws KorelCtlException naming any other text.
Evacuation EvacuationFrom(const std::string& mode);

/// Moves data of `leaving`, capacity disks of one group or of the pool among the host's `devices`,
/// to the other mounted, healthy capacity disks of the host and of the data hosts of its cluster:
/// the host's own first, each filled in turn; from groups to groups, from the pool to pools.
/// Nothing can be read from a disk that is not healthy or whose caching device is not: for
/// Accessibility it is then enough that the other disks hold as much data, as copies. Throws
/// KorelCtlException with the figures when they have too little room or too little data, or naming
/// a disk whose data cannot be read.
void Evacuate(Store& store, const Host& host, const Devices& devices,
              const std::vector<const Device*>& leaving, Evacuation evacuation);

}  // namespace lab
