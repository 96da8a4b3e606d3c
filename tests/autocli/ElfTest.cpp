#include <dlfcn.h>
#include <elf.h>
#include <fcntl.h>
#include <link.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <set>

#include "autocli/base/File.h"
#include "autocli/plugin/Elf.h"
#include "tests/autocli/Support.h"

namespace autocli::test {
namespace {

/// A number in the file.
struct Field {
  std::string name;
  std::size_t offset;
  std::size_t size;
  bool isFunction = false;
};

template <typename Record>
Record At(const std::string& bytes, std::size_t offset) {
  Record record;
  std::memcpy(&record, bytes.data() + offset, sizeof record);
  return record;
}

/// All numbers that a linker writes about a file: its header, the segments, the dynamic section.
std::vector<Field> FieldsOf(const std::string& bytes) {
  std::vector<Field> fields;
  const auto add = [&](const std::string& record, std::size_t offset, const auto& sizes) {
    for (const std::size_t size : sizes) {
      fields.push_back({record + " at " + std::to_string(offset), offset, size});
      offset += size;
    }
  };
  const auto header = At<Elf64_Ehdr>(bytes, 0);
  add("header", EI_NIDENT, std::array{2, 2, 4, 8, 8, 8, 4, 2, 2, 2, 2, 2, 2});
  for (std::size_t i = 0; i < header.e_phnum; ++i) {
    const std::size_t start = header.e_phoff + i * sizeof(Elf64_Phdr);
    add("segment", start, std::array{4, 4, 8, 8, 8, 8, 8, 8});
    const auto segment = At<Elf64_Phdr>(bytes, start);
    std::int64_t tag = segment.p_type == PT_DYNAMIC ? -1 : DT_NULL;
    for (std::size_t at = segment.p_offset; tag != DT_NULL; at += sizeof(Elf64_Dyn)) {
      tag = At<Elf64_Dyn>(bytes, at).d_tag;
      add("dynamic entry " + std::to_string(tag), at, std::array{8, 8});
      fields.back().isFunction = tag == DT_INIT || tag == DT_FINI;
    }
  }
  return fields;
}

enum Outcome { kLoaded = 10, kToldWhyNot = 11 };

/// Loads the file, calls it, and unloads it. Returns the outcome, or how the process ended.
int Load(const std::string& path) {
  const pid_t child = fork();
  if (child == 0) {
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) _exit(kToldWhyNot);
    auto root = Namespace::New();
    if (void* entryPoint = dlsym(library, "AutoCli_RegisterNamespaces")) {
      reinterpret_cast<void (*)(std::shared_ptr<Namespace>&)>(entryPoint)(root);
    }
    dlclose(library);
    _exit(kLoaded);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

std::string ProblemOf(const std::string& path) {
  const File file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  return ElfProblem(file.Number());
}

TEST(ElfTest, NoLieOfOneNumberEndsTheProcess) {
  const std::string good = ::test::ReadFile(std::string(TEST_PLUGIN_FOLDER) + "/good.so");
  const ::test::Folder folder;
  const std::string path = folder / "lie.so";
  ::test::WriteFile(path, good);
  ASSERT_EQ(ProblemOf(path), "");
  ASSERT_EQ(Load(path), kLoaded);
  std::set<std::string> problems;
  for (const auto& [name, offset, size, isFunction] : FieldsOf(good)) {
    std::uint64_t truth = 0;
    std::memcpy(&truth, good.data() + offset, size);
    for (const std::uint64_t lie : std::initializer_list<std::uint64_t>{
             0, 1, truth + 1, truth + 8, truth + 24, truth + 4096, truth * 2, 1ULL << 31,
             1ULL << 32, 1ULL << 47, 1ULL << 63, UINT64_MAX}) {
      std::string bytes = good;
      std::memcpy(bytes.data() + offset, &lie, size);
      if (bytes == good) continue;
      ::test::WriteFile(path, bytes);
      const std::string problem = ProblemOf(path);
      if (!problem.empty()) {
        problems.insert(problem);
      } else if (!isFunction) {  // another place of the code looks as right as the right one
        EXPECT_THAT(Load(path), testing::AnyOf(kLoaded, kToldWhyNot))
            << name << ": " << std::hex << lie << " for " << truth;
      }
    }
  }
  EXPECT_THAT(problems,
              testing::UnorderedElementsAre(
                  "asks for more than 256 MiB of memory beyond its file",
                  "damaged: a segment cannot be mapped as it says",
                  "damaged: a segment is not where it could be used",
                  "damaged: it begins or ends nowhere", "damaged: its dynamic section does not end",
                  "damaged: its dynamic section lacks something or is at odds",
                  "damaged: its relocations", "damaged: its segments do not hold its sections",
                  "damaged: its symbols", "damaged: its table of hashes",
                  "damaged: its table of names", "damaged: its table of offsets",
                  "damaged: its table of sections", "damaged: segments overlap or are out of order",
                  "made for another machine", "no shared object", "truncated"));
}

}  // namespace
}  // namespace autocli::test
