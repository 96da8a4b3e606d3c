#pragma once

#include <link.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace autocli {

using ElfAddress = ElfW(Addr);
using ElfSegment = ElfW(Phdr);

/// The file of a shared object and the memory that it asks for. Whatever is asked of it is held
/// against the file's size and its segments: nothing here believes what the file says.
class ElfFile {
 public:
  /// Takes an open file, which may be closed then. One that cannot be mapped is an empty one.
  explicit ElfFile(int file);
  ~ElfFile();
  ElfFile(const ElfFile&) = delete;
  ElfFile& operator=(const ElfFile&) = delete;

  /// Why this is no complete shared object for this machine, as its header, segments and sections
  /// tell; null when they are sound, as all else takes for granted.
  const char* GetProblem() const { return problem_; }
  std::span<const ElfSegment> GetSegments() const { return segments_; }
  unsigned GetMachine() const { return GetHeader().e_machine; }

  /// Records of the file; nothing when they are misplaced or do not lie in it.
  template <typename Record>
  std::optional<std::span<const Record>> Records(std::uint64_t offset, std::uint64_t count) const {
    if (offset % alignof(Record) != 0 || offset > bytes_.size()) return std::nullopt;
    if (count > (bytes_.size() - offset) / sizeof(Record)) return std::nullopt;
    return std::span(reinterpret_cast<const Record*>(bytes_.data() + offset), count);
  }

  /// Records that the file puts at that address, `size` bytes in all; nothing when they are
  /// misplaced, when there is no whole number of them, or when the file does not hold them all.
  template <typename Record>
  std::optional<std::span<const Record>> Table(ElfAddress address, std::uint64_t size) const {
    const auto offset = OffsetOf(address, size);
    if (!offset || size % sizeof(Record) != 0) return std::nullopt;
    return Records<Record>(*offset, size / sizeof(Record));
  }

  /// All these bytes lie in the memory of one segment, which has the rights (PF_R, PF_W, PF_X).
  bool IsMemory(ElfAddress address, std::uint64_t size, unsigned rights = 0) const;

 private:
  const ElfW(Ehdr) & GetHeader() const;
  /// The place in the file of what it puts at that address; nothing when it does not hold it all.
  std::optional<std::uint64_t> OffsetOf(ElfAddress address, std::uint64_t size) const;
  bool CanBeMapped(const ElfSegment& segment) const;
  bool AreSegmentsApart() const;
  bool IsBounded() const;
  bool IsInPlace(const ElfSegment& segment) const;
  const char* HeaderProblem();
  const char* SegmentsProblem() const;
  bool IsMapped(const ElfW(Shdr) & section) const;
  const char* SectionsProblem() const;

  std::span<const std::byte> bytes_;
  std::span<const ElfSegment> segments_;
  const char* problem_;
};

}  // namespace autocli
