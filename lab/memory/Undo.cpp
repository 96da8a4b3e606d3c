#include "lab/memory/Undo.h"

#include <algorithm>
#include <functional>

#include "lab/base/Text.h"
#include "lab/model/Check.h"
#include "lab/model/Lab.h"
#include "lab/store/Memory.h"
#include "lab/store/Query.h"
#include "lab/store/Schema.h"

namespace lab {
namespace {

using Entries = std::vector<Entry>;  // the newest first

std::string NameOf(const Entry& entry) { return "entry " + std::to_string(entry.number); }

void CheckReversible(const Entry& entry) {
  if (!entry.changes) {
    Fail(NameOf(entry), " cannot be taken back: it ", entry.operation);
  }
  if (entry.version != kSchemaVersion) {
    Fail(NameOf(entry), " cannot be taken back: it is of version ", std::to_string(entry.version),
         " of the lab");
  }
}

/// What is wrong when the rows are not as the entry left them.
[[noreturn]] void FailChangedSince(const Entry& entry, bool haveOthersComeBetween) {
  const std::string failure =
      NameOf(entry) + " cannot be taken back: what it changed is no longer as it left it";
  if (!haveOthersComeBetween) Fail(failure, ", and no entry of the memory says why");
  Fail(failure, "; 'autocli lab undo --to ", std::to_string(entry.number - 1),
       "' takes back all that came since as well");
}

void ApplyInverses(Store& store, const Entries& entries) {
  const std::int64_t span = entries.front().number - entries.back().number + 1;
  for (const Entry& entry : entries) {
    CheckReversible(entry);
    if (!Apply(store, Inverted(store, *entry.changes))) {
      FailChangedSince(entry, span != static_cast<std::int64_t>(entries.size()));
    }
  }
}

/// A lab that is sound stays so; one that is not gets no new problem.
void TakeBack(Store& store, const Entries& entries) {
  Execute(store, "SAVEPOINT entries");
  ApplyInverses(store, entries);
  const auto after = Problems(store);
  if (after.empty()) return;
  Execute(store, "ROLLBACK TO entries");
  const auto before = Problems(store);
  for (const std::string& problem : after) {
    if (std::find(before.begin(), before.end(), problem) != before.end()) continue;
    Fail(NameOf(entries.back()), " cannot be taken back: then ", problem);
  }
  ApplyInverses(store, entries);
}

std::string Described(const Entries& entries) {
  const std::string last = std::to_string(entries.front().number);
  const std::string first = std::to_string(entries.back().number);
  if (first == last) return "takes back entry " + last;
  return "takes back entries " + first + " to " + last;
}

void TakeBackChosen(const std::function<Entries(Store&)>& choose) {
  try {
    LabTransaction transaction(Access::ChangeLoosely);
    const Entries entries = choose(transaction.GetStore());
    TakeBack(transaction.GetStore(), entries);
    transaction.Commit([&] { return Described(entries); });
  } catch (...) {
    ThrowActionable();
  }
}

Entries OfLastCommand(Store& store) {
  const Entries newest = NewestEntries(store, 1);
  if (newest.empty()) Fail("the lab has no memory of any change");
  const std::int64_t command = newest.front().command;
  Entries entries = EntriesAfter(store, command - 1);
  std::erase_if(entries, [&](const Entry& entry) { return entry.command != command; });
  if (entries.back().number != command) {
    Fail("entry ", std::to_string(command), ", with which the last command began, is forgotten");
  }
  return entries;
}

Entries After(Store& store, std::int64_t number) {
  const std::int64_t newest = NewestEntry(store);
  if (number < 0 || number > newest) {
    Fail("there is no entry ", std::to_string(number), "; the newest is ", std::to_string(newest));
  }
  Entries entries = EntriesAfter(store, number);
  if (entries.empty()) Fail("nothing came after entry ", std::to_string(number));
  if (entries.back().number != number + 1) {
    Fail("entry ", std::to_string(number + 1), " is forgotten; the oldest is ",
         std::to_string(entries.back().number));
  }
  return entries;
}

}  // namespace

void UndoLastCommand() { TakeBackChosen(OfLastCommand); }

void UndoTo(std::int64_t entry) {
  TakeBackChosen([&](Store& store) { return After(store, entry); });
}

}  // namespace lab
