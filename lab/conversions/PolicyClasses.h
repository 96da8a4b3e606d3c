#pragma once

#include <string>

#include "platform/hostctl/KorelUtil.h"

namespace lab {

/// The class of that name. Throws KorelCtlException, naming the classes, when there is none.
Tovrin::Korel::KorelPolicyClass CheckedPolicyClass(const std::string& text);

}  // namespace lab
