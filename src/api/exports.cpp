// The exported calls: C names around the routines of the entry layer.
#define TALIX_EXPORTS
#include "talix/talix.h"

#include <string_view>

#include "api/catalogue.h"
#include "api/small_calls.h"
#include "api/talix_call.h"
#include "fastprops/error_matrix.h"

static_assert(TALIX_MAX_COMPONENTS == talix::kMaxComponents);
static_assert(TALIX_SCAL_ROWS == talix::kScalRows && TALIX_SCAL_COLUMNS == talix::kScalColumns);
static_assert(TALIX_PROPERTY_ROWS == talix::kPropertyRows &&
              TALIX_PROPERTY_COLUMNS == talix::kPropertyColumns);
static_assert(TALIX_CATALOGUE_RECORDS == talix::kLastComponentNumber);
static_assert(sizeof(talix::ScalTable) == sizeof(float) * 52 * 8);
static_assert(sizeof(talix::PropertyTable) == sizeof(float) * 15 * 3);

namespace {

// Only the host's own allocator can throw below a call, while a file name is built.
template <class Call>
bool contained(Call call) noexcept {
  try {
    call();
    return true;
  } catch (...) {
    return false;
  }
}

void write_text(char* STR, int32_t STR_LENGTH, std::string_view text) {
  if (STR == nullptr) return;
  for (int32_t i = 0; i < STR_LENGTH; ++i) {
    const std::size_t k = static_cast<std::size_t>(i);
    STR[i] = k < text.size() ? text[k] : ' ';
  }
}

talix::ScalTable* scal_table(float* SCAL) { return reinterpret_cast<talix::ScalTable*>(SCAL); }
talix::PropertyTable* property_table(float* TPROPS) {
  return reinterpret_cast<talix::PropertyTable*>(TPROPS);
}

}  // namespace

extern "C" {

void TALIX(int32_t* NC, float* T, float* P, float* FRV, char* UNIT, int32_t UNIT_LENGTH, int32_t* IFLASH,
           float* SCAL, float* TPROPS, char* STR, int32_t STR_LENGTH) {
  const bool ended = contained([&] {
    talix::TALIX(NC, T, P, FRV, UNIT, UNIT_LENGTH, IFLASH, scal_table(SCAL), property_table(TPROPS), STR,
                 STR_LENGTH);
  });
  if (!ended) write_text(STR, STR_LENGTH, " Not enough memory, no calculation (TALIX)");
}

void SETTALIXINSTALL(const char* PATH, int32_t PATH_LENGTH, const int32_t* LEN) {
  talix::SETTALIXINSTALL(PATH, PATH_LENGTH, LEN);
}

void SETTALIXUSAGE(const int32_t* USAGE1, const int32_t* MSGHOOK, const int32_t* MSGUNIT) {
  talix::SETTALIXUSAGE(USAGE1, MSGHOOK, MSGUNIT);
}

void SETTALIXVERIFY(const int32_t* LEVEL) { talix::SETTALIXVERIFY(LEVEL); }

void TALIXERRORREPORT() {
  contained([] { talix::ERRREPORT(); });
}

void CLEARSCAL(float* SCAL) { talix::CLEARSCAL(scal_table(SCAL)); }

void CLEARTPROPS(float* TPROPS) { talix::CLEARTPROPS(property_table(TPROPS)); }

void NORMALISECOMPONENTS(const int32_t* N, float* COMPONENTFRACTIONS) {
  talix::NORMALISECOMPONENTS(N, COMPONENTFRACTIONS);
}

void WEIGHTTOMOLE(const int32_t* ZANDORNOS, const int32_t* N, float* WEIGHTFRACTIONS, float* MOLEFRACTIONS) {
  contained([&] { talix::WEIGHTTOMOLE(ZANDORNOS, N, WEIGHTFRACTIONS, MOLEFRACTIONS); });
}

void GETTALIXPROPS(int32_t* COUNT, float* OUTDCRITT, float* OUTDCRITP, float* OUTDMOLWT, float* OUTDAPBPT,
                   float* OUTDFRZPT, float* OUTDHEATC, char* OUTPNAME, int32_t NAME_LENGTH) {
  contained([&] {
    talix::GETTALIXPROPS(COUNT, OUTDCRITT, OUTDCRITP, OUTDMOLWT, OUTDAPBPT, OUTDFRZPT, OUTDHEATC, OUTPNAME,
                         NAME_LENGTH);
  });
}

void GETTALIXPROPSID(const int32_t* ID, float* CRITT, float* CRITP, float* MOLWT, float* APBPT, float* FRZPT,
                     float* HEATC, char* PNAME, int32_t NAME_LENGTH, int32_t* STATUS) {
  contained([&] {
    talix::GETTALIXPROPSID(ID, CRITT, CRITP, MOLWT, APBPT, FRZPT, HEATC, PNAME, NAME_LENGTH, STATUS);
  });
}

void GETTALIXAPPROPS(int32_t* COUNT, float* OUTDCPV, float* OUTDHVAP, float* OUTDDLIQ, float* OUTDWAG) {
  contained([&] { talix::GETTALIXAPPROPS(COUNT, OUTDCPV, OUTDHVAP, OUTDDLIQ, OUTDWAG); });
}

void GETTALIXELEMENTS(int32_t* COUNT, float* NOCARBON, float* NOHYDROGEN, float* NONITROGEN, float* NOOXYGEN,
                      float* NOSULPHUR, float* NOFLUORINE, float* NOCHLORINE, float* NOBROMINE,
                      float* NOIODINE) {
  contained([&] {
    talix::GETTALIXELEMENTS(COUNT, NOCARBON, NOHYDROGEN, NONITROGEN, NOOXYGEN, NOSULPHUR, NOFLUORINE,
                            NOCHLORINE, NOBROMINE, NOIODINE);
  });
}

}  // extern "C"
