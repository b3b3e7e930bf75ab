// The calls of the engine's public header: C names around its routines. They check what a routine takes for granted:
// pointers, extents of texts, component numbers, and that data are loaded.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string_view>

#include "base/stop_handler.h"
#include "database/load_order.h"
#include "database/overrides.h"
#include "engine/codes.h"
#include "engine/error_ring.h"
#include "engine/model_record.h"
#include "engine/model_table.h"
#include "engine/model_table_tables.h"
#include "engine/setup.h"
#include "engine/setup_record.h"
#include "engine/shmix_driver.h"
#include "fastprops/flash_record.h"
#include "talix/morve.h"
#include "transport/stc_conductivity.h"
#include "transport/svi_liquid.h"
#include "transport/svi_vapour.h"

namespace {

using talix::I4;
using talix::R8;

// The data of the list in the engine are complete.
constinit bool data_loaded = false;

template <class... Pointers>
bool any_null(Pointers... pointers) {
  return (... || (pointers == nullptr));
}

void set_status(int32_t* NFAIL, I4 value) {
  if (NFAIL != nullptr) *NFAIL = value;
}

bool is_component(I4 i) { return i >= 1 && i <= talix::setup.NUMH; }

// A number of components as SHMIX0 takes it: the first ones of the list, or minus the number of one of them.
bool is_range(I4 NCOMP) {
  return NCOMP > 0 ? is_component(NCOMP) : NCOMP >= -talix::kMaxComponents && is_component(-NCOMP);
}

bool all_finite(const double* values, I4 count) {
  return std::all_of(values, values + std::max(count, 0), [](double value) { return std::isfinite(value); });
}

void write_text(char* text, int32_t length, std::string_view value) {
  for (int32_t i = 0; i < length; ++i) {
    const auto k = static_cast<std::size_t>(i);
    text[i] = k < value.size() ? value[k] : ' ';
  }
}

I4 refuse(I4 status, std::string_view routine, std::string_view text) {
  talix::SERPU0(talix::severity::error, routine, text);
  return status;
}

// The tables of the header as those of the engine: the same layout, asserted in morve_codes.cpp.
const talix::CompVec& vector_of(const double* values) {
  return *reinterpret_cast<const talix::CompVec*>(values);
}
talix::CompVec& vector_of(double* values) { return *reinterpret_cast<talix::CompVec*>(values); }
const talix::Flags3& flags_of(const int32_t* values) {
  return *reinterpret_cast<const talix::Flags3*>(values);
}
const talix::Vec<I4, talix::kMaxComponents>& indices_of(const int32_t* values) {
  return *reinterpret_cast<const talix::Vec<I4, talix::kMaxComponents>*>(values);
}

// A data file that goes away between two looks must not end the host: the status tells of it.
void note_stop(std::string_view text) { talix::SERPU0(talix::severity::error, "SHDBS0", text); }

// One call of an override routine. CALL is handed the key names, the values and the action.
template <class Call>
void override_call(int32_t* NKEYS, char* KEYS, int32_t KEYS_LENGTH, const int32_t* WIDTH, double* VALUES,
                   const int32_t* ACTION, int32_t* NFAIL, Call call) {
  *NKEYS = 0;
  *NFAIL = talix::status::input;
  if (*WIDTH < 1 || KEYS_LENGTH / talix::kMaxKeys < *WIDTH) return;
  talix::KeyNames names{};
  auto& values = *reinterpret_cast<talix::KeyValues*>(VALUES);
  if (*ACTION == talix::action::input) {
    I4 count = 0;
    call(count, names, values, I4{MORVE_LIST});
    if (!all_finite(VALUES, count)) {
      *NFAIL = talix::status::input;
      return;
    }
  }
  call(*NKEYS, names, values, I4{*ACTION});
  for (I4 k = 1; k <= *NKEYS; ++k)
    write_text(KEYS + static_cast<std::ptrdiff_t>(k - 1) * *WIDTH, *WIDTH, names(k).view());
}

// The arguments that the four transport entries have in common.
bool transport_ready(const double* T, const double* P, const double* X, const int32_t* NC, const int32_t* IC,
                     const int32_t* MODE, const int32_t* METHOD, const double* value, const double* slope,
                     int32_t* STATUS) {
  set_status(STATUS, talix::status::input);
  if (any_null(T, P, X, NC, IC, MODE, METHOD, value, slope, STATUS)) return false;
  if (!data_loaded) {
    *STATUS = talix::status::no_parameters;
    return false;
  }
  return is_component(*NC) && all_finite(X, *NC) && std::isfinite(*T) && std::isfinite(*P);
}

// Models whose class SHMIX0 serves and whose equation is there.
bool is_served(const talix::ModelRow& row) {
  return row.MODTYP == talix::model_class::equation_of_state &&
         (row.MODFUN == talix::fun::cubic || row.MODFUN == talix::fun::ideal_gas ||
          row.MODFUN == talix::fun::bwrs);
}

}  // namespace

