#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "lab/store/Changeset.h"

namespace lab {

/// Before the changes that are told, or after them.
enum class Moment { Before, After };

/// The values of a row's primary key.
using Key = std::vector<std::string>;
Key KeyOf(const RowChange& row);

/// The columns of a table of the lab, in their order.
const std::vector<std::string>& ColumnsOf(const std::string& table);

/// The lab as it was around some changes: what they changed is known from them, anything else from
/// what changed it since or from the lab as it is now.
class TimeOfChange {
 public:
  TimeOfChange(Store& store, std::vector<RowChange> changes, std::vector<RowChange> later);

  const std::vector<RowChange>& GetRows() const { return changes_; }
  /// Of a row that was not there at the moment, what it had on the other side of the changes.
  /// Nothing for NULL, and when there was no such row.
  std::optional<std::string> ValueOf(const std::string& table, const Key& key,
                                     const std::string& column, Moment moment) const;
  /// The lab as it is now.
  Store& GetStore() const { return store_; }

 private:
  using RowsByName = std::unordered_map<std::string, const RowChange*>;

  std::optional<std::string> ValueNow(const std::string& table, const Key& key,
                                      const std::string& column) const;

  Store& store_;
  std::vector<RowChange> changes_;
  std::vector<RowChange> later_;
  RowsByName changedRows_;
  RowsByName laterRows_;
};

}  // namespace lab
