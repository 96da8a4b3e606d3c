#include "lab/model/InventoryJson.h"

#include <algorithm>
#include <set>

#include "lab/base/Text.h"

namespace lab {
namespace {

using Json = nlohmann::json;

constexpr std::size_t kMaxListed = 100;
constexpr std::size_t kMaxLevels = 100;
// The lists and objects around a device's size; a place says no more than an inventory has.
constexpr std::size_t kLevelsOfInventory = 5;

/// Follows the text from value to value and keeps only where it is, so that nothing deep is made.
class Outline : public nlohmann::json_sax<Json> {
 public:
  explicit Outline(InventoryFaults& faults) : faults_(faults) {}

  bool null() override { return Value(); }
  bool boolean(bool) override { return Value(); }
  bool number_integer(std::int64_t) override { return Value(); }
  bool number_unsigned(std::uint64_t) override { return Value(); }
  bool number_float(double, const std::string&) override { return Value(); }
  bool string(std::string&) override { return Value(); }
  bool binary(Json::binary_t&) override { return Value(); }
  bool start_object(std::size_t) override { return Open(false); }
  bool start_array(std::size_t) override { return Open(true); }
  bool end_object() override { return Close(); }
  bool end_array() override { return Close(); }

  bool key(std::string& key) override {
    if (!levels_.back().keys.insert(key).second) {
      faults_.Add(Place(levels_.size() - 1), "the key " + Quoted(key) + " is there twice");
    }
    levels_.back().key = key;
    return true;
  }

  bool parse_error(std::size_t, const std::string&, const Json::exception& failure) override {
    const std::string what = failure.what();
    faults_.Add("not JSON", what.substr(what.find("] ") + 2));
    return false;
  }

 private:
  /// A list or an object that is not at its end.
  struct Level {
    bool isList;
    std::size_t count = 0;  ///< of the values so far
    std::string key = {};   ///< the last one
    std::set<std::string> keys = {};
  };

  bool Value() {
    if (!levels_.empty()) ++levels_.back().count;
    return true;
  }

  bool Open(bool isList) {
    Value();
    if (levels_.size() == kMaxLevels) {
      faults_.Add(Place(levels_.size()),
                  "is nested more than " + std::to_string(kMaxLevels) + " levels deep");
      return false;
    }
    levels_.push_back({.isList = isList});
    return true;
  }

  bool Close() {
    levels_.pop_back();
    return true;
  }

  /// Of the value within that many levels.
  std::string Place(std::size_t depth) const {
    std::string place;
    for (std::size_t i = 0; i < std::min(depth, kLevelsOfInventory); ++i) {
      const Level& level = levels_[i];
      if (level.isList) {
        place += "[" + std::to_string(level.count - 1) + "]";
      } else {
        place += place.empty() ? "" : ".";
        place += IsPlainName(level.key) ? level.key : Quoted(level.key);
      }
    }
    return place.empty() ? "the inventory" : place;
  }

  InventoryFaults& faults_;
  std::vector<Level> levels_;
};

}  // namespace

void InventoryFaults::Add(const std::string& place, const std::string& what) {
  if (listed_.size() < kMaxListed) {
    listed_.push_back(place + ": " + what);
  } else {
    ++more_;
  }
}

std::vector<std::string> InventoryFaults::Messages() const {
  std::vector<std::string> messages = listed_;
  if (more_ > 0) {
    messages.push_back("and " + std::to_string(more_) + " more fault" + (more_ == 1 ? "" : "s"));
  }
  return messages;
}

Json ReadInventoryJson(std::string_view text, InventoryFaults& faults) {
  // The parser takes this byte for the end and ignores what follows.
  if (const std::size_t end = text.find('\0'); end != std::string_view::npos) {
    faults.Add("not JSON", "byte " + std::to_string(end + 1) + " is a zero byte");
    return {};
  }
  Outline outline(faults);
  Json::sax_parse(text, &outline);
  return faults.IsEmpty() ? Json::parse(text) : Json();
}

}  // namespace lab
