#pragma once

#include <optional>
#include <string>
#include <vector>

#include "lab/store/Changeset.h"

namespace lab {

/// One field of one row of the lab that was changed, added or removed, in names that people know.
struct FieldChange {
  const char* kind;                  ///< "changed", "added" or "removed", said of the row
  std::string subject;               ///< "datastore ds1"
  std::optional<std::string> field;  ///< none for a row of no further fields
  std::optional<std::string> before;
  std::optional<std::string> after;
};

/// What the changes did, table by table: what was changed or removed first, then what was added.
/// References are told as the names of what they refer to, numbers that stand for words as the
/// words, the content of a host's file line by line, a line "KEY=VALUE" as the field KEY; what is
/// unset is left out. `later` is what the lab has gone through since, so that the names are those
/// of then. Throws KorelCtlException when the changes are not of a lab.
std::vector<FieldChange> InWords(Store& store, const Changeset& changes,
                                 const Changeset& later = {});

}  // namespace lab
