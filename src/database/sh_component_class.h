// SHCAO0: the chemical class of a component, read off its code.
#pragma once

#include <string_view>

#include "base/array.h"
#include "base/real.h"

namespace talix {

inline constexpr int kExclusions = 10;

// Standard numbers whose code does not tell their class; 0 is an empty entry, and all entries are empty.
extern constinit Vec<I4, kExclusions> IXCLUD;

void SHCAO0(I4& CLASS, I4& SUBCLASS, const I4& NUMBER, std::string_view CODE, I4& NFAIL);

}  // namespace talix
