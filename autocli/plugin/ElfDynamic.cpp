#include "autocli/plugin/ElfDynamic.h"

#include <elf.h>

#include <algorithm>

namespace autocli {

namespace {

/// All that there are: the dynamic linker takes greater ones for others.
constexpr std::int64_t kHighestTag = 0x7fffffff;

/// Tags of which each asks for others. A lone one would make the dynamic linker read at address 0.
constexpr std::pair<std::int64_t, std::int64_t> kTogether[] = {
    {DT_RELA, DT_RELASZ},     {DT_RELA, DT_RELAENT},
    {DT_RELR, DT_RELRSZ},     {DT_RELR, DT_RELRENT},
    {DT_JMPREL, DT_PLTRELSZ}, {DT_JMPREL, DT_PLTREL},
    {DT_PLTREL, DT_JMPREL},   {DT_INIT_ARRAY, DT_INIT_ARRAYSZ},
    {DT_VERNEED, DT_VERSYM},  {DT_FINI_ARRAY, DT_FINI_ARRAYSZ},
    {DT_VERDEF, DT_VERSYM},
};

/// Numbers that can be but one.
constexpr std::pair<std::int64_t, std::uint64_t> kFixed[] = {
    {DT_SYMENT, sizeof(ElfW(Sym))},
    {DT_RELAENT, sizeof(ElfW(Rela))},
    {DT_RELRENT, sizeof(ElfW(Relr))},
    {DT_PLTREL, DT_RELA},
};

constexpr std::int64_t kTexts[] = {DT_NEEDED,   DT_SONAME,    DT_RPATH,  DT_RUNPATH, DT_AUDIT,
                                   DT_DEPAUDIT, DT_AUXILIARY, DT_FILTER, DT_CONFIG};

}  // namespace

ElfDynamic::ElfDynamic(const ElfFile& file) : file_(file) {
  const auto segments = file.GetSegments();
  const auto segment = std::ranges::find(segments, std::uint32_t{PT_DYNAMIC}, &ElfSegment::p_type);
  const auto entries = file.Table<ElfW(Dyn)>(segment->p_vaddr, segment->p_filesz);
  if (!entries) return;
  for (const auto& [tag, value] : *entries) {
    isEnded_ = tag == DT_NULL;
    if (isEnded_) break;
    entries_.emplace_back(tag, value.d_val);
  }
  const auto texts = Table<char>(DT_STRTAB, DT_STRSZ);
  if (texts) texts_ = {texts->data(), texts->size()};
}

std::optional<std::uint64_t> ElfDynamic::Find(std::int64_t tag) const {
  const auto entry = std::ranges::find(entries_.rbegin(), entries_.rend(), tag,
                                       [](const auto& candidate) { return candidate.first; });
  return entry == entries_.rend() ? std::nullopt : std::optional(entry->second);
}

bool ElfDynamic::Needs(std::uint64_t name) const {
  return HasText(name) && std::ranges::any_of(entries_, [&](const auto& entry) {
           return entry.first == DT_NEEDED && TextAt(entry.second) == TextAt(name);
         });
}

/// Each text ends within the table, which begins with an empty one.
bool ElfDynamic::AreTextsSound() const {
  if (texts_.empty() || texts_.front() != '\0' || texts_.back() != '\0') return false;
  return std::ranges::all_of(entries_, [this](const auto& entry) {
    return std::ranges::count(kTexts, entry.first) == 0 || HasText(entry.second);
  });
}

bool ElfDynamic::AreEntriesWhole() const {
  const auto isTagged = [](const auto& entry) {
    return entry.first > 0 && entry.first <= kHighestTag;
  };
  const auto isTogether = [this](const auto& tags) { return !Has(tags.first) || Has(tags.second); };
  const auto isFixed = [this](const auto& entry) {
    return Find(entry.first).value_or(entry.second) == entry.second;
  };
  return std::ranges::all_of(entries_, isTagged) && std::ranges::all_of(kTogether, isTogether) &&
         std::ranges::all_of(kFixed, isFixed) && Has(DT_SYMTAB) && Has(DT_SYMENT);
}

const char* ElfDynamic::GetProblem() const {
  if (!isEnded_) return "damaged: its dynamic section does not end";
  if (!AreEntriesWhole()) return "damaged: its dynamic section lacks something or is at odds";
  if (!AreTextsSound()) return "damaged: its table of names";
  for (const std::int64_t function : {DT_INIT, DT_FINI}) {
    const auto address = Find(function);
    if (address && !file_.IsMemory(*address, 1, PF_X)) return "damaged: it begins or ends nowhere";
  }
  const auto offsets = Find(DT_PLTGOT);
  if (offsets && !file_.IsMemory(*offsets, sizeof(ElfAddress))) {
    return "damaged: its table of offsets";
  }
  return nullptr;
}

}  // namespace autocli
