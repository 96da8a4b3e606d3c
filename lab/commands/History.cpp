#include "lab/commands/ChangeList.h"
#include "lab/commands/Commands.h"
#include "lab/common/Text.h"
#include "lab/model/Lab.h"
#include "lab/store/Memory.h"

namespace lab {
namespace {

constexpr std::int64_t kMostEntries = 1000;

std::shared_ptr<MetaList> NoEntries() {
  return ListOf(Structure("LabHistoryEntry", {{"Entry", MetaType::Int},
                                              {"Time", MetaType::String},
                                              {"Host", MetaType::String},
                                              {"Command", MetaType::String},
                                              {"Operation", MetaType::String},
                                              {"Rows", MetaType::Int}}));
}

std::shared_ptr<MetaStruct> Shape() {
  auto shape = MetaStruct::New("LabHistory");
  shape->SetField("Entries", NoEntries());
  shape->SetField("Changes", NoChanges());
  return shape;
}

std::shared_ptr<MetaStruct> Describe(Store& store, const Entry& entry) {
  auto record = MetaStruct::New("LabHistoryEntry");
  record->SetField("Entry", entry.number);
  record->SetField("Time", UtcTime(entry.time));
  record->SetField("Host", entry.host);
  record->SetField("Command", entry.line);
  record->SetField("Operation", entry.operation);
  // What made the lab is not counted.
  record->SetField("Rows",
                   entry.changes ? MetaInt::New(CountRows(store, *entry.changes)) : MetaInt::New());
  return record;
}

std::shared_ptr<MetaStruct> DescribeAll(Store& store, const std::vector<Entry>& entries) {
  const auto list = NoEntries();
  for (const Entry& entry : entries) list->Add(Describe(store, entry));
  auto record = Shape();
  record->SetField("Entries", list);
  return record;
}

std::shared_ptr<MetaStruct> DescribeOne(Store& store, std::int64_t number) {
  std::vector<Entry> entries = EntriesAfter(store, number - 1);
  if (entries.empty() || entries.back().number != number) {
    Fail("the memory has no entry ", std::to_string(number));
  }
  const Entry entry = std::move(entries.back());
  entries.pop_back();
  std::vector<Changeset> later;
  for (auto each = entries.rbegin(); each != entries.rend(); ++each) {
    if (each->changes) later.push_back(std::move(*each->changes));
  }
  auto record = DescribeAll(store, {entry});
  if (entry.changes) {
    record->SetField("Changes",
                     ListOfChanges(InWords(store, *entry.changes, Combined(store, later))));
  }
  return record;
}

}  // namespace

LabHistory::LabHistory() {
  SetDescription(
      "Show what changed the lab, the newest first, or row by row what one entry changed. The "
      "memory keeps the newest 1,000 entries or 8 MiB of them.");
  Show(*this, *Shape(), "simple");
}

std::shared_ptr<InputSpec> LabHistory::GetInputSpecInternal() {
  return Inputs({{.name = "last",
                  .shortName = "l",
                  .type = ParameterType::Int,
                  .constraint = IntRange(1, kMostEntries),
                  .description = "How many entries; all when not given."},
                 {.name = "entry",
                  .shortName = "e",
                  .type = ParameterType::Int,
                  .description = "Number of an entry, to show what it changed."}});
}

std::shared_ptr<OutputSpec> LabHistory::GetOutputSpecInternal() { return Answers(Shape()); }

void LabHistory::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  if (input->HasParameter("last") && input->HasParameter("entry")) {
    return Refuse(output, "Specify only one of --last or --entry.");
  }
  Attempt(output, [&] {
    const bool isOne = input->HasParameter("entry");
    SetDefaultOutputParameter("fields:LabHistory", isOne ? "Entries,Changes" : "Entries");
    const auto last = input->HasParameter("last") ? input->GetParameterInt("last") : kMostEntries;
    output->SetRootObject(ReadLab([&](Store& store) {
      return isOne ? DescribeOne(store, input->GetParameterInt("entry"))
                   : DescribeAll(store, NewestEntries(store, last));
    }));
  });
}

}  // namespace lab
