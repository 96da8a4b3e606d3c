// Preloaded into a program and all that it starts: counts the calls by which they change files in
// one folder, and kills them all before one of these calls, or lets it fail. Or does so with the
// allocations that autocli makes from main() on.
//   PROOF_FOLDER   the folder; calls on other files are neither counted nor touched
//   PROOF_COUNTS   a file of numbers of 64 bits: how many calls there were, how many steps were
//                  completed, and how many calls there had been after each of the steps. A step is
//                  an operation that has its line in the call log.
//   PROOF_MEMORY   1: allocations are counted and struck, in place of the calls
//   PROOF_AT       the number of the call to strike at, from 1; 0: none
//   PROOF_ERROR    the errno value to fail it with; 0: kill
//   PROOF_ONWARD   1: all calls after it fail too
//   PROOF_TORN     1: a write that is struck writes half of its bytes first
//   PROOF_TRACE    a file that gets a record of each call that changed something: a line with what
//                  was done, to which path, at which place in it and with how many bytes; then the
//                  bytes. Those of a new name are the old one.
//   PROOF_SEED     where random numbers start. The time stands still, so that runs can be repeated.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <new>
#include <random>
#include <string>
#include <string_view>
#include <type_traits>

extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* old, size_t size);
void* __libc_memalign(size_t alignment, size_t size);
}

