#pragma once

#include <string>

namespace lab {

/// What the daemon of a new host is configured to do.
std::string StandardTraceConfig();

/// Why the daemon cannot use that configuration: its first such line and what is wrong with it, as
/// "line 2: KORELTRACED_ROTATE_MAX_FILES must be a number of 0 or more, got '-3'"; empty when it
/// can. Lines of other keys and without an equals sign say nothing to it, nor does a value of
/// blanks.
std::string FaultOfTraceConfig(const std::string& config);

/// The configuration with a note of the volume that the daemon took: the last one that is named,
/// else its own.
std::string WithVolumeTaken(const std::string& config);

/// The text is empty or an absolute path, without quotation marks and control characters.
bool IsTracePath(const std::string& text);
/// The text is a number of 0 or more.
bool IsTraceCount(const std::string& text);

}  // namespace lab
