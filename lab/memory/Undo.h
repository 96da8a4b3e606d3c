#pragma once

#include <cstdint>

namespace lab {

/// Takes back what the last command on the lab changed, whichever host it was for, with all its
/// operations. That is an entry of the memory too, so that doing it twice changes nothing.
/// Throws KorelCtlException naming the first entry that cannot be taken back; then nothing has
/// changed.
void UndoLastCommand();

/// The same for everything after that entry of the memory.
void UndoTo(std::int64_t entry);

}  // namespace lab
