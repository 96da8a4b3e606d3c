#pragma once

#include <cstdint>
#include <optional>

#include "autocli/plugin/ElfDynamic.h"

namespace autocli {

/// Symbols are told by other tables, their own has no size. How many there are at least by the
/// tables in which names are looked up; nothing when one of these cannot be used.
std::optional<std::uint64_t> HashedSymbols(const ElfDynamic& dynamic);

/// The same by the relocations. They cannot be used either when one would change what is not there
/// or may not be changed, or would leave out a function that is called when the file is loaded or
/// unloaded.
std::optional<std::uint64_t> RelocatedSymbols(const ElfDynamic& dynamic);

/// That many symbols are there, each with a name, and with a version if there are any.
bool AreSymbolsSound(const ElfDynamic& dynamic, std::uint64_t count);

}  // namespace autocli
