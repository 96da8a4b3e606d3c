#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "autocli/base/Sink.h"

/// What the fuzz targets share. Each has LLVMFuzzerTestOneInput() and asserts its properties by
/// Require().
namespace fuzz {

/// Ends the process, which the fuzzer takes for a crash, unless `holds`; says what does not.
void Require(bool holds, const char* property, const std::string& details = {});

/// Well-formed UTF-8, told by the standard's table and not by a library that is under test.
bool IsUtf8(std::string_view text);

/// Requires that a terminal may be shown the text: UTF-8, and of the control characters, C0, DEL
/// and C1, line feeds alone.
void RequirePrintable(std::string_view text);

/// Keeps what is written, once it was flushed.
class MemorySink final : public autocli::Sink {
 public:
  std::string Text();

 private:
  int Write(std::string_view text) override;

  std::string text_;
};

/// A folder in memory, where the machine has one, that goes with the process.
const std::string& Folder();

void WriteFile(const std::string& path, std::string_view content);
std::string ReadFile(const std::string& path);

inline std::string AsText(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

}  // namespace fuzz
