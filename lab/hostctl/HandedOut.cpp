#include "lab/hostctl/HandedOut.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

#include "lab/base/CommandLine.h"
#include "lab/base/Text.h"
#include "lab/model/HostFiles.h"
#include "lab/model/Lab.h"
#include "platform/hostctl/Misc.h"

namespace lab {
namespace {

constexpr const char* kDescriptors = "/proc/self/fd/";

/// A file in memory that holds what a host's file held.
struct HandedOut {
  HandedOut(std::string hostName, HostFile read, File made)
      : host(std::move(hostName)), file(std::move(read)), memory(std::move(made)) {}

  std::string host;
  HostFile file;
  File memory;
};

/// What the process holds, of one command.
struct Held {
  std::string command;
  std::vector<HandedOut> files;
};

Held& HeldByProcess() {
  static auto& held = *new Held;
  return held;
}

/// At the end of the process nobody is left to catch anything.
void TakeInAtExit() {
  try {
    TakeInHostFiles();
  } catch (const Tovrin::Lib::Korel::KorelCtlException& failure) {
    std::fprintf(stderr, "error: %s\n", failure.GetMessage().c_str());
    std::fflush(nullptr);
    _exit(1);
  }
}

File InMemory(const HostFile& file) {
  File memory(memfd_create("host-file", MFD_CLOEXEC | MFD_ALLOW_SEALING));
  const auto size = static_cast<ssize_t>(file.content.size());
  if (!memory.IsOpen() ||
      pwrite(memory.Get(), file.content.data(), file.content.size(), 0) != size) {
    Fail("cannot hand out ", Quoted(file.path), ": ", ErrorText(errno));
  }
  if (file.isReadOnly) {
    // The mode stops people, the seals stop root.
    fchmod(memory.Get(), 0444);
    fcntl(memory.Get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE);
  }
  return memory;
}

std::string ContentOf(const HandedOut& out) {
  struct stat status {};
  fstat(out.memory.Get(), &status);
  const auto size = static_cast<std::size_t>(status.st_size);
  // One byte too many is enough to be refused.
  std::string content(std::min(size, kMostFileBytes + 1), '\0');
  const ssize_t count = pread(out.memory.Get(), content.data(), content.size(), 0);
  if (count != static_cast<ssize_t>(content.size())) {
    Fail("cannot read ", Quoted(out.file.path), ": ", ErrorText(errno));
  }
  if (size > kMostFileBytes) {
    Fail("a host's file holds at most 64 KiB, ", Quoted(out.file.path), " would hold ",
         std::to_string(size), " bytes; it stays as it was");
  }
  return content;
}

void TakeIn(HandedOut& out) {
  std::string content = ContentOf(out);
  if (content == out.file.content) return;
  LabTransaction transaction(Access::Change);
  Store& store = transaction.GetStore();
  SetContent(store, HostNamed(store, out.host), out.file.path, content);
  transaction.Commit([&] { return "writes " + out.file.path; });
  out.file.content = std::move(content);
}

}  // namespace

std::string HandOutHostFile(const std::string& path) {
  static const int registered = std::atexit(TakeInAtExit);
  static_cast<void>(registered);
  TakeInHostFiles();
  const auto [host, file] = ReadLab([&](Store& store) {
    const Host current = CurrentHost(store);
    return std::pair(current.name, FindFile(store, current, path));
  });
  if (access(kDescriptors, X_OK) != 0) {
    Fail("the files of a lab host need /proc, which is not there: ", ErrorText(errno));
  }
  if (!file) return std::string(kDescriptors) + "no-such-file";
  HandedOut& out = HeldByProcess().files.emplace_back(host, *file, InMemory(*file));
  return kDescriptors + std::to_string(out.memory.Get());
}

void TakeInHostFiles() {
  Held& held = HeldByProcess();
  if (!MayChange()) return;
  try {
    for (HandedOut& out : held.files) TakeIn(out);
  } catch (...) {
    // Or every later operation would fail for it.
    held.files.clear();
    ThrowActionable();
  }
  std::string command = CurrentCommand().number;
  if (held.command != command) held = {std::move(command), {}};
}

void TryToTakeInHostFiles() noexcept {
  if (!MayChange()) return;
  try {
    for (HandedOut& out : HeldByProcess().files) TakeIn(out);
  } catch (const std::exception&) {
    // The next operation says so.
  }
}

}  // namespace lab

std::string Tovrin::Misc::HostPath(const std::string& path) {
  try {
    return lab::HandOutHostFile(path);
  } catch (...) {
    lab::ThrowActionable();
  }
}
