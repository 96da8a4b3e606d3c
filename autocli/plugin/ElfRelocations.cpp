#include <elf.h>

#include <algorithm>
#include <array>
#include <bit>

#include "autocli/plugin/ElfTables.h"

namespace autocli {

namespace {

using Relocation = ElfW(Rela);

constexpr unsigned kSymbolShift = sizeof(ElfAddress) == 8 ? 32 : 8;
constexpr unsigned kSymbolKind = 0xf;
constexpr std::uint64_t kKind = (std::uint64_t{1} << kSymbolShift) - 1;

/// The relocation that puts in the address of a place in the file; 0, which is no relocation, on a
/// machine that is not known here.
std::uint64_t RelativeKind(unsigned machine) {
  return machine == EM_X86_64 ? R_X86_64_RELATIVE : machine == EM_AARCH64 ? R_AARCH64_RELATIVE : 0;
}

/// A table of functions that are called when the file is loaded or unloaded. It has their addresses
/// once it is relocated.
class Calls {
 public:
  Calls(const ElfDynamic& dynamic, std::int64_t address, std::int64_t size)
      : begin_(dynamic.Find(address).value_or(0)),
        values_(dynamic.Table<ElfAddress>(address, size)),
        areMet_(values_ ? values_->size() : 0) {}

  /// It is a table, and every word of it was relocated.
  bool IsSound() const { return values_ && std::ranges::count(areMet_, false) == 0; }
  bool Overlaps(ElfAddress begin, ElfAddress end) const {
    return begin < begin_ + areMet_.size() * sizeof(ElfAddress) && begin_ < end;
  }
  /// The word at that place is relocated, if it is one of the table's.
  void Meet(ElfAddress place) { areMet_[(place - begin_) / sizeof(ElfAddress)] = true; }

 private:
  ElfAddress begin_;
  std::optional<std::span<const ElfAddress>> values_;
  std::vector<bool> areMet_;
};

class Relocations {
 public:
  explicit Relocations(const ElfDynamic& dynamic)
      : dynamic_(dynamic),
        file_(dynamic.GetFile()),
        rights_(ChangesCode(dynamic) ? 0 : PF_W),
        relative_(RelativeKind(file_.GetMachine())),
        calls_{{{dynamic, DT_INIT_ARRAY, DT_INIT_ARRAYSZ},
                {dynamic, DT_FINI_ARRAY, DT_FINI_ARRAYSZ}}} {}

  std::uint64_t GetSymbols() const { return symbols_; }
  bool AreSound() {
    const auto own = dynamic_.Table<Relocation>(DT_RELA, DT_RELASZ);
    const auto calls = dynamic_.Table<Relocation>(DT_JMPREL, DT_PLTRELSZ);
    const auto packed = dynamic_.Table<ElfAddress>(DT_RELR, DT_RELRSZ);
    return own && calls && packed && BeginsRelative(*own) && Read(*own) && Read(*calls) &&
           ReadPacked(*packed) && std::ranges::all_of(calls_, &Calls::IsSound);
  }

 private:
  static bool ChangesCode(const ElfDynamic& dynamic) {
    return dynamic.Has(DT_TEXTREL) || (dynamic.Find(DT_FLAGS).value_or(0) & DF_TEXTREL) != 0;
  }

  bool IsRelative(const Relocation& relocation) const {
    return relative_ != 0 && (relocation.r_info & kKind) == relative_;
  }

  /// The dynamic linker does not look at the kind of as many as the file says that begin the table.
  bool BeginsRelative(std::span<const Relocation> relocations) const {
    const std::uint64_t count = dynamic_.Find(DT_RELACOUNT).value_or(0);
    if (relative_ == 0) return true;
    return count <= relocations.size() &&
           std::ranges::all_of(relocations.first(count),
                               [this](const auto& relocation) { return IsRelative(relocation); });
  }

  bool Read(std::span<const Relocation> relocations) {
    return std::ranges::all_of(relocations, [this](const Relocation& relocation) {
      const std::uint64_t symbol = relocation.r_info >> kSymbolShift;
      symbols_ = std::max(symbols_, symbol + 1);
      return Change(relocation.r_offset) &&
             Meet(relocation.r_offset, [&] { return IsToCode(relocation); });
    });
  }

  /// The word holds a function's address when it is relocated, as far as the file tells.
  bool IsToCode(const Relocation& relocation) const {
    if (relative_ == 0) return true;
    if (IsRelative(relocation)) {
      return file_.IsMemory(static_cast<ElfAddress>(relocation.r_addend), 1, PF_X);
    }
    const std::uint64_t index = relocation.r_info >> kSymbolShift;
    const auto symbol = file_.Table<ElfW(Sym)>(
        *dynamic_.Find(DT_SYMTAB) + index * sizeof(ElfW(Sym)), sizeof(ElfW(Sym)));
    return symbol && (symbol->front().st_info & kSymbolKind) == STT_FUNC;
  }

  /// An even word is the place of a relative relocation, the bits of an odd one say which of the
  /// words that follow have one, too.
  bool ReadPacked(std::span<const ElfAddress> words) {
    constexpr ElfAddress kBits = sizeof(ElfAddress) * 8 - 1;
    ElfAddress next = 0;
    for (const ElfAddress word : words) {
      const bool isPlace = word % 2 == 0;
      if (isPlace) next = word;
      if (next == 0 || !ReadBits(next, isPlace ? 1 : word / 2)) return false;
      next += (isPlace ? 1 : kBits) * sizeof(ElfAddress);
    }
    return true;
  }

  bool ReadBits(ElfAddress start, ElfAddress bits) {
    if (bits == 0) return true;
    const auto first = static_cast<unsigned>(std::countr_zero(bits));
    const auto end = static_cast<unsigned>(std::bit_width(bits));
    const auto place = [&](unsigned bit) { return start + bit * sizeof(ElfAddress); };
    if (!Change(place(first), end - first)) return false;
    const bool hasCalls = std::ranges::any_of(
        calls_, [&](const Calls& calls) { return calls.Overlaps(place(first), place(end)); });
    for (unsigned bit = first; hasCalls && bit < end; ++bit) {
      if ((bits >> bit & 1) == 0) continue;
      const bool isSound = Meet(place(bit), [&] {
        const auto target = file_.Table<ElfAddress>(place(bit), sizeof(ElfAddress));
        return target && file_.IsMemory(target->front(), 1, PF_X);
      });
      if (!isSound) return false;
    }
    return true;
  }

  /// The words at that place may be changed.
  bool Change(ElfAddress place, unsigned words = 1) const {
    return file_.IsMemory(place, words * sizeof(ElfAddress), rights_);
  }

  /// Where the word is a function to be called, it is asked whether the word will be code.
  template <typename IsCode>
  bool Meet(ElfAddress place, const IsCode& isCode) {
    for (Calls& calls : calls_) {
      if (!calls.Overlaps(place, place + 1)) continue;
      calls.Meet(place);
      if (!isCode()) return false;
    }
    return true;
  }

  const ElfDynamic& dynamic_;
  const ElfFile& file_;
  unsigned rights_;  ///< of memory that may be relocated
  std::uint64_t relative_;
  std::array<Calls, 2> calls_;
  std::uint64_t symbols_ = 0;
};

}  // namespace

std::optional<std::uint64_t> RelocatedSymbols(const ElfDynamic& dynamic) {
  Relocations relocations(dynamic);
  return relocations.AreSound() ? std::optional(relocations.GetSymbols()) : std::nullopt;
}

}  // namespace autocli
