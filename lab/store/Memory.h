#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "lab/store/Changeset.h"
#include "lab/store/Store.h"

namespace lab {

/// The lab's memory: an entry for each transaction that changed its rows, the newest 1,000 of them
/// or the newest 8 MiB, and always the newest one.
struct Entry {
  std::int64_t number = 0;   ///< counts up from 1
  std::int64_t command = 0;  ///< number of the first entry of the same command
  std::int64_t time = 0;     ///< seconds since 1970
  std::string host;
  std::string line;       ///< the command line; empty when it is not known
  std::string operation;  ///< the host control operation with its arguments, or what else it was
  int version = 0;        ///< of the schema that the changes are of
  std::optional<Changeset> changes;  ///< none when it made the lab
};

/// Within a transaction: adds an entry, with what was changed or, for the making of a lab, null;
/// forgets the oldest ones.
void Remember(Store& store, const Origin& origin, const Changeset* changes);

/// The entries, the newest first; at most `most` of them.
std::vector<Entry> NewestEntries(Store& store, std::int64_t most);
/// The entries with a larger number, the newest first.
std::vector<Entry> EntriesAfter(Store& store, std::int64_t number);
/// The number of the newest entry; 0 when there is none.
std::int64_t NewestEntry(Store& store);

}  // namespace lab
