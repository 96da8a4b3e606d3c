#include "korel/trace/TraceConfig.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <utility>

#include "platform/hostctl/Misc.h"

namespace OstrelCli::KorelNamespace {
namespace {

constexpr const char* kFile = "/etc/ostrel/korel/koreltraced.conf";

/// An open file, closed at the end.
class Descriptor {
 public:
  Descriptor(const std::string& path, int flags, mode_t mode = 0)
      : descriptor_(open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK, mode)) {}
  ~Descriptor() { Close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int Get() const { return descriptor_; }
  bool IsRegularFile() const {
    struct stat status {};
    return descriptor_ >= 0 && fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode);
  }
  bool Close() {
    const int closing = std::exchange(descriptor_, -1);
    return closing >= 0 && close(closing) == 0;
  }

 private:
  int descriptor_;
};

bool WriteAll(int descriptor, const std::string& text) {
  for (std::size_t done = 0; done < text.size();) {
    const ssize_t written = write(descriptor, text.data() + done, text.size() - done);
    if (written < 0) return false;
    done += static_cast<std::size_t>(written);
  }
  return fsync(descriptor) == 0;
}

}  // namespace

TraceValues ParseTraceConfig(const std::string& text) {
  TraceValues values;
  for (std::size_t next = 0; next < text.size();) {
    const std::size_t end = std::min(text.find('\n', next), text.size());
    const std::string line = text.substr(next, end - next);
    next = end + 1;
    const std::size_t equals = line.find('=');
    if (equals == std::string::npos) continue;
    const std::size_t begin = line.find_first_not_of(" \t");
    values[line.substr(begin, equals - begin)] = line.substr(equals + 1);
  }
  return values;
}

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
  // Reads as a stream does: blanks, a sign, digits, and whatever comes behind them. No number is 0,
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
  const Descriptor file(Tovrin::Misc::HostPath(kFile), O_RDONLY);
  if (!file.IsRegularFile()) return std::nullopt;
  std::string text;
  char buffer[4096];
  ssize_t count = 0;
  while ((count = read(file.Get(), buffer, sizeof buffer)) > 0) {
    text.append(buffer, static_cast<std::size_t>(count));
  }
  if (count < 0) return std::nullopt;
  return ParseTraceConfig(text);
}

bool WriteTraceConfig(const std::string& text) {
  const std::string path = Tovrin::Misc::HostPath(kFile);
  // A file that may not be written stays, although its folder would let it be replaced.
  if (!Descriptor(path, O_WRONLY).IsRegularFile()) return false;
  // Written beside and renamed, so that a full disk or a crash leaves the old file whole.
  const std::string beside = path + ".new";
  Descriptor file(beside, O_WRONLY | O_CREAT | O_TRUNC, 0644);
  const bool written = file.IsRegularFile() && WriteAll(file.Get(), text) && file.Close();
  if (written && std::rename(beside.c_str(), path.c_str()) == 0) return true;
  unlink(beside.c_str());
  return false;
}

}  // namespace OstrelCli::KorelNamespace
