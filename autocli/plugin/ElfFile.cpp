#include "autocli/plugin/ElfFile.h"

#include <elf.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cstring>

/// The linker's name for the header of the file that this code is in: of the right machine,
/// whichever that is.
extern "C" __attribute__((visibility("hidden"))) const ElfW(Ehdr) __ehdr_start;

namespace autocli {

namespace {

using FileHeader = ElfW(Ehdr);
using Section = ElfW(Shdr);

/// The dynamic linker keeps records of all segments on the stack. Linkers make a dozen.
constexpr std::size_t kMostSegments = 100;
/// More memory than its file has bytes is variables without a value, and gaps. A file that asks for
/// more of it than any command keeps is damaged, and could take what the machine has.
constexpr std::uint64_t kMostMemory = std::uint64_t{256} << 20;

constexpr const char* kNoSharedObject = "no shared object";
constexpr const char* kTruncated = "truncated";

std::uint64_t PageSize() {
  static const auto size = static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
  return size;
}

std::uint64_t PageOf(ElfAddress address) { return address / PageSize() * PageSize(); }

bool IsInside(std::uint64_t offset, std::uint64_t size, std::uint64_t whole) {
  return offset <= whole && size <= whole - offset;
}

bool IsLoaded(const ElfSegment& segment) { return segment.p_type == PT_LOAD; }

/// Where memory ends that is mapped in pages.
ElfAddress EndOf(const ElfSegment& segment) {
  return PageOf(segment.p_vaddr + segment.p_memsz + PageSize() - 1);
}

bool IsForThisMachine(const FileHeader& header) {
  return header.e_ident[EI_CLASS] == __ehdr_start.e_ident[EI_CLASS] &&
         header.e_ident[EI_DATA] == __ehdr_start.e_ident[EI_DATA] &&
         header.e_machine == __ehdr_start.e_machine;
}

}  // namespace

ElfFile::ElfFile(int file) {
  struct stat state {};
  const auto size = fstat(file, &state) == 0 ? static_cast<std::size_t>(state.st_size) : 0;
  const void* mapped = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
  if (mapped != MAP_FAILED) bytes_ = {static_cast<const std::byte*>(mapped), size};
  problem_ = HeaderProblem();
  if (problem_ == nullptr) problem_ = SegmentsProblem();
  if (problem_ == nullptr) problem_ = SectionsProblem();
}

ElfFile::~ElfFile() {
  if (!bytes_.empty()) munmap(const_cast<std::byte*>(bytes_.data()), bytes_.size());
}

const FileHeader& ElfFile::GetHeader() const { return Records<FileHeader>(0, 1)->front(); }

std::optional<std::uint64_t> ElfFile::OffsetOf(ElfAddress address, std::uint64_t size) const {
  for (const ElfSegment& segment : segments_) {
    const ElfAddress distance = address - segment.p_vaddr;
    if (!IsLoaded(segment) || !IsInside(distance, size, segment.p_filesz)) continue;
    return segment.p_offset + distance;
  }
  return std::nullopt;
}

bool ElfFile::IsMemory(ElfAddress address, std::uint64_t size, unsigned rights) const {
  return std::ranges::any_of(segments_, [&](const ElfSegment& segment) {
    return IsLoaded(segment) && (segment.p_flags & rights) == rights &&
           IsInside(address - segment.p_vaddr, size, segment.p_memsz);
  });
}

const char* ElfFile::HeaderProblem() {
  const auto header = Records<FileHeader>(0, 1);
  if (!header) return kTruncated;
  const auto& [ident, type, machine, version, entry, phoff, shoff, flags, ehsize, phentsize, phnum,
               shentsize, shnum, shstrndx] = header->front();
  if (std::memcmp(ident, ELFMAG, SELFMAG) != 0) return kNoSharedObject;
  if (!IsForThisMachine(header->front())) return "made for another machine";
  if (type != ET_DYN || phentsize != sizeof(ElfSegment) || phnum > kMostSegments) {
    return kNoSharedObject;
  }
  if (!IsInside(phoff, phnum * sizeof(ElfSegment), bytes_.size())) return kTruncated;
  const auto segments = Records<ElfSegment>(phoff, phnum);
  if (!segments) return kNoSharedObject;
  segments_ = *segments;
  return nullptr;
}

bool ElfFile::CanBeMapped(const ElfSegment& segment) const {
  return std::has_single_bit(segment.p_align) && segment.p_align <= kMostMemory &&
         (segment.p_vaddr - segment.p_offset) % PageSize() == 0 &&
         (segment.p_flags & (PF_R | PF_W | PF_X)) != 0 && segment.p_filesz <= segment.p_memsz &&
         IsInside(segment.p_vaddr, segment.p_memsz, UINT64_MAX - PageSize());
}

/// In the order of their addresses, each on pages of its own.
bool ElfFile::AreSegmentsApart() const {
  ElfAddress end = 0;
  for (const ElfSegment& segment : segments_) {
    if (!IsLoaded(segment)) continue;
    if (PageOf(segment.p_vaddr) < end) return false;
    end = EndOf(segment);
  }
  return true;
}

bool ElfFile::IsBounded() const {
  const auto first = std::ranges::find_if(segments_, IsLoaded);
  const auto last = std::ranges::find_if(segments_.rbegin(), segments_.rend(), IsLoaded);
  return EndOf(*last) - PageOf(first->p_vaddr) <= kMostMemory + bytes_.size();
}

/// What the dynamic linker and those who unwind the stack take from segments that lie in others.
bool ElfFile::IsInPlace(const ElfSegment& segment) const {
  const auto& [type, flags, offset, vaddr, paddr, filesz, memsz, align] = segment;
  switch (type) {
    case PT_DYNAMIC:
      return memsz % sizeof(ElfW(Dyn)) == 0 && OffsetOf(vaddr, filesz) == offset &&
             IsMemory(vaddr, memsz, flags & PF_W);
    case PT_PHDR:
      return OffsetOf(vaddr, segments_.size_bytes()) == GetHeader().e_phoff;
    case PT_TLS:
      return filesz <= memsz && memsz <= kMostMemory && std::has_single_bit(align) &&
             align <= kMostMemory && (filesz == 0 || OffsetOf(vaddr, filesz) == offset);
    case PT_GNU_RELRO:
      return std::ranges::any_of(segments_, [&](const ElfSegment& whole) {
        // Goes on to the end of the page only where no variables can follow.
        const bool isFull = whole.p_filesz == whole.p_memsz;
        const ElfAddress end = isFull ? EndOf(whole) : whole.p_vaddr + whole.p_memsz;
        return IsLoaded(whole) && segment.p_vaddr == whole.p_vaddr &&
               segment.p_memsz <= end - segment.p_vaddr;
      });
    case PT_NOTE:
    case PT_GNU_PROPERTY:
    case PT_GNU_EH_FRAME:
      return filesz <= memsz && OffsetOf(vaddr, memsz) == offset;
    default:
      return true;
  }
}

const char* ElfFile::SegmentsProblem() const {
  for (const ElfSegment& segment : segments_) {
    if (!IsInside(segment.p_offset, segment.p_filesz, bytes_.size())) return kTruncated;
  }
  const auto loaded = std::ranges::count(segments_, std::uint32_t{PT_LOAD}, &ElfSegment::p_type);
  const auto dynamic =
      std::ranges::count(segments_, std::uint32_t{PT_DYNAMIC}, &ElfSegment::p_type);
  if (loaded == 0 || dynamic != 1) return kNoSharedObject;
  for (const ElfSegment& segment : segments_) {
    if (IsLoaded(segment) && !CanBeMapped(segment)) {
      return "damaged: a segment cannot be mapped as it says";
    }
  }
  if (!AreSegmentsApart()) return "damaged: segments overlap or are out of order";
  if (!IsBounded()) return "asks for more than 256 MiB of memory beyond its file";
  const bool areInPlace = std::ranges::all_of(
      segments_, [this](const ElfSegment& segment) { return IsInPlace(segment); });
  return areInPlace ? nullptr : "damaged: a segment is not where it could be used";
}

/// A section that is to be in memory is there, with the bytes that it has in the file, and what is
/// for each thread is so.
bool ElfFile::IsMapped(const Section& section) const {
  if ((section.sh_flags & SHF_ALLOC) == 0 || section.sh_size == 0) return true;
  const bool isThreads = (section.sh_flags & SHF_TLS) != 0;
  if (isThreads && !std::ranges::any_of(segments_, [&](const ElfSegment& segment) {
        return segment.p_type == PT_TLS &&
               IsInside(section.sh_addr - segment.p_vaddr, section.sh_size, segment.p_memsz);
      })) {
    return false;
  }
  if (section.sh_type != SHT_NOBITS) {
    return OffsetOf(section.sh_addr, section.sh_size) == section.sh_offset;
  }
  return isThreads || IsMemory(section.sh_addr, section.sh_size);
}

/// The dynamic linker does not read sections, and a file need not have any. Those that are there
/// show whether the segments are what they were.
const char* ElfFile::SectionsProblem() const {
  const FileHeader& header = GetHeader();
  const std::uint64_t size = std::uint64_t{header.e_shnum} * header.e_shentsize;
  if (header.e_shoff != 0 && !IsInside(header.e_shoff, size, bytes_.size())) return kTruncated;
  if (header.e_shoff == 0 || header.e_shnum == 0) return nullptr;
  const auto sections = Records<Section>(header.e_shoff, header.e_shnum);
  if (!sections || header.e_shentsize != sizeof(Section)) return "damaged: its table of sections";
  for (const Section& section : *sections) {
    const bool hasBytes = section.sh_type != SHT_NOBITS && section.sh_type != SHT_NULL;
    if (hasBytes && !IsInside(section.sh_offset, section.sh_size, bytes_.size())) return kTruncated;
    if (!IsMapped(section)) return "damaged: its segments do not hold its sections";
  }
  return nullptr;
}

}  // namespace autocli