// What is allocated here does not count. The programs have a C++ runtime of their own.
void* operator new(std::size_t size) { return __libc_malloc(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace {

using Counts = std::atomic<std::int64_t>;

std::string Text(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}
std::int64_t Number(const char* name) { return std::atoll(Text(name).c_str()); }

Counts* SharedCounts() {
  // Not by open(), which would ask for the plan that is being made.
  const std::string path = Text("PROOF_COUNTS");
  const auto file = static_cast<int>(syscall(SYS_openat, AT_FDCWD, path.c_str(), O_RDWR));
  void* page = mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  if (page == MAP_FAILED) std::abort();
  close(file);
  return static_cast<Counts*>(page);
}

struct Plan {
  std::string folder = Text("PROOF_FOLDER") + "/";
  std::string calls = Text("KOREL_LAB_CALLS");
  std::int64_t at = Number("PROOF_AT");
  int error = static_cast<int>(Number("PROOF_ERROR"));
  std::string trace = Text("PROOF_TRACE");
  bool isOnward = Number("PROOF_ONWARD") != 0;
  bool isTorn = Number("PROOF_TORN") != 0;
  bool isOfMemory = Number("PROOF_MEMORY") != 0;
  Counts* counts = SharedCounts();

  bool Watches(const std::string& path) const {
    return !isOfMemory && (path + "/").starts_with(folder);
  }
  bool IsStruck(std::int64_t number) const {
    return at != 0 && (number == at || (isOnward && number > at));
  }
};

const Plan& ThePlan() {
  static const Plan plan;
  return plan;
}

std::string PathOf(int file) {
  char path[4096];
  const auto size = readlink(("/proc/self/fd/" + std::to_string(file)).c_str(), path, sizeof path);
  return {path, size < 0 ? 0 : static_cast<std::size_t>(size)};
}
std::string PathOf(int folder, const char* name) {
  return folder == AT_FDCWD || *name == '/' ? name : PathOf(folder) + "/" + name;
}

template <typename Result = int, typename... Args>
Result Real(const char* call, Args... args) {
  return reinterpret_cast<Result (*)(Args...)>(dlsym(RTLD_NEXT, call))(args...);
}

/// The call, which changes the file at `path`; without arguments it has nothing to do.
template <typename Result = int, typename... Args>
Result Change(const char* call, const std::string& path, Args... args) {
  const Plan& plan = ThePlan();
  if (plan.Watches(path) && plan.IsStruck(++plan.counts[0])) {
    if (plan.error == 0) kill(0, SIGKILL);
    errno = plan.error;
    return std::is_pointer_v<Result> ? Result() : Result(-1);
  }
  Result result{};
  if constexpr (sizeof...(args) > 0) result = Real<Result>(call, args...);
  if (path == plan.calls) plan.counts[1 + ++plan.counts[1]] = +plan.counts[0];
  return result;
}

/// Puts a call on record, unless it failed.
template <typename Result>
Result Note(Result result, const std::string& what, const std::string& path, off64_t place = 0,
            std::string_view data = {}) {
  const Plan& plan = ThePlan();
  if (plan.trace.empty() || !plan.Watches(path) || result == Result(-1)) return result;
  std::string record = what + " " + path + " " + std::to_string(place);
  record.append(" ").append(std::to_string(data.size())).append("\n").append(data);
  const int flags = O_WRONLY | O_CREAT | O_APPEND;
  const auto file = syscall(SYS_openat, AT_FDCWD, plan.trace.c_str(), flags, 0600);
  syscall(SYS_write, file, record.data(), record.size());
  syscall(SYS_close, file);
  return result;
}

/// Without a place, the bytes went where the file stands now.
ssize_t NoteWrite(ssize_t size, int file, const std::string& path, const void* data,
                  off64_t place = -1) {
  if (size < 0) return size;
  if (place < 0) place = lseek64(file, 0, SEEK_CUR) - size;
  return Note(size, "write", path, place,
              {static_cast<const char*>(data), static_cast<std::size_t>(size)});
}

template <typename... Place>
ssize_t Write(const char* call, int file, const void* data, std::size_t size, Place... place) {
  const Plan& plan = ThePlan();
  const std::string path = PathOf(file);
  if (plan.isTorn && plan.Watches(path) && plan.counts[0] + 1 == plan.at) {
    Real<ssize_t>(call, file, data, size / 2, place...);
  }
  return NoteWrite(Change<ssize_t>(call, path, file, data, size, place...), file, path, data,
                   place...);
}

// Only programs are killed here: what was written is there. power.py makes what else could be.
int Sync(const char* call, int file) {
  const std::string path = PathOf(file);
  return Note(Change(call, path), "sync", path);
}

int Open(const char* call, const char* path, int flags, mode_t mode) {
  // SQLite takes from there what makes each journal another one.
  if (std::string_view(path) == "/dev/urandom") path = "/dev/zero";
  const bool changes = (flags & (O_CREAT | O_TRUNC)) != 0;
  return changes ? Note(Change(call, path, path, flags, mode),
                        (flags & O_TRUNC) != 0 ? "empty" : "create", path)
                 : Real(call, path, flags, mode);
}

using MainFunction = int (*)(int, char**, char**);
MainFunction programMain;
bool hasBegun = false;

int BeginMain(int argc, char** argv, char** environment) {
  hasBegun = std::string_view(*argv).ends_with("autocli") && ThePlan().isOfMemory;
  return programMain(argc, argv, environment);
}

template <typename... Args>
void* Allocate(void* (*call)(Args...), Args... args) {
  if (!hasBegun || !ThePlan().IsStruck(++ThePlan().counts[0])) return call(args...);
  if (ThePlan().error == 0) kill(0, SIGKILL);
  errno = ThePlan().error;
  return nullptr;
}

}  // namespace

extern "C" {

int __libc_start_main(MainFunction main, int argc, char** argv, void* init, void* fini, void* end,
                      void* stack) {
  programMain = main;
  return Real("__libc_start_main", &BeginMain, argc, argv, init, fini, end, stack);
}

void* malloc(size_t size) noexcept { return Allocate(__libc_malloc, size); }
void* calloc(size_t count, size_t size) noexcept { return Allocate(__libc_calloc, count, size); }
void* realloc(void* old, size_t size) noexcept { return Allocate(__libc_realloc, old, size); }
void* memalign(size_t alignment, size_t size) noexcept {
  return Allocate(__libc_memalign, alignment, size);
}
void* aligned_alloc(size_t alignment, size_t size) noexcept { return memalign(alignment, size); }
int posix_memalign(void** memory, size_t alignment, size_t size) noexcept {
  *memory = memalign(alignment, size);
  return *memory == nullptr ? ENOMEM : 0;
}

// By labels, for the headers declare them with words to follow.
int Open32(const char* path, int flags, mode_t mode) __asm__("open");
int Open32(const char* path, int flags, mode_t mode) { return Open("open", path, flags, mode); }
int Open64(const char* path, int flags, mode_t mode) __asm__("open64");
int Open64(const char* path, int flags, mode_t mode) { return Open("open64", path, flags, mode); }
FILE* fopen64(const char* path, const char* mode) {
  if (*mode == 'r') return Real<FILE*>("fopen64", path, mode);
  FILE* file = Change<FILE*>("fopen64", path, path, mode);
  if (file != nullptr) Note(0, *mode == 'w' ? "empty" : "create", path);
  return file;
}
ssize_t write(int file, const void* data, size_t size) { return Write("write", file, data, size); }
ssize_t pwrite64(int file, const void* data, size_t size, off64_t place) {
  return Write("pwrite64", file, data, size, place);
}
ssize_t writev(int file, const iovec* pieces, int count) {
  const std::string path = PathOf(file);
  std::string data;
  std::for_each_n(pieces, count, [&data](const iovec& piece) {
    data.append(static_cast<const char*>(piece.iov_base), piece.iov_len);
  });
  return NoteWrite(Change<ssize_t>("writev", path, file, pieces, count), file, path, data.data());
}
int ftruncate64(int file, off64_t size) noexcept {
  const std::string path = PathOf(file);
  return Note(Change("ftruncate64", path, file, size), "cut", path, size);
}
int fsync(int file) { return Sync("fsync", file); }
int fdatasync(int file) { return Sync("fdatasync", file); }
int unlink(const char* path) noexcept { return Note(Change("unlink", path, path), "remove", path); }
int remove(const char* path) noexcept { return Note(Change("remove", path, path), "remove", path); }
int unlinkat(int folder, const char* name, int flags) noexcept {
  const std::string path = PathOf(folder, name);
  return Note(Change("unlinkat", path, folder, name, flags), "remove", path);
}
int rename(const char* from, const char* to) noexcept {
  return Note(Change("rename", to, from, to), "rename", to, 0, from);
}
int renameat(int source, const char* from, int folder, const char* to) noexcept {
  const std::string path = PathOf(folder, to);
  return Note(Change("renameat", path, source, from, folder, to), "rename", path, 0,
              PathOf(source, from));
}
int renameat2(int source, const char* from, int folder, const char* to, unsigned flags) noexcept {
  const std::string path = PathOf(folder, to);
  return Note(Change("renameat2", path, source, from, folder, to, flags), "rename", path, 0,
              PathOf(source, from));
}
int link(const char* from, const char* to) noexcept {
  return Note(Change("link", to, from, to), "link", to, 0, from);
}
int mkdir(const char* path, mode_t mode) noexcept { return Change("mkdir", path, path, mode); }
int fchmodat(int folder, const char* name, mode_t mode, int flags) noexcept {
  return Change("fchmodat", PathOf(folder, name), folder, name, mode, flags);
}

time_t time(time_t*) noexcept { return 1'800'000'000; }
int gettimeofday(timeval* now, void*) noexcept { return *now = {time(nullptr), 0}, 0; }
ssize_t getrandom(void* data, size_t size, unsigned) {
  static std::minstd_rand random(static_cast<unsigned>(Number("PROOF_SEED")));
  std::generate_n(static_cast<unsigned char*>(data), size, std::ref(random));
  return static_cast<ssize_t>(size);
}

}  // extern "C"
