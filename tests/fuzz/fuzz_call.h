// Calls of TALIX decoded from bytes, and what has to hold for each of them whatever the bytes are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace talix::fuzz {

// What the calls of a run came to.
struct Tally {
  std::int64_t calls = 0;
  std::int64_t results = 0;                   // blank text
  std::map<std::string, std::int64_t> texts;  // every other text, digits left out
  int most_engine_calls = 0;                  // of one call at level 1
  int most_engine_calls_alone = 0;            // of one call at level 0
};

// Loads the bank and collects the numbers of its components; false when there is none.
bool open_bank(const std::string& install);

// Runs the calls that the bytes stand for; the text says which rule the first offending call breaks, empty for none.
std::string run_bytes(const std::uint8_t* data, std::size_t size, Tally& tally);

// Bytes of seeded random calls, the INDEX-th of a run.
std::vector<std::uint8_t> random_bytes(std::uint32_t seed, std::int64_t index);

// The calls of some bytes, one line each, for a report.
std::string described(const std::uint8_t* data, std::size_t size);

}  // namespace talix::fuzz
