#include <elf.h>

#include <algorithm>
#include <bit>

#include "autocli/plugin/ElfTables.h"

namespace autocli {

namespace {

using Word = ElfW(Word);

/// Numbers that stand one after the other in a table without a size of its own.
class Numbers {
 public:
  Numbers(const ElfFile& file, ElfAddress address) : file_(file), address_(address) {}

  template <typename Number>
  std::optional<std::span<const Number>> Next(std::uint64_t count) {
    const std::uint64_t size = count * sizeof(Number);  // of a 32-bit count, so it fits
    auto numbers = file_.Table<Number>(address_, size);
    address_ += size;
    return numbers;
  }
  /// All those up to one that is odd, which ends them. Their number; 0 when they do not end.
  std::uint64_t CountToOdd() {
    for (std::uint64_t count = 1;; ++count) {
      const auto number = Next<Word>(1);
      if (!number) return 0;
      if (number->front() % 2 != 0) return count;
    }
  }

 private:
  const ElfFile& file_;
  ElfAddress address_;
};

std::optional<std::uint64_t> CountedByGnuHash(const ElfFile& file, ElfAddress address) {
  Numbers numbers(file, address);
  const auto sizes = numbers.Next<Word>(4);
  if (!sizes) return std::nullopt;
  const Word first = (*sizes)[1];
  const Word filterSize = (*sizes)[2];
  const auto filter = numbers.Next<ElfAddress>(filterSize);
  const auto buckets = numbers.Next<Word>(sizes->front());
  if (!std::has_single_bit(filterSize) || !filter || !buckets) return std::nullopt;
  Word last = 0;
  for (const Word bucket : *buckets) {
    if (bucket != 0 && bucket < first) return std::nullopt;
    last = std::max(last, bucket);
  }
  if (last == 0) return first;
  // The chain of the last bucket is the last one: where it ends all have ended.
  if (last != first && !numbers.Next<Word>(last - first)) return std::nullopt;
  const std::uint64_t chain = numbers.CountToOdd();
  return chain == 0 ? std::nullopt : std::optional(last + chain);
}

std::optional<std::uint64_t> CountedByHash(const ElfFile& file, ElfAddress address) {
  Numbers numbers(file, address);
  const auto sizes = numbers.Next<Word>(2);
  if (!sizes) return std::nullopt;
  const auto buckets = numbers.Next<Word>(sizes->front());
  const auto chains = numbers.Next<Word>(sizes->back());
  if (!buckets || !chains) return std::nullopt;
  // Each symbol is in one chain, or a chain never ends.
  std::uint64_t steps = 0;
  for (Word symbol : *buckets) {
    for (; symbol != 0; symbol = (*chains)[symbol]) {
      if (symbol >= chains->size() || ++steps > chains->size()) return std::nullopt;
    }
  }
  return chains->size();
}

/// The versions that symbols can have: those that the file needs, and those that it defines.
class Versions {
 public:
  explicit Versions(const ElfDynamic& dynamic) : dynamic_(dynamic), file_(dynamic.GetFile()) {
    const auto needed = dynamic.Find(DT_VERNEED);
    const auto defined = dynamic.Find(DT_VERDEF);
    isSound_ = (!needed || ReadNeeded(*needed)) && (!defined || ReadDefined(*defined));
  }

  bool AreSound() const { return isSound_; }
  /// A symbol may have that one.
  bool Has(unsigned number) const { return (number & kNumber) <= highest_; }

 private:
  static constexpr unsigned kNumber = 0x7fff;  ///< the bit beside says that it is hidden

  void Add(unsigned number) { highest_ = std::max(highest_, number & kNumber); }

  template <typename Record>
  const Record* At(ElfAddress address) const {
    const auto record = file_.Table<Record>(address, sizeof(Record));
    return record ? record->data() : nullptr;
  }

  /// Each record says how far away the next one is; after the last there is none.
  bool ReadNeeded(ElfAddress address) {
    for (const ElfW(Verneed) * record; (record = At<ElfW(Verneed)>(address)) != nullptr;) {
      if (!dynamic_.Needs(record->vn_file)) return false;
      if (!ReadNeededOfOne(address + record->vn_aux)) return false;
      if (record->vn_next == 0) return true;
      address += record->vn_next;
    }
    return false;
  }

  bool ReadNeededOfOne(ElfAddress address) {
    for (const ElfW(Vernaux) * record; (record = At<ElfW(Vernaux)>(address)) != nullptr;) {
      if (!dynamic_.HasText(record->vna_name)) return false;
      Add(record->vna_other);
      if (record->vna_next == 0) return true;
      address += record->vna_next;
    }
    return false;
  }

  bool ReadDefined(ElfAddress address) {
    for (const ElfW(Verdef) * record; (record = At<ElfW(Verdef)>(address)) != nullptr;) {
      const auto* name = At<ElfW(Verdaux)>(address + record->vd_aux);
      if (name == nullptr || !dynamic_.HasText(name->vda_name)) return false;
      Add(record->vd_ndx);
      if (record->vd_next == 0) return true;
      address += record->vd_next;
    }
    return false;
  }

  const ElfDynamic& dynamic_;
  const ElfFile& file_;
  unsigned highest_ = 0;
  bool isSound_ = false;
};

}  // namespace

std::optional<std::uint64_t> HashedSymbols(const ElfDynamic& dynamic) {
  const ElfFile& file = dynamic.GetFile();
  const auto table = dynamic.Find(DT_HASH);
  const auto gnuTable = dynamic.Find(DT_GNU_HASH);
  const auto counted = table ? CountedByHash(file, *table) : 0;
  const auto gnuCounted = gnuTable ? CountedByGnuHash(file, *gnuTable) : 0;
  return counted && gnuCounted ? std::optional(std::max(*counted, *gnuCounted)) : std::nullopt;
}

bool AreSymbolsSound(const ElfDynamic& dynamic, std::uint64_t count) {
  const ElfFile& file = dynamic.GetFile();
  const auto symbols = file.Table<ElfW(Sym)>(*dynamic.Find(DT_SYMTAB), count * sizeof(ElfW(Sym)));
  const bool areNamed = symbols && std::ranges::all_of(*symbols, [&](const ElfW(Sym) & symbol) {
                          return dynamic.HasText(symbol.st_name);
                        });
  const Versions versions(dynamic);
  if (!areNamed || !versions.AreSound()) return false;
  const auto address = dynamic.Find(DT_VERSYM);
  if (!address) return true;
  const auto numbers = file.Table<ElfW(Half)>(*address, count * sizeof(ElfW(Half)));
  return numbers &&
         std::ranges::all_of(*numbers, [&](unsigned number) { return versions.Has(number); });
}

}  // namespace autocli
