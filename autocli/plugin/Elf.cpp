#include "autocli/plugin/Elf.h"

#include <elf.h>
#include <fcntl.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <nlohmann/json.hpp>
#include <string_view>
#include <vector>

#include "autocli/base/File.h"

/// The linker's name for the header of the file that this code is in: of the right machine,
/// whichever that is.
extern "C" __attribute__((visibility("hidden"))) const ElfW(Ehdr) __ehdr_start;

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

bool IsForThisMachine(const FileHeader& header) {
  return header.e_ident[EI_CLASS] == __ehdr_start.e_ident[EI_CLASS] &&
         header.e_ident[EI_DATA] == __ehdr_start.e_ident[EI_DATA] &&
         header.e_machine == __ehdr_start.e_machine;
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

constexpr std::string_view kMetadataOwner("FDO\0", 4);
constexpr std::uint32_t kMetadataType = 0xcafe1a7e;

/// The JSON text among the notes; empty without one.
std::string_view MetadataIn(std::string_view notes) {
  constexpr auto kPadded = [](std::size_t size) { return (size + 3) / 4 * 4; };
  ElfW(Nhdr) note;
  while (notes.size() >= sizeof(note)) {
    std::memcpy(&note, notes.data(), sizeof(note));
    const std::size_t nameEnd = sizeof(note) + kPadded(note.n_namesz);
    const std::size_t end = nameEnd + kPadded(note.n_descsz);
    if (end > notes.size()) return "";
    const bool isOurs =
        note.n_type == kMetadataType && notes.substr(sizeof(note), note.n_namesz) == kMetadataOwner;
    if (isOurs) return notes.substr(nameEnd, note.n_descsz);
    notes.remove_prefix(end);
  }
  return "";
}

std::string VersionIn(std::string_view metadata) {
  // The text is padded with zero bytes.
  metadata = metadata.substr(0, metadata.find('\0'));
  const auto document = nlohmann::json::parse(metadata, nullptr, false);
  if (!document.is_object()) return "";
  const auto version = document.find("version");
  return version != document.end() && version->is_string() ? version->get<std::string>() : "";
}

std::string VersionOf(int file) {
  constexpr std::size_t kLargestNotes = 1 << 16;
  FileHeader header{};
  if (!ElfProblem(file).empty() || !ReadAt(file, 0, &header, 1)) return "";
  std::vector<ProgramHeader> segments(header.e_phnum);
  if (!ReadAt(file, header.e_phoff, segments.data(), segments.size())) return "";
  for (const ProgramHeader& segment : segments) {
    if (segment.p_type != PT_NOTE || segment.p_filesz > kLargestNotes) continue;
    std::string notes(segment.p_filesz, '\0');
    if (!ReadAt(file, segment.p_offset, notes.data(), notes.size())) continue;
    const std::string_view metadata = MetadataIn(notes);
    if (!metadata.empty()) return VersionIn(metadata);
  }
  return "";
}

}  // namespace

std::string ElfVersion(const std::string& path) {
  const File file(open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  return file.Number() < 0 ? "" : VersionOf(file.Number());
}

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
