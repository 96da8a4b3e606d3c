#pragma once

#include <utility>

#include "platform/hostctl/KorelCtlException.h"
#include "platform/hostctl/Misc.h"

namespace OstrelCli::KorelNamespace {

/// Calls an operation that the host control library may lack. Without it throws KorelCtlException:
/// the library cannot `what`, as in "set default policies".
template <typename Result, typename... Parameters, typename... Given>
Result CallOptional(Result (*operation)(Parameters...), const char* what, Given&&... given) {
  if (operation == nullptr) {
    throw Tovrin::Lib::Korel::KorelCtlException(
        Tovrin::Misc::StrCat("the host control library of this host cannot ", what));
  }
  return operation(std::forward<Given>(given)...);
}

}  // namespace OstrelCli::KorelNamespace
