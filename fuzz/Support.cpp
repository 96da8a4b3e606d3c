#include "fuzz/Support.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace fuzz {
namespace {

/// Bytes of the character that the text begins with; 0 when it begins with none.
std::size_t CharacterSize(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned first = byte(0);
  if (first < 0x80) return 1;
  const std::size_t size = first < 0xc2 ? 0 : first < 0xe0 ? 2 : first < 0xf0 ? 3 : 4;
  if (size == 0 || first > 0xf4 || text.size() < size) return 0;
  for (std::size_t i = 1; i < size; ++i) {
    if (byte(i) < 0x80 || byte(i) > 0xbf) return 0;
  }
  const unsigned second = byte(1);
  const bool isOverlong = (first == 0xe0 && second < 0xa0) || (first == 0xf0 && second < 0x90);
  const bool isSurrogate = first == 0xed && second > 0x9f;
  return isOverlong || isSurrogate || (first == 0xf4 && second > 0x8f) ? 0 : size;
}

}  // namespace

void Require(bool holds, const char* property, const std::string& details) {
  if (holds) return;
  std::fprintf(stderr, "property does not hold: %s\n%s\n", property, details.c_str());
  std::abort();
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t size = CharacterSize(text);
    if (size == 0) return false;
    text.remove_prefix(size);
  }
  return true;
}

void RequirePrintable(std::string_view text) {
  Require(IsUtf8(text), "text is UTF-8", std::string(text));
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const bool isC1 = byte == 0xc2 && static_cast<unsigned char>(text[i + 1]) < 0xa0;
    if (byte == '\n' || (byte >= 0x20 && byte != 0x7f && !isC1)) continue;
    Require(false, "text has no control characters", std::string(text));
  }
}

std::string MemorySink::Text() {
  Flush();
  return text_;
}

int MemorySink::Write(std::string_view text) {
  text_ += text;
  return 0;
}

const std::string& Folder() {
  static const std::string folder = [] {
    std::string name = access("/dev/shm", W_OK) == 0 ? "/dev/shm/fuzz-XXXXXX" : "/tmp/fuzz-XXXXXX";
    Require(mkdtemp(name.data()) != nullptr, "there is a folder");
    return name;
  }();
  static const struct Remover {
    ~Remover() {
      std::error_code ignored;
      std::filesystem::remove_all(folder, ignored);
    }
  } remover;
  return folder;
}

void WriteFile(const std::string& path, std::string_view content) {
  std::ofstream file(path, std::ios::binary);
  file << content;
  Require(file.flush().good(), "the file is written", path);
}

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace fuzz
