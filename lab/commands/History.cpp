#include "lab/base/Text.h"
#include "lab/commands/ChangeList.h"
#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/Lab.h"
#include "lab/store/Memory.h"

namespace lab {
namespace {

constexpr std::int64_t kMostEntries = 1000;

constexpr const char* kFields = "Entry,Time,Host,Command,Operation,Rows";

std::shared_ptr<MetaStruct> Shape() {
  auto shape = Structure("LabHistory", {{"Entry", MetaType::Int},
                                        {"Time", MetaType::String},
                                        {"Host", MetaType::String},
                                        {"Command", MetaType::String},
                                        {"Operation", MetaType::String},
                                        {"Rows", MetaType::Int}});
  shape->SetField("Changes", NoChanges());
  return shape;
}

std::shared_ptr<MetaStruct> Describe(Store& store, const Entry& entry) {
  auto record = Shape();
  record->SetField("Entry", entry.number);
  record->SetField("Time", UtcTime(entry.time));
  record->SetField("Host", entry.host);
  record->SetField("Command", entry.line);
  record->SetField("Operation", entry.operation);
  try {
    // What made the lab is not counted.
    if (entry.changes) record->SetField("Rows", CountRows(store, *entry.changes));
  } catch (const Tovrin::Lib::Korel::KorelCtlException&) {
    // One that is damaged hides no other; 'lab check' names it.
  }
  return record;
}

std::shared_ptr<MetaList> DescribeAll(Store& store, const std::vector<Entry>& entries) {
  const auto list = ListOf(Shape());
  for (const Entry& entry : entries) list->Add(Describe(store, entry));
  return list;
}

std::shared_ptr<MetaList> DescribeOne(Store& store, std::int64_t number) {
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
  auto record = Describe(store, entry);
  if (entry.changes) {
    record->SetField("Changes",
                     ListOfChanges(InWords(store, *entry.changes, Combined(store, later))));
  }
  const auto list = ListOf(Shape());
  list->Add(record);
  return list;
}

class LabHistory final : public LabCommand {
 public:
  LabHistory() { Show(*this, *Shape(), "simple", "Entry %Entry%"); }

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
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

  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override { return Answers(ListOf(Shape())); }

  void Run(const InputPtr& input, const OutputPtr& output) override {
    if (input->HasParameter("last") && input->HasParameter("entry")) {
      return Refuse(output, "Specify only one of --last or --entry.");
    }
    const bool isOne = input->HasParameter("entry");
    SetDefaultOutputParameter("fields:LabHistory",
                              std::string(kFields) + (isOne ? ",Changes" : ""));
    // The list is a table of its own, as wide as it is.
    SetDefaultOutputParameter("wrap", isOne ? "80" : "0");
    const auto last = input->HasParameter("last") ? input->GetParameterInt("last") : kMostEntries;
    output->SetRootObject(ReadLab([&](Store& store) {
      return isOne ? DescribeOne(store, input->GetParameterInt("entry"))
                   : DescribeAll(store, NewestEntries(store, last));
    }));
  }
};

}  // namespace

CommandPtr NewHistory() { return std::make_shared<LabHistory>(); }

}  // namespace lab
