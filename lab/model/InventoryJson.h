#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace lab {

/// What is wrong with an inventory: a message for each fault as far as anybody reads them, and how
/// many more there are.
class InventoryFaults {
 public:
  /// `place` is where in the inventory ("hosts[0].name").
  void Add(const std::string& place, const std::string& what);
  bool IsEmpty() const { return listed_.empty(); }
  /// The messages, then "and 23 more faults" when there are more than 100.
  std::vector<std::string> Messages() const;

 private:
  std::vector<std::string> listed_;
  std::size_t more_ = 0;
};

/// The value that the text, one whole JSON document, stands for. It is at most 100 levels deep,
/// since a copy of a deeper one may take all of the stack, and has no key twice in an object.
/// Null, with faults added, when the text is anything else.
nlohmann::json ReadInventoryJson(std::string_view text, InventoryFaults& faults);

}  // namespace lab
