// The bytes of a file in the plug-in folder, looked at before it is loaded.
//
// - Any bytes are taken for a shared object or refused with a reason.
// - In a file that is taken, all that the dynamic linker would map lies within the file.
// - A version is read from no file that is refused.

#include <elf.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstring>

#include "autocli/plugin/Elf.h"
#include "fuzz/Support.h"

namespace {

bool IsInside(const std::string& bytes, std::uint64_t offset, std::uint64_t size) {
  return offset <= bytes.size() && size <= bytes.size() - offset;
}

void RequireInside(const std::string& bytes) {
  Elf64_Ehdr header;
  fuzz::Require(IsInside(bytes, 0, sizeof header), "a shared object has a header");
  std::memcpy(&header, bytes.data(), sizeof header);
  for (std::size_t i = 0; i < header.e_phnum; ++i) {
    Elf64_Phdr segment;
    fuzz::Require(IsInside(bytes, header.e_phoff, (i + 1) * sizeof segment),
                  "the segments' headers lie within the file");
    std::memcpy(&segment, bytes.data() + header.e_phoff + i * sizeof segment, sizeof segment);
    fuzz::Require(IsInside(bytes, segment.p_offset, segment.p_filesz),
                  "a segment lies within the file");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string path = fuzz::Folder() + "/plugin.so";
  const std::string bytes = fuzz::AsText(data, size);
  fuzz::WriteFile(path, bytes);
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  const std::string problem = autocli::ElfProblem(file);
  close(file);
  const std::string version = autocli::ElfVersion(path);
  if (problem.empty()) {
    RequireInside(bytes);
  } else {
    fuzz::Require(version.empty(), "a refused file has no version", version);
  }
  return 0;
}
