#include "database/optional_readers.h"

#include "engine/codes.h"

namespace talix {

void SFCPC0(const I4&, I4& NFAIL) { NFAIL = status::not_available; }

void SNLUF0(const I4&, const R8&, const R8&, I4& NFAIL) { NFAIL = status::not_available; }

}  // namespace talix
