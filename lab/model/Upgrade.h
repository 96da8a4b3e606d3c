#pragma once

#include <string>

#include "lab/store/Store.h"

namespace lab {

/// Within a transaction, and with loose references: takes the schema of a lab that is not current
/// to the newest version, with the files of its hosts, which older versions kept in a folder beside
/// the lab. Returns what was done, for the memory; empty when the file was new. Names on standard
/// error what of the folder could not be taken over; the folder stays as it is.
/// Throws UnusableLab when the file is not a lab of its version.
std::string UpgradeSchema(Store& store);

}  // namespace lab
