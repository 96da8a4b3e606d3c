#pragma once

#include <map>
#include <string>

#include "lab/model/Hosts.h"
#include "lab/store/Store.h"

namespace lab {

/// Log options of the trace daemon by their names.
using TraceOptions = std::map<std::string, std::string>;

/// Throws KorelCtlException unless there is such an option and it takes the value.
void CheckTraceOption(const std::string& name, const std::string& value);

/// Keeps the options; those that are not given stay as they are. Numbers are decimal, 0 or more;
/// "urgent_to_syslog" is "true" or "false"; "normal_path" is absolute or empty, and nothing that
/// would end a quoted line of a file. Throws KorelCtlException naming the first option, by name,
/// that is unknown or whose value is none of its own; then none is kept.
void SetTraceOptions(Store& store, const Host& host, const TraceOptions& options);
/// The options that the host was given.
TraceOptions TraceOptionsOf(Store& store, const Host& host);

}  // namespace lab
