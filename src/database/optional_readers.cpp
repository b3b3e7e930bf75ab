#include "database/optional_readers.h"

#include <string_view>

#include "database/file_layer.h"
#include "engine/codes.h"
#include "engine/error_ring.h"
#include "engine/setup_record.h"

namespace talix {

namespace {

// None of the optional files is read so far. The answer is that of a missing file in either case; a file that
// is there leaves a word in the ring, so that its owner is not left guessing.
void not_available(std::string_view routine, int file, I4& NFAIL) {
  NFAIL = status::not_available;
  if (data_file_exists(file)) SERPU0(severity::warning, routine, "Data file found but not supported");
}

}  // namespace

void SFCPC0(const I4&, I4& NFAIL) { NFAIL = status::not_available; }

void SP2DB1(const I4&, const I4&, const Vec<I4, kMaxComponents>&, const L4&, I4& NFAIL) {
  not_available("SP2DB1", data_file::srk_simsci, NFAIL);
}

void SAPDB1(const I4&, const I4&, const Vec<I4, kMaxComponents>&, const L4&, I4& NFAIL) {
  not_available("SAPDB1", data_file::srk_aspen, NFAIL);
}

// SDBUF0: load the group table of a UNIFAC model.
//
// In       CODE    I4  model::unifac, lyngby_unifac, unifac_dm, liquid_unifac, linear_unifac or
//                      free_volume_unifac
// Status   model_error for any other code; not_available without a table
// Reports  "Requested UNIFAC model not available", "Loading UNIFAC data failed", severity 3
void SDBUF0(const I4& CODE, I4& NFAIL) {
  int file = 0;
  switch (CODE) {
    case model::unifac:
      file = data_file::unifac_original;
      break;
    case model::lyngby_unifac:
      file = data_file::unifac_lyngby;
      break;
    case model::unifac_dm:
    case model::liquid_unifac:
      file = data_file::unifac_dm;
      break;
    case model::linear_unifac:
    case model::free_volume_unifac:
      file = data_file::unifac_linear;
      break;
    default:
      NFAIL = status::model_error;
      SERPU0(severity::error, "SDBUF0", "Requested UNIFAC model not available");
      return;
  }
  not_available("SDBUF0", file, NFAIL);
  SERPU0(severity::error, "SDBUF0", "Loading UNIFAC data failed");
}

// Without a table there are no groups to match.
void SUFAO3(const I4&, const I4&, I4& NFAIL) { NFAIL = status::not_available; }

// Without a table there is nothing to fit to.
void SNLUF0(const I4&, const R8&, const R8&, I4& NFAIL) { NFAIL = status::not_available; }

void SCPDB0(const I4&, const I4&, I4& NFAIL) { not_available("SCPDB0", data_file::cpa_pure, NFAIL); }

void SCPDB2(const I4&, I4& NFAIL) { not_available("SCPDB2", data_file::cpa_binary, NFAIL); }

}  // namespace talix
