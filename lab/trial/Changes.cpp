#include "lab/trial/Changes.h"

#include <algorithm>
#include <unordered_map>

namespace lab {
namespace {

using Known = std::unordered_map<std::string, const Entry*>;

Known ByKey(const std::vector<Entry>& entries) {
  Known known;
  for (const Entry& entry : entries) known[entry.key] = &entry;
  return known;
}

std::optional<std::string> ValueOf(const Entry& entry, const std::string& title) {
  const auto field = std::find_if(entry.fields.begin(), entry.fields.end(),
                                  [&](const EntryField& each) { return each.title == title; });
  return field == entry.fields.end() ? std::nullopt : std::optional(field->value);
}

void AddChanged(std::vector<Change>& changes, const Entry& before, const Entry& after) {
  const auto add = [&](const std::string& title) {
    Change change{"changed", before.subject, title, ValueOf(before, title), ValueOf(after, title)};
    if (change.before != change.after) changes.push_back(std::move(change));
  };
  for (const EntryField& field : before.fields) add(field.title);
  for (const EntryField& field : after.fields) {
    if (!ValueOf(before, field.title)) add(field.title);
  }
}

void AddWhole(std::vector<Change>& changes, const Entry& entry, bool isAdded) {
  const char* kind = isAdded ? "added" : "removed";
  const auto first = changes.size();
  for (const auto& [title, value, isInSubject] : entry.fields) {
    if (isInSubject || value.empty()) continue;
    changes.push_back({kind, entry.subject, title, {}, {}});
    (isAdded ? changes.back().after : changes.back().before) = value;
  }
  if (changes.size() == first) changes.push_back({kind, entry.subject, {}, {}, {}});
}

}  // namespace

std::vector<Change> ChangesBetween(const std::vector<Entry>& before,
                                   const std::vector<Entry>& after) {
  const Known old = ByKey(before);
  const Known now = ByKey(after);
  std::vector<Change> changes;
  for (const Entry& entry : before) {
    const auto found = now.find(entry.key);
    if (found == now.end()) {
      AddWhole(changes, entry, false);
    } else {
      AddChanged(changes, entry, *found->second);
    }
  }
  for (const Entry& entry : after) {
    if (!old.contains(entry.key)) AddWhole(changes, entry, true);
  }
  return changes;
}

}  // namespace lab
