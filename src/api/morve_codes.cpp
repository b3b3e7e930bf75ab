// Checks, while the library is compiled, that sizes and codes of the engine's public header are those of the engine.
#include <cstdint>

#include "database/overrides.h"
#include "engine/codes.h"
#include "engine/error_ring.h"
#include "engine/model_record.h"
#include "engine/model_table_tables.h"
#include "engine/shmix_driver.h"
#include "talix/morve.h"

static_assert(MORVE_MAX_COMPONENTS == talix::kMaxComponents && MORVE_MAX_MODELS == talix::kMaxModels);
static_assert(MORVE_MAX_RESERVED == talix::kMaxReserved && MORVE_MAX_KEYS == talix::kMaxKeys);
static_assert(MORVE_RING_ENTRIES == talix::kRingEntries);
static_assert(MORVE_KEY_LENGTH == talix::KeyNames{}.v[0].extent);
static_assert(MORVE_ROUTINE_LENGTH == talix::ErrorRing{}.NAMER0.v[0].extent);
static_assert(MORVE_MESSAGE_LENGTH == talix::ErrorRing{}.TXTER0.v[0].extent);
static_assert(sizeof(talix::I4) == sizeof(int32_t) && sizeof(talix::L4) == sizeof(int32_t));
static_assert(sizeof(talix::CompVec) == sizeof(double) * 50 &&
              sizeof(talix::CompMat) == sizeof(double) * 2500);
static_assert(sizeof(talix::Flags3) == sizeof(int32_t) * 3);
static_assert(sizeof(talix::ReservedCodes) == sizeof(int32_t) * 20 &&
              sizeof(talix::ReservedValues) == sizeof(double) * 20 &&
              sizeof(talix::KeyValues) == sizeof(double) * 20);

static_assert(MORVE_OK == talix::status::ok && MORVE_INPUT == talix::status::input &&
              MORVE_FATAL == talix::status::fatal && MORVE_MODEL_ERROR == talix::status::model_error &&
              MORVE_NO_PARAMETERS == talix::status::no_parameters &&
              MORVE_NO_ROOT == talix::status::no_root &&
              MORVE_NOT_AVAILABLE == talix::status::not_available &&
              MORVE_NOT_CONVERGED == talix::status::not_converged && MORVE_RANGE == talix::status::range &&
              MORVE_SEVERE_WARNING == talix::status::severe_warning &&
              MORVE_NUMERICAL == talix::status::numerical && MORVE_UNKNOWN == talix::status::unknown &&
              MORVE_FAILED == talix::status::failed &&
              MORVE_NO_EQUATION_OF_STATE == talix::status::no_equation_of_state);
static_assert(MORVE_VAPOUR == talix::phase::vapour && MORVE_LIQUID == talix::phase::liquid &&
              MORVE_GIBBS == talix::phase::gibbs && MORVE_NONE == talix::phase::none);
static_assert(MORVE_PSEUDO_ROOT == talix::root_option::pseudo &&
              MORVE_REAL_ROOT == talix::root_option::real_only);
static_assert(MORVE_TOTAL == talix::thermal::total && MORVE_RESIDUAL == talix::thermal::residual &&
              MORVE_IDEAL_GAS == talix::thermal::ideal_gas);
static_assert(MORVE_THERMAL_EXPANSION == talix::reserved::thermal_expansion &&
              MORVE_ISOTHERMAL_COMPRESSIBILITY == talix::reserved::isothermal_compressibility &&
              MORVE_ISENTROPIC_COMPRESSIBILITY == talix::reserved::adiabatic_compressibility &&
              MORVE_CP == talix::reserved::heat_capacity_p && MORVE_CV == talix::reserved::heat_capacity_v &&
              MORVE_THERMAL_PRESSURE == talix::reserved::thermal_pressure &&
              MORVE_ISENTROPIC_THERMAL_PRESSURE == talix::reserved::isentropic_thermal &&
              MORVE_JOULE_THOMSON == talix::reserved::joule_thomson &&
              MORVE_SPEED_OF_SOUND == talix::reserved::speed_of_sound &&
              MORVE_HILDEBRAND == talix::reserved::hildebrand &&
              MORVE_PHASE_INDICATOR == talix::reserved::phase_indicator);
static_assert(MORVE_BWRS == talix::model::bwrs && MORVE_NRTL == talix::model::nrtl &&
              MORVE_PENG_ROBINSON == talix::model::peng_robinson && MORVE_VD2D1 == talix::model::vd2d1 &&
              MORVE_VARDO1 == talix::model::vardo1 && MORVE_VARDO2 == talix::model::vardo2 &&
              MORVE_VARDO3 == talix::model::vardo3 && MORVE_VARDO4 == talix::model::vardo4 &&
              MORVE_VARDO5 == talix::model::vardo5 && MORVE_VARDO95 == talix::model::vardo95 &&
              MORVE_SRK == talix::model::srk && MORVE_IDEAL_GAS_MODEL == talix::model::ideal_gas &&
              MORVE_VAN_DER_WAALS == talix::model::van_der_waals &&
              MORVE_SRK_SIMSCI == talix::model::srk_simsci && MORVE_SRK_ASPEN == talix::model::srk_aspen);
static_assert(MORVE_ANTOINE == talix::method::antoine &&
              MORVE_PSAT_SECOND_DEFAULT == talix::method::tolk_default &&
              MORVE_PSAT_DEFAULT == talix::method::bramm_default && MORVE_WAGNER == talix::method::wagner &&
              MORVE_FROST_KALKWARF == talix::method::frost_kalkwarf &&
              MORVE_PSAT_GIVEN == talix::method::ideal_gas &&
              MORVE_ANTOINE_EXTENDED == talix::method::antoine_extended &&
              MORVE_STERNLING_SAMISH == talix::method::sternling_samish &&
              MORVE_THODOS_WILKE_DEAN == talix::method::thodos_wilke_dean &&
              MORVE_LIVITHEC == talix::method::livithec && MORVE_MIXTURE == talix::method::mixture &&
              MORVE_OLD_STERNLING_SAMISH == talix::method::old_sternling_samish);
static_assert(MORVE_READ == talix::action::information && MORVE_WRITE == talix::action::input);
static_assert(MORVE_SECTION_GENERAL == talix::key_section::general &&
              MORVE_SECTION_GROUPS == talix::key_section::groups &&
              MORVE_SECTION_IDEAL_CP == talix::key_section::ideal_heat_capacity &&
              MORVE_SECTION_LIQUID_DENSITY == talix::method::riedel &&
              MORVE_SECTION_SOLID == talix::model::freeze_out &&
              MORVE_SECTION_ELEMENTS == talix::key_section::elements &&
              MORVE_SECTION_LIQUID_VISCOSITY == talix::key_section::liquid_viscosity &&
              MORVE_SECTION_LIQUID_CONDUCTIVITY == talix::key_section::thermal_conductivity &&
              MORVE_SECTION_HEAT_OF_VAPORISATION == talix::key_section::heat_of_vaporisation &&
              MORVE_SECTION_ASSOCIATION == talix::model::cpa &&
              MORVE_SECTION_HENRY == talix::key_section::henry);
// The first row of the model table stands for no model.
static_assert(MORVE_MODEL_COUNT + 1 == talix::kModelRows.size());
