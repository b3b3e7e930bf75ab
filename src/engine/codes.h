// The one vocabulary of integer codes: models, phases, property selectors, statuses, platforms.
//
// ETOA holds the text of every code; each named constant below is checked against its text at compile
// time, so that name, number and text cannot drift apart.
#pragma once

#include <string_view>

#include "base/array.h"
#include "base/real.h"
#include "base/text.h"
#include "engine/codes_tables.h"

namespace talix {

inline constexpr int kCodeCount = static_cast<int>(kCodeTexts.size());

// Text of each code, blank-padded to 31 characters.
inline constexpr Vec<Text<31>, kCodeCount> ETOA = [] {
  Vec<Text<31>, kCodeCount> table{};
  for (int i = 1; i <= kCodeCount; ++i) table(i) = kCodeTexts[static_cast<std::size_t>(i - 1)];
  return table;
}();

// The number itself, after the check that it carries that text.
consteval I4 code(I4 number, std::string_view text) {
  if (number < 1 || number > kCodeCount || kCodeTexts[static_cast<std::size_t>(number - 1)] != text)
    throw "code and text do not belong together";
  return number;
}

namespace status {
inline constexpr I4 ok = code(98, "no");
inline constexpr I4 input = code(87, "input");
inline constexpr I4 model_error = code(95, "model error");
inline constexpr I4 no_parameters = code(99, "no parameters");
inline constexpr I4 no_root = code(100, "no root");
inline constexpr I4 nonstandard = code(101, "nonstandard");
inline constexpr I4 not_available = code(102, "not available");
inline constexpr I4 not_converged = code(103, "not converged");
inline constexpr I4 range = code(110, "range");
inline constexpr I4 severe_warning = code(112, "severe warning");
inline constexpr I4 numerical = code(115, "stop");
inline constexpr I4 supercritical = code(116, "supercritical");
inline constexpr I4 unknown = code(119, "unknown");
inline constexpr I4 unstable = code(120, "unstable");
inline constexpr I4 failed = code(125, "yes");
inline constexpr I4 fatal = code(76, "fatal error");
// The model that the transport methods need is not loaded, or it failed.
inline constexpr I4 no_equation_of_state = code(41, "Vardo1");
}  // namespace status

// Phases asked for and root types returned.
namespace phase {
inline constexpr I4 vapour = code(122, "vapour");
inline constexpr I4 liquid = code(90, "liquid");
inline constexpr I4 gibbs = code(82, "gibbs free energy");  // also for hydrate (83) and solid (113)
inline constexpr I4 hydrate = code(83, "hydrate");
inline constexpr I4 solid = code(113, "solid");
inline constexpr I4 given_volume = code(108, "pressure");
inline constexpr I4 condensed = code(70, "condensed");
inline constexpr I4 middle = code(120, "unstable");
inline constexpr I4 single = code(81, "gas");  // one root, not identified
inline constexpr I4 pseudo_root = code(109, "pseudo root");
inline constexpr I4 no_root = code(100, "no root");
inline constexpr I4 none = code(98, "no");
}  // namespace phase

// Root option: whether a pseudo-root may stand in for a missing root.
namespace root_option {
inline constexpr I4 pseudo = code(125, "yes");
inline constexpr I4 real_only = code(98, "no");
}  // namespace root_option

// Kind of enthalpy and entropy.
namespace thermal {
inline constexpr I4 total = code(118, "total");
inline constexpr I4 residual = code(111, "residual");
inline constexpr I4 ideal_gas = code(85, "ideal gas");
}  // namespace thermal

// Property results kept by the model calculations.
namespace reserved {
inline constexpr I4 adiabatic_compressibility = code(2, "Adiabatic pressure cf.");     // KAPS
inline constexpr I4 hildebrand = code(13, "Hildebrand parameter");                     // DLVTV
inline constexpr I4 heat_capacity_p = code(15, "Isobaric heat capacity");              // CP
inline constexpr I4 heat_capacity_v = code(16, "Isochoric heat capacity");             // CV
inline constexpr I4 isentropic_thermal = code(17, "Isoentropic thermal press. cf.");   // DPDTS
inline constexpr I4 isothermal_compressibility = code(18, "Isothermal pressure cf.");  // KAPT
inline constexpr I4 joule_thomson = code(19, "Joule-Thomson cf.");                     // JTC
inline constexpr I4 phase_indicator = code(21, "Meijer's phase indicator");            // DKAPT
inline constexpr I4 thermal_expansion = code(49, "Thermal expansion cf.");             // BETA
inline constexpr I4 thermal_pressure = code(50, "Thermal pressure cf.");               // DPDTV
inline constexpr I4 speed_of_sound = code(114, "speed of sound");                      // WSOUND
}  // namespace reserved

// Models, by the code that selects them.
namespace model {
inline constexpr I4 none = 0;
inline constexpr I4 bwrs = code(4, "Benedict-Webb-Rubin-Starling");
inline constexpr I4 unifac_dm = code(7, "UNIFAC-DM");
inline constexpr I4 elbro = code(8, "ELBRO");
inline constexpr I4 keldrin = code(10, "Keldrin");
inline constexpr I4 lyngby_unifac = code(20, "Lyngby UNIFAC");
inline constexpr I4 nrtl = code(23, "NRTL");
inline constexpr I4 peng_robinson = code(27, "Peng-Robinson");
inline constexpr I4 hard_sphere_chain = code(28, "Perturbed Hard Sphere Chain");
inline constexpr I4 saft = code(35, "SAFT");
inline constexpr I4 vd2d1 = code(38, "Vd2d1");
inline constexpr I4 vardo1 = code(41, "Vardo1");
inline constexpr I4 vardo2 = code(42, "Vardo2");
inline constexpr I4 vardo3 = code(43, "Vardo3");
inline constexpr I4 vardo4 = code(44, "Vardo4");
inline constexpr I4 vardo5 = code(45, "Vardo5");
inline constexpr I4 vardo95 = code(46, "Vardo95");
inline constexpr I4 srk = code(47, "Soave-Redlich-Kwong");
inline constexpr I4 unifac = code(52, "UNIFAC");
inline constexpr I4 wp1 = code(55, "WP1");
inline constexpr I4 wp2 = code(56, "WP2");
inline constexpr I4 wp3 = code(57, "WP3");
inline constexpr I4 wp4 = code(58, "WP4");
inline constexpr I4 free_volume_unifac = code(78, "free volume UNIFAC");
inline constexpr I4 freeze_out = code(79, "freeze out");
inline constexpr I4 ice = code(84, "ice model");
inline constexpr I4 ideal_gas = code(85, "ideal gas");
inline constexpr I4 linear_unifac = code(89, "linear UNIFAC");
inline constexpr I4 liquid_unifac = code(91, "liquid UNIFAC");
inline constexpr I4 van_der_waals = code(121, "van der Waals");
inline constexpr I4 steam = code(131, "steam");
inline constexpr I4 solid_nacl = code(132, "Solid NaCl");
inline constexpr I4 srk_simsci = code(133, "SRK-SimSci");
inline constexpr I4 regular_solution = code(134, "Regular solution");
inline constexpr I4 cpa = code(135, "CPA");
inline constexpr I4 srk_aspen = code(138, "SRK-Aspen");
inline constexpr I4 wpcpa1 = code(139, "WPCPA1");
inline constexpr I4 wpcpa2 = code(140, "WPCPA2");
inline constexpr I4 wpcpa3 = code(141, "WPCPA3");
inline constexpr I4 wpcpa4 = code(142, "WPCPA4");
inline constexpr I4 ice_cpa = code(143, "ice model cpa");
}  // namespace model

// Class of a model, field MODTYP.
namespace model_class {
inline constexpr I4 pseudo_component = code(10, "Keldrin");
inline constexpr I4 equation_of_state = code(75, "equation of state");
inline constexpr I4 freeze_out = code(79, "freeze out");
inline constexpr I4 hydrate = code(83, "hydrate");
inline constexpr I4 liquid = code(90, "liquid");
inline constexpr I4 steam = code(131, "steam");
}  // namespace model_class

// The equation itself, field MODFUN.
namespace fun {
inline constexpr I4 bwrs = code(4, "Benedict-Webb-Rubin-Starling");
inline constexpr I4 hard_sphere_chain = code(28, "Perturbed Hard Sphere Chain");
inline constexpr I4 saft = code(35, "SAFT");
inline constexpr I4 cubic = code(39, "Vardo");
inline constexpr I4 hydrate = code(59, "Waals-Platteeuw");
inline constexpr I4 ideal_gas = code(85, "ideal gas");
inline constexpr I4 steam = code(131, "steam");
inline constexpr I4 cpa = code(135, "CPA");
}  // namespace fun

// Origin of the pure-component parameters of a cubic, field MODPUR.
namespace pure {
inline constexpr I4 none = 0;
inline constexpr I4 peng_robinson = code(27, "Peng-Robinson");
inline constexpr I4 hard_sphere_chain = code(28, "Perturbed Hard Sphere Chain");
inline constexpr I4 saft = code(35, "SAFT");
inline constexpr I4 vd2d1 = code(38, "Vd2d1");
inline constexpr I4 vardo = code(39, "Vardo");
inline constexpr I4 phase_envelope = code(40, "Vardo phase envelope");
inline constexpr I4 vardo95 = code(46, "Vardo95");
inline constexpr I4 soave = code(47, "Soave-Redlich-Kwong");
inline constexpr I4 steam = code(131, "steam");
inline constexpr I4 srk_simsci = code(133, "SRK-SimSci");
inline constexpr I4 cpa = code(135, "CPA");
inline constexpr I4 srk_aspen = code(138, "SRK-Aspen");
}  // namespace pure

// Mixing rule, field MODMIX.
namespace mixing {
inline constexpr I4 none = 0;
inline constexpr I4 a_excess = code(1, "A-excess");
inline constexpr I4 g_excess = code(11, "G-excess");
inline constexpr I4 nrtl = code(23, "NRTL");
inline constexpr I4 classical = code(66, "classical");
inline constexpr I4 classical_2d = code(67, "classical 2-d");
inline constexpr I4 cpa = code(135, "CPA");
}  // namespace mixing

// Vapour pressure methods and reference-state corrections.
namespace method {
inline constexpr I4 antoine = code(3, "Antoine");
inline constexpr I4 tolk_default = code(5, "TOLK model default value");
inline constexpr I4 poynting = code(29, "Poynting factor");
inline constexpr I4 riedel = code(34, "Riedel");
inline constexpr I4 bramm_default = code(36, "Bramm default method");
inline constexpr I4 wagner = code(60, "Wagner");
inline constexpr I4 frost_kalkwarf = code(80, "frost kalkwarf");
inline constexpr I4 ideal_gas = code(85, "ideal gas");
inline constexpr I4 antoine_extended = code(144, "Antoine");
// Methods of viscosity and conductivity.
inline constexpr I4 sternling_samish = code(48, "Sternling-Samish");
inline constexpr I4 thodos_wilke_dean = code(51, "Thodos-Wilke-Dean");
inline constexpr I4 livithec = code(92, "livithec");
inline constexpr I4 mixture = code(94, "mixture");
inline constexpr I4 old_sternling_samish = code(104, "old Sternling-Samish");
}  // namespace method

// Chemical classes and subclasses of a component code.
namespace family {
inline constexpr I4 alkane = code(61, "alkane");
inline constexpr I4 alkyl_benzene = code(62, "alkyl-benzene");
inline constexpr I4 alkyl_cyclo_hexane = code(63, "alkyl-cyclo-hexane");
inline constexpr I4 aromatic = code(64, "aromatic");
inline constexpr I4 naphthene = code(97, "naphthene");
inline constexpr I4 excluded = code(102, "not available");
inline constexpr I4 parafinic = code(106, "parafinic");
inline constexpr I4 unknown = code(119, "unknown");
}  // namespace family

// Host platforms.
namespace platform {
inline constexpr I4 hp9000 = code(12, "HP9000 unix workstation");
inline constexpr I4 pc_ftn77 = code(25, "PC with FTN77 compiler");
inline constexpr I4 pc_lahey = code(26, "PC with Lahey compiler");
inline constexpr I4 rs6000 = code(30, "RS6000 unix workstation");
inline constexpr I4 indigo = code(37, "Silicon Graphics Indigo");
inline constexpr I4 vax = code(54, "VAX station");
inline constexpr I4 unknown = code(119, "unknown");
inline constexpr I4 octane = code(136, "Silicon Graphics Octane");
inline constexpr I4 sun = code(137, "SUN unix workstation");
}  // namespace platform

// What an override call does.
namespace action {
inline constexpr I4 information = code(86, "information");
inline constexpr I4 input = code(87, "input");
}  // namespace action

// Severity of an entry of the error ring.
namespace severity {
inline constexpr I4 warning = 1;
inline constexpr I4 error = 3;
}  // namespace severity

}  // namespace talix
