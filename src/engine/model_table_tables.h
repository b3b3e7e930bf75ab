// Rows of the model table: what each model code stands for.
#pragma once

#include <array>

#include "base/array.h"
#include "base/real.h"
#include "engine/codes.h"

namespace talix {

// Calculations that a model can do.
struct Calculations {
  bool fugacity, volume, enthalpy;
};

inline constexpr Calculations kAll{true, true, true};
inline constexpr Calculations kNothing{false, false, false};
inline constexpr Calculations kVolumeOnly{false, true, false};
inline constexpr Calculations kFugacityOnly{true, false, false};

// Constants of a cubic: the denominator (v + c1 b)(v + c2 b) and the temperature function. Single-precision
// literals, since the stored parameter sets were fitted with them.
struct CubicForm {
  R4 c1, c2;      // [-]
  R4 m1, m2, m3;  // [-]
};

inline constexpr CubicForm kSoaveForm{0.0F, 1.0F, 1.75256F, 0.08128F, 0.1729F};
inline constexpr CubicForm kPengRobinsonForm{-0.41421354F, 2.4142137F, 1.63499F, 0.0666F, 0.1577F};
inline constexpr CubicForm kWaalsForm{0.0F, 0.0F, 1.7764F, 0.08504F, 0.1766F};
inline constexpr CubicForm kNoForm{0.0F, 0.0F, 1.75256F, 0.08128F, 0.1729F};

struct ModelRow {
  I4 MODEL, MODTYP, MODPUR, MODFUN, MODMIX, MODLIQ, MODRSF, MODRSP;
  Calculations can;
  CubicForm cubic;
  Vec<I4, 5> MODCOR;
};

namespace model_rows_detail {

inline constexpr I4 no = code(98, "no");
inline constexpr I4 water_number = 9;    // standard component number of water
inline constexpr I4 salt_number = 1001;  // standard component number of the salt
inline constexpr Vec<I4, 5> no_correction{{0, 0, 0, 0, 0}};

// A cubic with a classical mixing rule.
consteval ModelRow cubic(I4 model, I4 pure, CubicForm form = kSoaveForm) {
  return {
      model,        model_class::equation_of_state, pure, fun::cubic, mixing::classical, 0, 0, 0, kAll, form,
      no_correction};
}

// A van der Waals and Platteeuw hydrate of one STRUCTURE with Langmuir method METHOD.
consteval ModelRow hydrate(I4 model, I4 structure, I4 method, I4 reference) {
  return {model,
          model_class::hydrate,
          pure::none,
          fun::hydrate,
          mixing::none,
          0,
          reference,
          0,
          kAll,
          kSoaveForm,
          {{structure, method, 0, 0, 0}}};
}

// A solid that freezes out: SPECIES by standard number (MODE 0) or by component index (MODE 1).
consteval ModelRow solid(I4 model, I4 reference, I4 species, I4 mode) {
  return {model,      model_class::freeze_out,   no, no, no, no, reference, no, kAll,
          kSoaveForm, {{species, mode, 0, 0, 0}}};
}

// An activity model over an ideal vapour.
consteval ModelRow activity(I4 model, I4 function) {
  return {model,         model_class::liquid, pure::none,       function,
          mixing::none,  phase::liquid,       model::ideal_gas, method::ideal_gas,
          kFugacityOnly, kSoaveForm,          no_correction};
}

// Another equation of state: its own function, parameters and mixing rule.
consteval ModelRow equation(I4 model, I4 pure, I4 function, I4 mix, I4 liquid = 0) {
  return {model,        model_class::equation_of_state, pure, function, mix, liquid, 0, 0, kAll, kSoaveForm,
          no_correction};
}

}  // namespace model_rows_detail

inline constexpr auto kModelRows = [] {
  using namespace model_rows_detail;
  return std::to_array<ModelRow>({
      {model::none, 0, 0, 0, 0, 0, 0, 0, kNothing, kNoForm, no_correction},
      cubic(model::vardo1, pure::vardo),
      cubic(model::vardo95, pure::vardo95),
      cubic(model::srk, pure::soave),
      cubic(model::srk_simsci, pure::srk_simsci),
      cubic(model::srk_aspen, pure::srk_aspen),
      cubic(model::peng_robinson, pure::peng_robinson, kPengRobinsonForm),
      cubic(model::van_der_waals, pure::soave, kWaalsForm),
      {model::steam, model_class::steam, pure::steam, fun::steam, mixing::none, 0, 0, 0, kAll, kSoaveForm,
       no_correction},
      equation(model::ideal_gas, pure::none, fun::ideal_gas, mixing::none),
      equation(model::saft, pure::saft, fun::saft, mixing::classical),
      equation(model::cpa, pure::cpa, fun::cpa, mixing::cpa),
      equation(model::vardo2, pure::vardo, fun::cubic, mixing::g_excess, model::nrtl),
      equation(model::vardo3, pure::vardo, fun::cubic, mixing::a_excess, model::nrtl),
      equation(model::vardo4, pure::vardo, fun::cubic, mixing::nrtl),
      cubic(model::vardo5, pure::phase_envelope),
      equation(model::vd2d1, pure::vd2d1, fun::cubic, mixing::classical_2d),
      equation(model::hard_sphere_chain, pure::hard_sphere_chain, fun::hard_sphere_chain, mixing::none),
      {model::bwrs, model_class::equation_of_state, pure::soave, fun::bwrs, mixing::classical, 0, 0, 0,
       kVolumeOnly, kSoaveForm, no_correction},
      {model::keldrin, model_class::pseudo_component, pure::none, fun::cubic, mixing::classical, 0,
       model::vardo1, 0, kVolumeOnly, kSoaveForm, no_correction},
      hydrate(model::wp1, 1, 1, 0),
      hydrate(model::wp2, 1, 2, 0),
      hydrate(model::wp3, 2, 1, 0),
      hydrate(model::wp4, 2, 2, 0),
      hydrate(model::wpcpa1, 1, 1, model::cpa),
      hydrate(model::wpcpa2, 1, 2, model::cpa),
      hydrate(model::wpcpa3, 2, 1, model::cpa),
      hydrate(model::wpcpa4, 2, 2, model::cpa),
      solid(model::ice, 0, water_number, 0),
      solid(model::ice_cpa, model::cpa, water_number, 0),
      solid(model::solid_nacl, model::vardo1, salt_number, 0),
      solid(model::freeze_out, 0, 0, 1),
      activity(model::regular_solution, model::regular_solution),
      activity(model::unifac, model::unifac),
      activity(model::lyngby_unifac, model::lyngby_unifac),
      activity(model::linear_unifac, model::linear_unifac),
      activity(model::free_volume_unifac, model::free_volume_unifac),
      activity(model::elbro, model::elbro),
      {model::unifac_dm,
       model_class::liquid,
       pure::none,
       model::unifac_dm,
       mixing::none,
       phase::liquid,
       model::vardo1,
       method::bramm_default,
       kAll,
       kSoaveForm,
       {{method::poynting, method::bramm_default, method::riedel, model::vardo1, 0}}},
      activity(model::liquid_unifac, model::unifac_dm),
      {model::nrtl,
       model_class::liquid,
       pure::none,
       model::nrtl,
       mixing::none,
       phase::liquid,
       0,
       method::bramm_default,
       kAll,
       kSoaveForm,
       {{method::poynting, method::bramm_default, method::riedel, 0, 0}}},
  });
}();

// Every code selects one row.
static_assert([] {
  for (std::size_t i = 0; i < kModelRows.size(); ++i)
    for (std::size_t j = i + 1; j < kModelRows.size(); ++j)
      if (kModelRows[i].MODEL == kModelRows[j].MODEL) return false;
  return true;
}());
static_assert(kModelRows.size() == 41);

}  // namespace talix
