#include "autocli/plugin/Elf.h"

#include <elf.h>
#include <fcntl.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <vector>

namespace autocli {

namespace {

using FileHeader = ElfW(Ehdr);
using ProgramHeader = ElfW(Phdr);

template <typename Record>
bool ReadAt(int file, std::size_t offset, Record* records, std::size_t count) {
  const std::size_t size = count * sizeof(Record);
  return pread(file, records, size, static_cast<off_t>(offset)) == static_cast<ssize_t>(size);
}

bool IsInside(std::size_t offset, std::size_t size, std::size_t fileSize) {
  return offset <= fileSize && size <= fileSize - offset;
}

/// The program that asks is of the right machine, whichever that is.
FileHeader OwnHeader() {
  FileHeader header{};
  const int self = open("/proc/self/exe", O_RDONLY | O_CLOEXEC);
  if (self < 0) return header;
  if (!ReadAt(self, 0, &header, 1)) header = {};
  close(self);
  return header;
}

bool IsForThisMachine(const FileHeader& header) {
  const FileHeader own = OwnHeader();
  return header.e_ident[EI_CLASS] == own.e_ident[EI_CLASS] &&
         header.e_ident[EI_DATA] == own.e_ident[EI_DATA] && header.e_machine == own.e_machine;
}

std::string SegmentProblem(int file, const FileHeader& header, std::size_t fileSize) {
  std::vector<ProgramHeader> segments(header.e_phnum);
  if (!ReadAt(file, header.e_phoff, segments.data(), segments.size())) return "truncated";
  bool isLoadable = false;
  bool isDynamic = false;
  for (const ProgramHeader& segment : segments) {
    if (!IsInside(segment.p_offset, segment.p_filesz, fileSize)) return "truncated";
    isLoadable = isLoadable || segment.p_type == PT_LOAD;
    isDynamic = isDynamic || segment.p_type == PT_DYNAMIC;
  }
  return isLoadable && isDynamic ? "" : "no shared object";
}

}  // namespace

std::string ElfProblem(int file) {
  struct stat state {};
  FileHeader header{};
  if (fstat(file, &state) != 0) return "cannot be read";
  const auto fileSize = static_cast<std::size_t>(state.st_size);
  if (!ReadAt(file, 0, &header, 1)) return "truncated";
  if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0) return "no shared object";
  if (!IsForThisMachine(header)) return "made for another machine";
  if (header.e_type != ET_DYN || header.e_phentsize != sizeof(ProgramHeader)) {
    return "no shared object";
  }
  const std::size_t tables = std::size_t{header.e_shnum} * header.e_shentsize;
  if (header.e_shoff != 0 && !IsInside(header.e_shoff, tables, fileSize)) return "truncated";
  return SegmentProblem(file, header, fileSize);
}

}  // namespace autocli
