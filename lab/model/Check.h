#pragma once

#include <string>
#include <vector>

#include "lab/store/Store.h"

namespace lab {

/// Within a transaction: what is wrong with the lab. Looks at the file's structure, at what rows
/// refer to, and at every rule of the model that a state can break. Empty when all is well; after
/// 100 problems the rest is only counted.
std::vector<std::string> Problems(Store& store);

}  // namespace lab
