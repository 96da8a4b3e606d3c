#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

/// The trace daemon's configuration file: lines of a key, an equals sign and a value.
namespace OstrelCli::KorelNamespace {

inline constexpr const char* kTraceDaemon = "/etc/init.d/koreltraced";

inline constexpr const char* kTraceVolume = "KORELTRACED_VOLUME";
/// Written by the daemon, once it has chosen where to write.
inline constexpr const char* kTraceLastSelectedVolume = "KORELTRACED_LAST_SELECTED_VOLUME";
inline constexpr const char* kTraceMaxFiles = "KORELTRACED_ROTATE_MAX_FILES";
inline constexpr const char* kTraceFileSize = "KORELTRACED_ROTATE_FILE_SIZE";
inline constexpr const char* kTraceUrgentToSyslog = "KORELTRACED_LOG_URGENT_TO_SYSLOG";

/// One number of the file, in the order in which the file is written.
struct TraceNumber {
  const char* key;
  const char* option;      ///< of "trace set"
  const char* hostOption;  ///< of the host; null when it has none
  std::int64_t standard;   ///< what holds when nothing is set
  bool isSwitch;           ///< 1 or 0
};

inline constexpr std::array<TraceNumber, 11> kTraceNumbers = {{
    {kTraceMaxFiles, "numfiles", "normal_num_of_files", 8, false},
    {kTraceUrgentToSyslog, "logtosyslog", "urgent_to_syslog", 1, true},
    {kTraceFileSize, "size", "normal_size_in_kb", 45, false},
    {"KORELTRACED_URGENT_ROTATE_MAX_FILES", "urgentnumfiles", "urgent_num_of_files", 8, false},
    {"KORELTRACED_URGENT_ROTATE_FILE_SIZE", "urgentsize", "urgent_size_in_kb", 10, false},
    {"KORELTRACED_DOM_OBJ_ROTATE_MAX_FILES", "domobjnumfiles", "object_manager_num_of_files", 8,
     false},
    {"KORELTRACED_DOM_OBJ_ROTATE_FILE_SIZE", "domobjsize", "object_manager_size_in_kb", 45, false},
    {"KORELTRACED_LSOM_ROTATE_MAX_FILES", "lsom-num-files",
     "log_structured_object_manager_num_of_files", 8, false},
    {"KORELTRACED_LSOM_ROTATE_FILE_SIZE", "lsom-size", "log_structured_object_manager_size_in_kb",
     45, false},
    {"KORELTRACED_LSOM_VERBOSE_ROTATE_MAX_FILES", "lsom-verbose-num-files", nullptr, 8, false},
    {"KORELTRACED_LSOM_VERBOSE_ROTATE_FILE_SIZE", "lsom-verbose-size", nullptr, 45, false},
}};

/// The values of the file by their keys. A key begins at the first character that is no blank; its
/// value is all that follows the first equals sign. A later line stands for an earlier one, unless
/// it gives a number no value but blanks. Other lines say nothing.
using TraceValues = std::map<std::string, std::string>;

/// The directory of that key without quotation marks, or `standard`.
std::string TraceDirectory(const TraceValues& values, const char* key, const std::string& standard);

/// The number of that key as a stream reads it, or its standard value. What is no number reads as
/// 0.
std::int64_t TraceValue(const TraceValues& values, const TraceNumber& number);

/// The same for a key of kTraceNumbers.
std::int64_t TraceValue(const TraceValues& values, const char* key);

/// The values of the file; nothing when it cannot be read whole.
std::optional<TraceValues> ReadTraceConfig();

/// Writes `text` into the file, from its start: mode, owner and links stay. Returns false when that
/// fails; the file is as it was when it cannot be opened.
bool WriteTraceConfig(const std::string& text);

}  // namespace OstrelCli::KorelNamespace
