#pragma once

#include <utility>

namespace lab {

/// The function of the same name in the library that has the lab, autocli/libkorellab.so
/// beside this one. Loads it when it is asked for the first time. Throws KorelCtlException when it
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