extern "C" {

void SURPL0(const int32_t* CODE, int32_t* NFAIL) {
  set_status(NFAIL, talix::status::input);
  if (any_null(CODE, NFAIL)) return;
  talix::SURPL0(*CODE, *NFAIL);
}

void SURPT0(char* PATH, int32_t PATH_LENGTH, const char* MODE, int32_t MODE_LENGTH, int32_t* NFAIL) {
  set_status(NFAIL, talix::status::input);
  if (any_null(PATH, MODE, NFAIL) || PATH_LENGTH < 0 || MODE_LENGTH < 0) return;
  talix::SURPT0(PATH, PATH_LENGTH, std::string_view(MODE, static_cast<std::size_t>(MODE_LENGTH)), *NFAIL);
}

void SHINI0(const int32_t* N, const char* CODES, int32_t CODES_LENGTH, const int32_t* WIDTH, int32_t* NFAIL) {
  set_status(NFAIL, talix::status::input);
  if (any_null(N, CODES, WIDTH, NFAIL) || *WIDTH < 1) return;
  if (*N >= 1 && *N <= talix::kMaxComponents && CODES_LENGTH / *N < *WIDTH) return;
  data_loaded = false;
  // The flash layer has to load its own list again.
  talix::fl.NCOLD = 0;
  talix::SHINI0(*N, CODES, *WIDTH, *NFAIL);
}

void SHMLD0(const int32_t* CODE, int32_t* LNO, int32_t* NFAIL) {
  set_status(NFAIL, talix::status::input);
  if (any_null(CODE, LNO, NFAIL)) return;
  if (*CODE == talix::model::none) {
    *NFAIL = talix::status::unknown;
    return;
  }
  talix::SHMLD0(*CODE, *LNO, *NFAIL);
}

void SHDBS0(int32_t* NFAIL) {
  if (NFAIL == nullptr) return;
  const talix::StopHandler before = talix::set_stop_handler(note_stop);
  // Only the host's own allocator can throw below, while a file name is built.
  try {
    talix::SHDBS0(*NFAIL);
  } catch (...) {
    *NFAIL = talix::status::failed;
  }
  talix::set_stop_handler(before);
  data_loaded = *NFAIL == talix::status::ok;
}

void SMDAO1(const int32_t* CODE, int32_t* LNO) {
  if (!any_null(CODE, LNO)) talix::SMDAO1(*CODE, *LNO);
}

void SHMIX0(const int32_t* IPHTYP, const int32_t* IROOTO, const double* T, const double* P,
            const int32_t* NCOMP, const int32_t* IC, const double* X, const int32_t* LNOV, const int32_t* DV,
            const int32_t* LNOF, const int32_t* DF, const int32_t* LNOH, const int32_t* IHTYPE,
            const int32_t* DH, const int32_t* IRESRV, const int32_t* NRESRV, int32_t* IPHRTN, int32_t* AMBIG,
            double* ZFUG, double* ZVOL, double* DZDT, double* DZDP, double* DZDN, double* FUG, double* DFDT,
            double* DFDP, double* DFDN, double* H, double* DHDT, double* DHDP, double* DHDN, double* S,
            double* DSDT, double* DSDP, double* DSDN, double* RESRV, int32_t* NFAIL) {
  set_status(NFAIL, talix::status::input);
  if (any_null(IPHTYP, IROOTO, T, P, NCOMP, IC, X, LNOV, DV, LNOF, DF, LNOH, IHTYPE, DH, IRESRV, NRESRV,
               IPHRTN, AMBIG, ZFUG, ZVOL, DZDT, DZDP, DZDN, FUG, DFDT, DFDP, DFDN, H, DHDT, DHDP, DHDN, S,
               DSDT, DSDP, DSDN, RESRV, NFAIL))
    return;
  if (!data_loaded) {
    *NFAIL = refuse(talix::status::no_parameters, "SHMIX0", "No component data loaded (input)");
    return;
  }
  if (!is_range(*NCOMP) || !all_finite(X, *NCOMP)) {
    *NFAIL = refuse(talix::status::input, "SHMIX0", "Number of components or composition not usable (input)");
    return;
  }
  talix::SHMIX0(*IPHTYP, *IROOTO, *T, *P, *NCOMP, indices_of(IC), vector_of(X), *LNOV, flags_of(DV), *LNOF,
                flags_of(DF), *LNOH, *IHTYPE, flags_of(DH),
                *reinterpret_cast<const talix::ReservedCodes*>(IRESRV), *NRESRV, *IPHRTN,
                *reinterpret_cast<talix::L4*>(AMBIG), *ZFUG, *ZVOL, *DZDT, *DZDP, vector_of(DZDN),
                vector_of(FUG), vector_of(DFDT), vector_of(DFDP), *reinterpret_cast<talix::CompMat*>(DFDN),
                *H, *DHDT, *DHDP, vector_of(DHDN), *S, *DSDT, *DSDP, vector_of(DSDN),
                *reinterpret_cast<talix::ReservedValues*>(RESRV), *NFAIL);
}

void SPSAT0(const double* T, const double* PSGIVEN, const int32_t* ICOMP, const int32_t* VALUE,
            const int32_t* DERIV, const int32_t* METHOD, double* PS, double* DPS, int32_t* NFAIL) {
  set_status(NFAIL, talix::status::input);
  if (any_null(T, PSGIVEN, ICOMP, VALUE, DERIV, METHOD, PS, DPS, NFAIL)) return;
  if (!data_loaded) {
    *NFAIL = talix::status::no_parameters;
    return;
  }
  if (!is_component(*ICOMP) || !std::isfinite(*T)) return;
  talix::SPSAT0(*T, *PSGIVEN, *ICOMP, talix::L4{*VALUE}, talix::L4{*DERIV}, *METHOD, *PS, *DPS, *NFAIL);
}

void SVVIM1(const double* T, const double* P, const double* X, const int32_t* NC, const int32_t* IC,
            const int32_t* MODE, const int32_t* METHOD, double* ETA, double* DETA, int32_t* STATUS) {
  if (transport_ready(T, P, X, NC, IC, MODE, METHOD, ETA, DETA, STATUS))
    talix::SVVIM1(*T, *P, vector_of(X), *NC, indices_of(IC), *MODE, *METHOD, *ETA, *DETA, *STATUS);
}

void SLVIM1(const double* T, const double* P, const double* X, const int32_t* NC, const int32_t* IC,
            const int32_t* MODE, const int32_t* METHOD, double* ETA, double* DETA, int32_t* STATUS) {
  if (transport_ready(T, P, X, NC, IC, MODE, METHOD, ETA, DETA, STATUS))
    talix::SLVIM1(*T, *P, vector_of(X), *NC, indices_of(IC), *MODE, *METHOD, *ETA, *DETA, *STATUS);
}

void STCVM1(const double* T, const double* P, const double* X, const int32_t* NC, const int32_t* IC,
            const int32_t* MODE, const int32_t* METHOD, double* LAMBDA, double* DLAMBDA, int32_t* STATUS) {
  if (transport_ready(T, P, X, NC, IC, MODE, METHOD, LAMBDA, DLAMBDA, STATUS))
    talix::STCVM1(*T, *P, vector_of(X), *NC, indices_of(IC), *MODE, *METHOD, *LAMBDA, *DLAMBDA, *STATUS);
}

void STCLM1(const double* T, const double* P, const double* X, const int32_t* NC, const int32_t* IC,
            const int32_t* MODE, const int32_t* METHOD, double* LAMBDA, double* DLAMBDA, int32_t* STATUS) {
  if (transport_ready(T, P, X, NC, IC, MODE, METHOD, LAMBDA, DLAMBDA, STATUS))
    talix::STCLM1(*T, *P, vector_of(X), *NC, indices_of(IC), *MODE, *METHOD, *LAMBDA, *DLAMBDA, *STATUS);
}

void SURMD0(int32_t* NKEYS, char* KEYS, int32_t KEYS_LENGTH, const int32_t* WIDTH, double* VALUES,
            const int32_t* ACTION, const int32_t* MODEL, int32_t* NFAIL) {
  set_status(NFAIL, talix::status::input);
  if (any_null(NKEYS, KEYS, WIDTH, VALUES, ACTION, MODEL, NFAIL)) return;
  // The fit behind a write of this section reads the data of the list.
  if (*MODEL == talix::model::vardo3 && *ACTION == talix::action::input && !data_loaded) {
    *NKEYS = 0;
    *NFAIL = talix::status::no_parameters;
    return;
  }
  override_call(NKEYS, KEYS, KEYS_LENGTH, WIDTH, VALUES, ACTION, NFAIL,
                [&](I4& count, talix::KeyNames& names, talix::KeyValues& values, const I4& action) {
                  talix::SURMD0(count, names, *WIDTH, values, action, *MODEL, *NFAIL);
                });
}

void SURBI0(int32_t* NKEYS, char* KEYS, int32_t KEYS_LENGTH, const int32_t* WIDTH, double* VALUES,
            const int32_t* ACTION, const int32_t* ICOMP, const int32_t* JCOMP, const int32_t* SECTION,
            int32_t* NFAIL) {
  set_status(NFAIL, talix::status::input);
  if (any_null(NKEYS, KEYS, WIDTH, VALUES, ACTION, ICOMP, JCOMP, SECTION, NFAIL)) return;
  if (!data_loaded) {
    *NKEYS = 0;
    *NFAIL = talix::status::no_parameters;
    return;
  }
  override_call(NKEYS, KEYS, KEYS_LENGTH, WIDTH, VALUES, ACTION, NFAIL,
                [&](I4& count, talix::KeyNames& names, talix::KeyValues& values, const I4& action) {
                  talix::SURBI0(count, names, *WIDTH, values, action, *ICOMP, *JCOMP, *SECTION, *NFAIL);
                });
}

void SURPC0(int32_t* NKEYS, char* KEYS, int32_t KEYS_LENGTH, const int32_t* WIDTH, double* VALUES,
            const int32_t* ACTION, const int32_t* ICOMP, const int32_t* SECTION, int32_t* NFAIL) {
  set_status(NFAIL, talix::status::input);
  if (any_null(NKEYS, KEYS, WIDTH, VALUES, ACTION, ICOMP, SECTION, NFAIL)) return;
  if (!data_loaded) {
    *NKEYS = 0;
    *NFAIL = talix::status::no_parameters;
    return;
  }
  override_call(NKEYS, KEYS, KEYS_LENGTH, WIDTH, VALUES, ACTION, NFAIL,
                [&](I4& count, talix::KeyNames& names, talix::KeyValues& values, const I4& action) {
                  talix::SURPC0(count, names, *WIDTH, values, action, *ICOMP, *SECTION, *NFAIL);
                });
}

void GETMORVEERRORCOUNT(int32_t* COUNT) {
  if (COUNT != nullptr) *COUNT = talix::ring.count;
}

void GETMORVEERROR(const int32_t* K, int32_t* SEVERITY, char* NAME, int32_t NAME_LENGTH, char* TEXT,
                   int32_t TEXT_LENGTH, int32_t* NFAIL) {
  set_status(NFAIL, talix::status::input);
  if (any_null(K, SEVERITY, NAME, TEXT, NFAIL)) return;
  *NFAIL = talix::status::range;
  if (*K < 1 || *K > talix::ring.count) return;
  *SEVERITY = talix::ring.SEVER0(*K);
  write_text(NAME, NAME_LENGTH, talix::ring.NAMER0(*K).view());
  write_text(TEXT, TEXT_LENGTH, talix::ring.TXTER0(*K).view());
  *NFAIL = talix::status::ok;
}

void CLEARMORVEERRORS(void) { talix::reset_error_ring(); }

void GETMORVECODETEXT(const int32_t* CODE, char* TEXT, int32_t TEXT_LENGTH) {
  if (any_null(CODE, TEXT)) return;
  // One section of the overrides is numbered behind the last row of the code table.
  std::string_view text;
  if (*CODE >= 1 && *CODE <= talix::kCodeCount) text = talix::ETOA(*CODE).view();
  if (*CODE == talix::key_section::henry) text = "Henry";
  write_text(TEXT, TEXT_LENGTH, text);
}

void GETMORVEMODELS(int32_t* COUNT, int32_t* CODES, int32_t* CLASSES, int32_t* FUGACITY, int32_t* VOLUME,
                    int32_t* ENTHALPY) {
  if (any_null(COUNT, CODES, CLASSES, FUGACITY, VOLUME, ENTHALPY)) return;
  *COUNT = 0;
  for (const talix::ModelRow& row : talix::kModelRows) {
    if (row.MODEL == talix::model::none) continue;
    const I4 k = (*COUNT)++;
    const bool served = is_served(row);
    CODES[k] = row.MODEL;
    CLASSES[k] = row.MODTYP;
    FUGACITY[k] = talix::logical(served && row.can.fugacity).value;
    VOLUME[k] = talix::logical(served && row.can.volume).value;
    ENTHALPY[k] = talix::logical(served && row.can.enthalpy).value;
  }
}

}  // extern "C"
