#include "lab/model/TraceConfig.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

#include "lab/base/Text.h"

namespace lab {
namespace {

constexpr std::string_view kVolume = "KORELTRACED_VOLUME";
constexpr std::string_view kLastSelectedVolume = "KORELTRACED_LAST_SELECTED_VOLUME";
constexpr std::string_view kOwnVolume = "\"/var/log/koreltraces\"";
constexpr std::string_view kBlanks = " \t\n\v\f\r";

/// What a daemon takes for the value of a key.
struct Kind {
  bool (*takes)(const std::string& value);
  const char* description;
};

std::optional<std::int64_t> NumberOf(const std::string& text) {
  std::int64_t number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

bool IsMegabytes(const std::string& value) {
  const auto number = NumberOf(value);
  return number && *number >= 1 && *number <= 4095;
}

bool IsSwitch(const std::string& value) { return value == "0" || value == "1"; }

/// A path, which may stand in quotation marks.
bool IsVolume(const std::string& value) {
  const bool isQuoted = value.size() >= 2 && value.starts_with('"') && value.ends_with('"');
  return IsTracePath(isQuoted ? value.substr(1, value.size() - 2) : value);
}

constexpr Kind kFiles{IsTraceCount, "a number of 0 or more"};
constexpr Kind kSize{IsMegabytes, "a number from 1 to 4095"};
constexpr Kind kSwitch{IsSwitch, "0 or 1"};
constexpr Kind kPath{IsVolume, "an absolute path, or empty"};

struct Key {
  std::string_view name;
  Kind kind;
  std::string_view standard;
};

/// In the order of a new host's file.
constexpr auto kKeys = std::to_array<Key>({
    {kVolume, kPath, "\"\""},
    {"KORELTRACED_ROTATE_MAX_FILES", kFiles, "8"},
    {"KORELTRACED_LOG_URGENT_TO_SYSLOG", kSwitch, "1"},
    {"KORELTRACED_ROTATE_FILE_SIZE", kSize, "45"},
    {"KORELTRACED_URGENT_ROTATE_MAX_FILES", kFiles, "8"},
    {"KORELTRACED_URGENT_ROTATE_FILE_SIZE", kSize, "10"},
    {"KORELTRACED_DOM_OBJ_ROTATE_MAX_FILES", kFiles, "8"},
    {"KORELTRACED_DOM_OBJ_ROTATE_FILE_SIZE", kSize, "45"},
    {"KORELTRACED_LSOM_ROTATE_MAX_FILES", kFiles, "8"},
    {"KORELTRACED_LSOM_ROTATE_FILE_SIZE", kSize, "45"},
    {"KORELTRACED_LSOM_VERBOSE_ROTATE_MAX_FILES", kFiles, "8"},
    {"KORELTRACED_LSOM_VERBOSE_ROTATE_FILE_SIZE", kSize, "45"},
});

/// A line's key, without blanks before it, and its value, without blanks around it; no key in a
/// line without an equals sign.
struct Setting {
  std::string_view key;
  std::string value;
};

Setting SettingOf(std::string_view line) {
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) return {};
  std::string_view key = line.substr(0, equals);
  key.remove_prefix(std::min(key.size(), key.find_first_not_of(kBlanks)));
  std::string_view value = line.substr(equals + 1);
  value.remove_prefix(std::min(value.size(), value.find_first_not_of(kBlanks)));
  value = value.substr(0, value.find_last_not_of(kBlanks) + 1);
  return {key, std::string(value)};
}

}  // namespace

std::string StandardTraceConfig() {
  std::string config;
  for (const Key& key : kKeys) config.append(key.name).append("=").append(key.standard) += '\n';
  return WithVolumeTaken(config);
}

std::string FaultOfTraceConfig(const std::string& config) {
  std::size_t number = 0;
  for (const std::string& line : Lines(config)) {
    ++number;
    const Setting setting = SettingOf(line);
    const auto* key = std::find_if(kKeys.begin(), kKeys.end(),
                                   [&](const Key& known) { return known.name == setting.key; });
    if (key == kKeys.end() || setting.value.empty() || key->kind.takes(setting.value)) continue;
    return Tovrin::Misc::StrCat("line ", std::to_string(number), ": ", key->name, " must be ",
                                key->kind.description, ", got ", Quoted(setting.value));
  }
  return "";
}

std::string WithVolumeTaken(const std::string& config) {
  std::string noted;
  std::string volume;
  for (const std::string& line : Lines(config)) {
    const Setting setting = SettingOf(line);
    if (setting.key == kLastSelectedVolume) continue;
    if (setting.key == kVolume) volume = setting.value;
    noted.append(line) += '\n';
  }
  if (volume.empty() || volume == "\"\"") volume = kOwnVolume;
  return noted.append(kLastSelectedVolume).append("=").append(volume) + "\n";
}

bool IsTracePath(const std::string& text) {
  if (text.empty()) return true;
  return text.front() == '/' && std::none_of(text.begin(), text.end(), [](char c) {
           const auto byte = static_cast<unsigned char>(c);
           return byte < 0x20 || byte == 0x7f || c == '"';
         });
}

bool IsTraceCount(const std::string& text) {
  const auto number = NumberOf(text);
  return number && *number >= 0;
}

}  // namespace lab
