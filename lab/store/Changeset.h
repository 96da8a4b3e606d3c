#pragma once

#include <string>
#include <vector>

#include "lab/store/Store.h"

namespace lab {

/// What was changed, row by row, as SQLite's session extension writes it.
using Changeset = std::string;

/// One value of a row.
struct Value {
  bool isKnown = false;  ///< false: it is not part of the change
  bool isNull = false;
  std::string text;  ///< numbers in decimal digits, bytes as they are
};

/// One row that was added (no `before`), removed (no `after`) or changed.
struct RowChange {
  std::string table;
  std::vector<bool> isKey;    ///< of each column
  std::vector<Value> before;  ///< of a changed row the key and what differs; else all values
  std::vector<Value> after;   ///< of a changed row what differs; else all values
};

/// The changes, table by table. Throws KorelCtlException when the bytes are no changeset of the
/// lab's own tables.
std::vector<RowChange> RowsOf(Store& store, const Changeset& changes);
/// The changes of an older lab for the tables that have got columns at their end since: of rows
/// that were added or removed the new columns have their defaults. Throws as RowsOf.
Changeset Widened(Store& store, const Changeset& changes);
/// How many rows there are in it.
std::int64_t CountRows(Store& store, const Changeset& changes);

/// All functions throw KorelCtlException, as RowsOf does, for bytes that are no changeset of a lab.

/// What the changesets come to, one after the other.
Changeset Combined(Store& store, const std::vector<Changeset>& changes);
/// What takes the changes back.
Changeset Inverted(Store& store, const Changeset& changes);
/// Within a transaction: makes the changes. False, when the rows are not those that it changes, and
/// then nothing is said about what was changed before: the transaction must not be committed.
bool Apply(Store& store, const Changeset& changes);

}  // namespace lab
