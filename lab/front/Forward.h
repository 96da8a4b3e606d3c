#pragma once

#include <utility>

namespace lab {

/// The function with `own`'s name in the lab's library, autocli/libkorellab.so beside this one. The
/// first call loads that library. Throws KorelCtlException when it
/// cannot be loaded or has no such function.
void* InLab(const void* own);

/// Calls the function of the same name and type in that library.
template <typename Result, typename... Parameters, typename... Given>
Result Forward(Result (*own)(Parameters...), Given&&... given) {
  const auto there =
      reinterpret_cast<Result (*)(Parameters...)>(InLab(reinterpret_cast<const void*>(own)));
  return there(std::forward<Given>(given)...);
}

}  // namespace lab
