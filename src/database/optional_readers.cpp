#include "database/optional_readers.h"

#include "database/file_layer.h"
#include "engine/codes.h"
#include "engine/error_ring.h"
#include "engine/setup_record.h"

namespace talix {

void SFCPC0(const I4&, I4& NFAIL) { NFAIL = status::not_available; }

void SNLUF0(const I4&, const R8&, const R8&, I4& NFAIL) { NFAIL = status::not_available; }

// S0UBIN: user parameters of the pairs.
//
// Reports  "Data file found but not supported", severity 1, so that the owner of a file is not left guessing
void S0UBIN(const I4&, I4& NFAIL) {
  NFAIL = status::not_available;
  if (data_file_exists(data_file::user_binary))
    SERPU0(severity::warning, "S0UBIN", "Data file found but not supported");
}

}  // namespace talix
