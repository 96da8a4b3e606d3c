#pragma once

#include <optional>
#include <string>
#include <vector>

#include "lab/store/Store.h"

/// What differs between two states of a lab, told in names that people know.
namespace lab {

/// One value of an entry.
struct EntryField {
  std::string title;
  std::string value;
  bool isInSubject = false;  ///< the entry's subject says it already
};

/// A row of the lab's file, or a file of one of its hosts.
struct Entry {
  std::string key;      ///< the same for the same entry in another state of the lab
  std::string subject;  ///< "datastore ds1"
  std::vector<EntryField> fields;
};

/// Every row of every table: references as the names of what they refer to, numbers that stand for
/// words as the words, NULL not at all.
std::vector<Entry> RowsOf(Store& store);
/// Every file under the hosts' roots, one field for each line; a line "KEY=VALUE" is titled KEY.
std::vector<Entry> FilesOf(const Store& store);

/// The lines of a file; none when there is no such file. Throws when it cannot be read to its end.
std::vector<std::string> LinesOfFile(const std::string& path);

/// One field of one entry that was changed, added or removed.
struct Change {
  const char* kind;  ///< "changed", "added" or "removed", said of the entry
  std::string subject;
  std::optional<std::string> field;  ///< none for an entry of no further fields
  std::optional<std::string> before;
  std::optional<std::string> after;
};

/// What made `after` of `before`: what was changed or removed first, then what was added.
std::vector<Change> ChangesBetween(const std::vector<Entry>& before,
                                   const std::vector<Entry>& after);

}  // namespace lab
