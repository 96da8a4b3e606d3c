#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

/// Takes an input apart, byte by byte; after its end there are zeros.
class Pieces {
 public:
  Pieces(const std::uint8_t* data, std::size_t size);

  bool IsEmpty() const { return rest_.empty(); }
  std::size_t Byte();
  /// Of as many bytes, the highest first.
  std::uint64_t Number(int bytes);
  /// A number below the limit, which is not 0; of three bytes when one is not enough.
  std::size_t Below(std::size_t limit);
  /// A byte that says how many there are, and those.
  std::string Text();

 private:
  std::string_view rest_;
};

/// A lab's file, and its journal when it has one.
struct LabFiles {
  std::string lab;
  std::string journal;
};

/// The labs to begin with: `current`, one of each older version, and the current one in the middle
/// of a transaction. `folder` is for files that go again.
std::vector<LabFiles> LabsToMutate(const std::string& current, const std::string& folder);

/// What the input makes of one of them: bytes patched, the file cut, rows and the schema changed
/// without any of the checks that SQLite would make. `victim` is a file that a journal may name.
LabFiles Mutated(const std::vector<LabFiles>& labs, Pieces& input, const std::string& victim);

}  // namespace fuzz
