// Numbers in the columns of a formatted line.
#pragma once

#include <string_view>

#include "base/real.h"

namespace talix {

// An integer: blanks count for nothing, an empty field is 0. False where the field holds anything else.
bool integer_field(std::string_view field, I4& value);

// A real: blanks count for nothing, an empty field is 0. Without a decimal point the last DECIMALS digits are
// decimals; a written point goes before. An exponent is written with E or D or by its sign alone.
bool real_field(std::string_view field, int decimals, R8& value);
// The same, rounded once to single precision.
bool real_field(std::string_view field, int decimals, R4& value);

}  // namespace talix
