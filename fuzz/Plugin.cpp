// The bytes of a file in the plug-in folder, looked at before it is loaded.
//
// - Any bytes are taken for a shared object or refused with a reason.
// - In a file that is taken, all that the dynamic linker would map lies within the file, one
// segment
//   after the other, and the dynamic section ends.
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

template <typename Record>
Record RecordAt(const std::string& bytes, std::uint64_t offset) {
  Record record;
  fuzz::Require(IsInside(bytes, offset, sizeof record), "what is read lies within the file");
  std::memcpy(&record, bytes.data() + offset, sizeof record);
  return record;
}

void RequireInside(const std::string& bytes) {
  const auto header = RecordAt<Elf64_Ehdr>(bytes, 0);
  std::uint64_t end = 0;
  bool isEnded = false;
  for (std::size_t i = 0; i < header.e_phnum; ++i) {
    const auto segment = RecordAt<Elf64_Phdr>(bytes, header.e_phoff + i * sizeof(Elf64_Phdr));
    fuzz::Require(IsInside(bytes, segment.p_offset, segment.p_filesz),
                  "a segment lies within the file");
    if (segment.p_type == PT_LOAD) {
      fuzz::Require(segment.p_vaddr >= end, "segments do not overlap");
      end = segment.p_vaddr + segment.p_memsz;
      fuzz::Require(end >= segment.p_vaddr && segment.p_filesz <= segment.p_memsz,
                    "a segment has room in memory");
    }
    for (std::size_t at = 0; segment.p_type == PT_DYNAMIC && at < segment.p_filesz; at += 16) {
      isEnded = isEnded || RecordAt<Elf64_Dyn>(bytes, segment.p_offset + at).d_tag == DT_NULL;
    }
  }
  fuzz::Require(isEnded, "the dynamic section ends");
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
