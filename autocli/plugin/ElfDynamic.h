#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "autocli/plugin/ElfFile.h"

namespace autocli {

/// The dynamic section of a shared object: numbers and addresses by their tags, and the texts that
/// they name.
class ElfDynamic {
 public:
  /// The file must be without a problem of its own, and outlive this.
  explicit ElfDynamic(const ElfFile& file);

  /// Why this is no dynamic section that can be used; null when it is one. What others have to say
  /// of the tables that it names is not asked.
  const char* GetProblem() const;
  const ElfFile& GetFile() const { return file_; }

  /// What stands under the tag, the last time that it occurs, as for the dynamic linker.
  std::optional<std::uint64_t> Find(std::int64_t tag) const;
  bool Has(std::int64_t tag) const { return Find(tag).has_value(); }
  /// A table whose address and size in bytes have these tags. It is empty when neither is there,
  /// for no linker writes an empty one; nothing when they make no table of the file.
  template <typename Record>
  std::optional<std::span<const Record>> Table(std::int64_t address, std::int64_t size) const {
    if (!Has(address) && !Has(size)) return std::span<const Record>();
    if (Find(address).value_or(0) == 0 || Find(size).value_or(0) == 0) return std::nullopt;
    return file_.Table<Record>(*Find(address), *Find(size));
  }

  bool HasText(std::uint64_t offset) const { return offset < texts_.size(); }
  /// The file needs the library whose name is at that place among the texts.
  bool Needs(std::uint64_t name) const;

 private:
  std::string_view TextAt(std::uint64_t offset) const { return texts_.data() + offset; }
  bool AreTextsSound() const;
  bool AreEntriesWhole() const;

  const ElfFile& file_;
  std::vector<std::pair<std::int64_t, std::uint64_t>> entries_;
  bool isEnded_ = false;
  std::string_view texts_;
};

}  // namespace autocli
