// The bounds check behind every array access; on in every build but release.
#pragma once

namespace talix {

// Prints the array extent and the index that missed it, then traps.
[[noreturn]] void index_out_of_bounds(const char* array, int index, int lower, int upper);

#if defined(TALIX_CHECK_BOUNDS)
inline constexpr bool kCheckBounds = true;
#else
inline constexpr bool kCheckBounds = false;
#endif

constexpr void check_index(const char* array, int index, int lower, int upper) {
  if constexpr (kCheckBounds) {
    if (index < lower || index > upper) index_out_of_bounds(array, index, lower, upper);
  }
}

}  // namespace talix
