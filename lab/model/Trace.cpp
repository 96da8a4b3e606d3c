#include "lab/model/Trace.h"

#include <array>

#include "lab/base/Text.h"
#include "lab/model/TraceConfig.h"
#include "lab/store/Query.h"

namespace lab {
namespace {

/// What values an option takes.
struct Kind {
  bool (*takes)(const std::string& value);
  const char* description;
};

bool IsSwitch(const std::string& value) { return value == "true" || value == "false"; }

constexpr Kind kCount{IsTraceCount, "a number of 0 or more"};
constexpr Kind kSwitch{IsSwitch, "true or false"};
constexpr Kind kPath{
    IsTracePath, "an absolute path without quotation marks and control characters, or be empty"};

struct Option {
  const char* name;
  Kind kind;
};

constexpr auto kOptions = std::to_array<Option>({
    {"normal_path", kPath},
    {"normal_num_of_files", kCount},
    {"normal_size_in_kb", kCount},
    {"urgent_num_of_files", kCount},
    {"urgent_size_in_kb", kCount},
    {"object_manager_num_of_files", kCount},
    {"object_manager_size_in_kb", kCount},
    {"log_structured_object_manager_num_of_files", kCount},
    {"log_structured_object_manager_size_in_kb", kCount},
    {"urgent_to_syslog", kSwitch},
});

const Option& FindOption(const std::string& name) {
  std::vector<std::string> names;
  for (const Option& option : kOptions) {
    if (name == option.name) return option;
    names.emplace_back(option.name);
  }
  Fail("no trace option is named ", Quoted(name), DidYouMean(name, names));
}

}  // namespace

void CheckTraceOption(const std::string& name, const std::string& value) {
  const Option& option = FindOption(name);
  if (option.kind.takes(value)) return;
  Fail("trace option ", name, " must be ", option.kind.description, ", got ", Quoted(value));
}

void SetTraceOptions(Store& store, const Host& host, const TraceOptions& options) {
  for (const auto& [name, value] : options) {
    CheckTraceOption(name, value);
    Execute(store, "INSERT OR REPLACE INTO traceOptions VALUES (?, ?, ?)", host.id, name, value);
  }
}

TraceOptions TraceOptionsOf(Store& store, const Host& host) {
  TraceOptions options;
  for (const Row& row :
       Query(store, "SELECT name, value FROM traceOptions WHERE host = ?", host.id)) {
    options[row.Text(0)] = row.Text(1);
  }
  return options;
}

}  // namespace lab
