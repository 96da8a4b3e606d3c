#include "korel/trace/TraceConfig.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "platform/hostctl/Misc.h"

namespace OstrelCli::KorelNamespace {
namespace {

constexpr const char* kFile = "/etc/ostrel/korel/koreltraced.conf";

constexpr const char* kBlanks = " \t\n\v\f\r";

/// What a stream makes of a line that says no more than this about a number: nothing.
bool LeavesNumberAlone(const std::string& key, const std::string& value) {
  return value.find_first_not_of(kBlanks) == std::string::npos &&
         std::any_of(kTraceNumbers.begin(), kTraceNumbers.end(),
                     [&](const TraceNumber& number) { return key == number.key; });
}

/// Reads one line: the values that it sets.
void ReadLine(const std::string& line, TraceValues& values) {
  const std::size_t equals = line.find('=');
  if (equals == std::string::npos) return;
  const std::size_t begin = line.find_first_not_of(" \t");
  const std::string key = line.substr(begin, equals - begin);
  const std::string value = line.substr(equals + 1);
  if (!LeavesNumberAlone(key, value)) values[key] = value;
}

struct CloseStream {
  void operator()(std::FILE* stream) const { std::fclose(stream); }
};
/// C's streams: those of C++ bring locales along, which each start would pay for.
using Stream = std::unique_ptr<std::FILE, CloseStream>;

Stream Open(const char* mode) {
  using Tovrin::Misc::HostPath;
  const std::string path = HostPath == nullptr ? kFile : HostPath(kFile);
  return Stream(std::fopen(path.c_str(), mode));
}

}  // namespace

std::string TraceDirectory(const TraceValues& values, const char* key,
                           const std::string& standard) {
  const auto found = values.find(key);
  if (found == values.end()) return standard;
  std::string directory = found->second;
  std::erase(directory, '"');
  return directory;
}

std::int64_t TraceValue(const TraceValues& values, const TraceNumber& number) {
  const auto found = values.find(number.key);
  if (found == values.end()) return number.standard;
  // Reads as a stream does: blanks, a sign, digits, and whatever comes after them. No number is 0,
  // too large a one the largest there is; any number but 0 switches on.
  const std::int64_t value = std::strtoll(found->second.c_str(), nullptr, 10);
  return number.isSwitch ? std::int64_t{value != 0} : value;
}

std::int64_t TraceValue(const TraceValues& values, const char* key) {
  const auto* number =
      std::find_if(kTraceNumbers.begin(), kTraceNumbers.end(),
                   [&](const TraceNumber& one) { return std::string(one.key) == key; });
  return TraceValue(values, *number);
}

std::optional<TraceValues> ReadTraceConfig() {
  const Stream file = Open("re");
  if (!file) return std::nullopt;
  TraceValues values;
  std::string line;
  int c = 0;
  while ((c = std::getc(file.get())) != EOF) {
    if (c != '\n') {
      line += static_cast<char>(c);
      continue;
    }
    ReadLine(line, values);
    line.clear();
  }
  if (std::ferror(file.get()) != 0) return std::nullopt;
  ReadLine(line, values);
  return values;
}

bool WriteTraceConfig(const std::string& text) {
  Stream file = Open("we");
  if (!file) return false;
  const bool isWritten = std::fwrite(text.data(), 1, text.size(), file.get()) == text.size();
  return std::fclose(file.release()) == 0 && isWritten;
}

}  // namespace OstrelCli::KorelNamespace
