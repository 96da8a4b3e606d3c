#include "autocli/plugin/Elf.h"

#include <elf.h>
#include <fcntl.h>

#include <algorithm>
#include <cstring>
#include <nlohmann/json.hpp>
#include <string_view>

#include "autocli/base/File.h"
#include "autocli/plugin/ElfDynamic.h"
#include "autocli/plugin/ElfFile.h"
#include "autocli/plugin/ElfTables.h"

namespace autocli {

namespace {

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

std::string VersionOf(const ElfFile& file) {
  for (const ElfSegment& segment : file.GetSegments()) {
    if (segment.p_type != PT_NOTE) continue;
    const auto notes = file.Records<char>(segment.p_offset, segment.p_filesz);
    const std::string_view metadata = MetadataIn({notes->data(), notes->size()});
    if (!metadata.empty()) return VersionIn(metadata);
  }
  return "";
}

/// Null when there is none.
const char* ProblemOf(const ElfFile& file) {
  if (const char* problem = file.GetProblem()) return problem;
  const ElfDynamic dynamic(file);
  if (const char* problem = dynamic.GetProblem()) return problem;
  const auto hashed = HashedSymbols(dynamic);
  if (!hashed) return "damaged: its table of hashes";
  const auto relocated = RelocatedSymbols(dynamic);
  if (!relocated) return "damaged: its relocations";
  if (!AreSymbolsSound(dynamic, std::max(*hashed, *relocated))) return "damaged: its symbols";
  return nullptr;
}

}  // namespace

std::string ElfVersion(const std::string& path) {
  const File opened(open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (opened.Number() < 0) return "";
  const ElfFile file(opened.Number());
  return ProblemOf(file) == nullptr ? VersionOf(file) : "";
}

std::string ElfProblem(int file) {
  const char* problem = ProblemOf(ElfFile(file));
  return problem == nullptr ? "" : problem;
}

}  // namespace autocli
