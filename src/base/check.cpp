#include "base/check.h"

#include <cstdio>
#include <cstdlib>

namespace talix {

void index_out_of_bounds(const char* array, int index, int lower, int upper) {
  std::fprintf(stderr, "talix: index %d of a %s is outside %d to %d\n", index, array, lower, upper);
  std::fflush(stderr);
  std::abort();
}

}  // namespace talix
