// A host of the entry call: tables, strings and the arguments of one flash.
#pragma once

#include <string>
#include <vector>

#include "api/talix_call.h"
#include "base/real.h"

namespace talix::test {

// Every record of the flash layer and the engine as at load, messages dropped, the compiled bank as install
// directory.
void fresh_library();
void fresh_library(const std::string& install);
// The same with the flashes alone, without the check behind them: for what the flashes themselves answer.
void fresh_flashes_alone();
// Level of the check behind the flashes, 0 or 1, as a host sets it. A fresh library is at 1.
void verify(int level);
// Sets the install directory as a host does.
void install_from(const std::string& directory);

struct FlashCase {
  std::vector<int> numbers;
  std::vector<R4> feed;
  R4 T = 25.0F;  // [C]
  R4 P = 1.0F;   // [bar]
  R4 FRV = 1.0F;
  char UNIT = 'M';
  I4 IFLASH = 5;
  ScalTable SCAL{};
  PropertyTable TPROPS{};

  // The message without trailing blanks.
  std::string run();
  [[nodiscard]] int nc() const { return static_cast<int>(numbers.size()); }
  [[nodiscard]] R4 total(int column) const { return SCAL(nc() + 1, column); }
};

// A natural gas with ten components, two phases at -20 C and 40 bar.
FlashCase natural_gas();

}  // namespace talix::test
