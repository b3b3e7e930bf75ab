// SSMBI0: the ordered list of rules for a pair without data. Each rule is one function, the first that applies
// ends the list.
#include "database/ssm_pair_estimates.h"

#include <algorithm>
#include <cmath>

#include "database/component_record.h"
#include "database/pair_record.h"
#include "database/sh_component_class.h"
#include "engine/codes.h"

namespace talix {

namespace {

// Standard numbers that the rules name.
namespace number {
constexpr I4 carbon_dioxide = 4;
constexpr I4 helium = 3;
constexpr I4 hydrogen = 8;
constexpr I4 water = 9;
constexpr I4 hydrogen_sulphide = 11;
constexpr I4 nitrogen = 15;
constexpr I4 oxygen = 17;
constexpr I4 benzene = 277;
constexpr I4 methanol = 328;
constexpr I4 ethylene_glycol = 403;
constexpr I4 diethylene_glycol = 408;
constexpr I4 triethylene_glycol = 415;
constexpr I4 monoglyme = 712;
constexpr I4 diglyme = 898;
constexpr I4 triglyme = 899;
constexpr I4 tetraglyme = 900;
constexpr I4 pentaglyme = 901;
constexpr I4 methyldiethanolamine = 904;
constexpr I4 salt = 1001;
constexpr I4 mercury = 1011;
}  // namespace number

constexpr R8 kCarbonMass = 12.01115;      // [g/mol]
constexpr R8 kHydrogenMass = 1.00796998;  // [g/mol]

// The pair being estimated, and the two components in the roles of a rule: X is the one that the rule names.
struct Pair {
  I4 A, B;
};
struct Roles {
  I4 X, Y;
  explicit operator bool() const { return X != 0; }
};

bool pseudo(I4 i) { return comp.ICSTD(i) <= 1; }
bool plain(I4 i) { return comp.NOTRY(i) == 0; }
bool is(I4 i, I4 wanted) { return comp.ICSTD(i) == wanted; }

// A as X first, then B as X.
Roles named_with_plain(Pair p, I4 wanted) {
  if (is(p.A, wanted) && plain(p.B)) return {p.A, p.B};
  if (is(p.B, wanted) && plain(p.A)) return {p.B, p.A};
  return {0, 0};
}

Roles named_with_named(Pair p, I4 wanted, I4 other) {
  if (is(p.A, wanted) && is(p.B, other)) return {p.A, p.B};
  if (is(p.B, wanted) && is(p.A, other)) return {p.B, p.A};
  return {0, 0};
}

// A divisor of exactly 0 is replaced.
R8 over(R8 value, R8 divisor) { return value / (divisor != 0.0 ? divisor : 1e-37); }

// Watson factor [R^(1/3)].
R8 watson(I4 y) { return std::pow(comp.ATBP(y) / 0.555555556, 0.333333333) / std::max(comp.RHO(y), 1e-20); }

// Carbon atoms from molar mass and the ratio of hydrogen to carbon.
R8 carbon_from_mass(I4 y, R8 ratio) { return over(comp.RMOLW(y), kCarbonMass + kHydrogenMass * ratio); }

// Carbon atoms; RATIO stands in for the hydrogen to carbon ratio of a pseudo-component.
R8 carbon_number(I4 y, R8 ratio) {
  return pseudo(y) ? carbon_from_mass(y, ratio) : static_cast<R8>(comp.ELEM(y, 1));
}

// Hydrogen atoms missing from the open chain of CN carbon atoms.
R8 hydrogen_deficit(I4 y, R8 CN) {
  const R8 hydrogen = pseudo(y) ? CN * comp.HCRAT(y) : static_cast<R8>(comp.ELEM(y, 2));
  return 2.0 * CN + 2.0 - hydrogen;
}

void set_symmetric(PairRecord::Table& table, Pair p, R8 value) {
  table(p.A, p.B) = value;
  table(p.B, p.A) = value;
}

// The asymmetry terms are written in the order of the pair, whichever of the two the rule names.
void set_asymmetric(PairRecord::Table& table, Pair p, R8 value) {
  table(p.A, p.B) = value;
  table(p.B, p.A) = -value;
}

bool rule_hydrogen(Pair p, I4&) {
  const Roles r = named_with_plain(p, number::hydrogen);
  if (!r) return false;
  set_symmetric(pairs.TETA0, p, 0.4731 - 0.0464 * watson(r.Y));
  set_symmetric(pairs.TETA0T, p, over(0.5704, comp.TC(r.Y)));
  return true;
}

bool rule_carbon_dioxide(Pair p, I4&) {
  const Roles r = named_with_plain(p, number::carbon_dioxide);
  if (!r) return false;
  set_symmetric(pairs.TETA0, p, 0.0847);
  set_symmetric(pairs.TETA0T, p, over(0.0502, comp.TC(r.Y)));
  return true;
}

bool rule_helium(Pair p, I4&) {
  const Roles r = named_with_plain(p, number::helium);
  if (!r) return false;
  set_symmetric(pairs.TETA0, p, 0.4604 - 0.2581 * comp.OMEGA(r.Y));
  return true;
}

bool rule_nitrogen(Pair p, I4&) {
  const Roles r = named_with_plain(p, number::nitrogen);
  if (!r) return false;
  set_symmetric(pairs.TETA0, p, 0.094);
  return true;
}

bool rule_oxygen(Pair p, I4&) {
  const Roles r = named_with_plain(p, number::oxygen);
  if (!r) return false;
  set_symmetric(pairs.TETA0, p, 0.12);
  return true;
}

// Benzene is plain itself: the other must be something else.
bool rule_benzene(Pair p, I4&) {
  const Roles r = named_with_plain(p, number::benzene);
  if (!r || is(r.Y, number::benzene)) return false;
  set_symmetric(pairs.TETA0, p, 0.0347 - 0.0717 * comp.OMEGA(r.Y));
  return true;
}

bool rule_methanol(Pair p, I4&) {
  const Roles r = named_with_plain(p, number::methanol);
  if (!r) return false;
  set_symmetric(pairs.TETA0, p, -0.016 + 0.06 * comp.VC(r.Y));
  set_asymmetric(pairs.TETA1, p, -0.215 - 0.08 * comp.VC(r.Y));
  set_asymmetric(pairs.TETA1T, p, 0.0005);
  return true;
}

bool rule_mercury_named(Pair p, I4 other, R8 teta0, R8 teta0t) {
  if (!named_with_named(p, number::mercury, other)) return false;
  set_symmetric(pairs.TETA0, p, teta0);
  set_symmetric(pairs.TETA0T, p, teta0t);
  return true;
}

bool rule_mercury_water(Pair p, I4&) {
  return rule_mercury_named(p, number::water, 0.072542958, 0.00167531602);
}
bool rule_mercury_methanol(Pair p, I4&) {
  return rule_mercury_named(p, number::methanol, 0.225799695, 0.00095647102);
}
bool rule_mercury_glycol(Pair p, I4&) {
  return rule_mercury_named(p, number::triethylene_glycol, -0.120425999, 0.00233864202);
}

// The carbon number of a pseudo-component takes the ratio of B in both orders, also where B is the mercury.
bool rule_mercury(Pair p, I4&) {
  const Roles r = named_with_plain(p, number::mercury);
  if (!r) return false;
  const R8 D = hydrogen_deficit(r.Y, carbon_number(r.Y, comp.HCRAT(p.B)));
  set_symmetric(pairs.TETA0, p, 0.33721 - 0.00106 * comp.RMOLW(r.Y) + 0.004 * D - 0.145);
  set_symmetric(pairs.TETA0T, p, 0.0005);
  return true;
}

bool rule_hydrogen_sulphide(Pair p, I4&) {
  const Roles r = named_with_plain(p, number::hydrogen_sulphide);
  if (!r) return false;
  set_symmetric(pairs.TETA0, p, -0.059);
  set_symmetric(pairs.TETA0T, p, over(0.142, comp.TC(r.Y)));
  return true;
}

// Terms a + b R in the inverse carbon number R.
struct Terms {
  R8 a, b;
  [[nodiscard]] R8 at(R8 R) const { return a + b * R; }
};

// TETA0 and TETA1 of a glycol with the three subclasses of hydrocarbons.
struct GlycolFamilies {
  I4 glycol;
  Terms alkane0, alkane1;
  Terms benzene0, benzene1;
  Terms cyclohexane0, cyclohexane1;
};

constexpr GlycolFamilies kEthyleneGlycol{
    number::ethylene_glycol, {0.09, 0.15},  {-0.21, -0.15}, {0.09, 0.0}, {-0.21, 0.6},
    {0.145, 0.15},           {-0.195, 0.15}};
constexpr GlycolFamilies kDiethyleneGlycol{number::diethylene_glycol,
                                           {0.105, 0.15},
                                           {-0.135, -0.15},
                                           {0.105, -0.5},
                                           {-0.135, 0.5},
                                           {0.125, 0.15},
                                           {-0.115, 0.15}};
constexpr GlycolFamilies kTriethyleneGlycol{number::triethylene_glycol,
                                            {0.125, 0.15},
                                            {-0.095, -0.15},
                                            {0.125, -0.5},
                                            {-0.095, 0.2},
                                            {0.12, 0.15},
                                            {-0.1, 0.15}};

// Other hydrocarbons, and every pseudo-component, lie between alkanes and alkyl benzenes by their hydrogen
// deficit: a benzene ring lacks eight.
bool rule_glycol_families(Pair p, const GlycolFamilies& row) {
  const Roles r = named_with_plain(p, row.glycol);
  if (!r) return false;

  const R8 CN = carbon_number(r.Y, comp.HCRAT(r.Y));
  const R8 R = over(1.0, CN);
  I4 kind = family::unknown;
  I4 subclass = family::unknown;
  I4 ignored = status::ok;
  if (!pseudo(r.Y)) SHCAO0(kind, subclass, comp.ICSTD(r.Y), comp.ICS(r.Y).view(), ignored);

  R8 teta0 = row.alkane0.at(R);
  R8 teta1 = row.alkane1.at(R);
  if (subclass == family::alkyl_benzene) {
    teta0 = row.benzene0.at(R);
    teta1 = row.benzene1.at(R);
  } else if (subclass == family::alkyl_cyclo_hexane) {
    teta0 = row.cyclohexane0.at(R);
    teta1 = row.cyclohexane1.at(R);
  } else if (subclass != family::alkane) {
    const R8 D = hydrogen_deficit(r.Y, CN);
    teta0 -= (teta0 - row.benzene0.at(R)) * D * 0.125;
    teta1 -= (teta1 - row.benzene1.at(R)) * D * 0.125;
  }
  set_symmetric(pairs.TETA0, p, teta0);
  set_asymmetric(pairs.TETA1, p, teta1);
  return true;
}

bool rule_ethylene_glycol(Pair p, I4&) { return rule_glycol_families(p, kEthyleneGlycol); }
bool rule_diethylene_glycol(Pair p, I4&) { return rule_glycol_families(p, kDiethyleneGlycol); }
bool rule_triethylene_glycol(Pair p, I4&) { return rule_glycol_families(p, kTriethyleneGlycol); }

// Terms a + b K + c M in Watson factor and molar mass.
struct WaterTerms {
  R8 a, b, c;
  [[nodiscard]] R8 at(R8 K, R8 M) const { return a + b * K + c * M; }
};

struct WaterClass {
  WaterTerms teta0, teta0t, teta1, teta1t;
};

constexpr WaterClass kWaterAromatic{{-2.956, 0.317, -0.00584},
                                    {0.00912, -0.000939, 0.0000146},
                                    {-1.1356, 0.1272, -0.00333},
                                    {0.00476, -0.000613, 0.0000118}};
constexpr WaterClass kWaterParaffinic{
    {0.0, 0.0, -0.00136}, {0.0001845, 0.0, 0.0000025}, {-0.6706, 0.0, 0.00139}, {0.0006626, 0.0, -0.0000024}};
constexpr WaterClass kWaterNaphthenic{{-0.255, 0.0, -0.000279},
                                      {0.00105, 0.0, -0.000000834},
                                      {-0.3904, 0.0, -0.000443},
                                      {0.0, 0.0, 0.00000207}};
constexpr WaterClass kWaterOther{{-0.7857, 0.0533, -0.000391},
                                 {0.00279, -0.000182, 0.0},
                                 {1.0686, -0.127, 0.000281},
                                 {-0.00278, 0.000249, 0.0}};

const WaterClass& water_class(I4 kind) {
  if (kind == family::aromatic) return kWaterAromatic;
  if (kind == family::parafinic) return kWaterParaffinic;
  if (kind == family::naphthene) return kWaterNaphthenic;
  return kWaterOther;
}

bool rule_water(Pair p, I4& NFAIL) {
  const Roles r = named_with_plain(p, number::water);
  if (!r) return false;
  I4 kind = family::unknown;
  I4 subclass = family::unknown;
  if (!pseudo(r.Y)) SHCAO0(kind, subclass, comp.ICSTD(r.Y), comp.ICS(r.Y).view(), NFAIL);
  if (NFAIL != status::ok) return true;

  const R8 K = watson(r.Y);
  const R8 M = comp.RMOLW(r.Y);
  const WaterClass& row = water_class(kind);
  set_symmetric(pairs.TETA0, p, row.teta0.at(K, M));
  set_symmetric(pairs.TETA0T, p, row.teta0t.at(K, M));
  set_asymmetric(pairs.TETA1, p, row.teta1.at(K, M));
  set_asymmetric(pairs.TETA1T, p, row.teta1t.at(K, M));
  return true;
}

// Salt is kept out of every other phase; parameters that the pair already has are left alone.
bool rule_salt(Pair p, I4&) {
  if (!is(p.A, number::salt) && !is(p.B, number::salt)) return false;
  const bool empty = pairs.TETA0(p.A, p.B) == 0.0 && pairs.TETA0T(p.A, p.B) == 0.0 &&
                     pairs.TETA1(p.A, p.B) == 0.0 && pairs.TETA1T(p.A, p.B) == 0.0;
  if (empty) set_symmetric(pairs.TETA0, p, 1.0);
  return true;
}

// Glycol ethers with a hydrocarbon of CN carbon atoms: the gases by value, from four carbon atoms on by formula.
R8 glycol_ether(I4 ether, R8 CN) {
  const bool mono = ether == number::monoglyme;
  const bool known = mono || ether == number::diglyme || ether == number::tetraglyme ||
                     ether == number::triglyme || ether == number::pentaglyme;
  if (!known) return 0.0;
  if (CN >= 4.0) {
    if (mono) return 0.0871 - 0.0048 * CN;
    if (ether == number::diglyme) return 0.2082 - 0.075 * std::log(CN);
    if (ether == number::tetraglyme) return 0.1569 - 0.0449 * std::log(CN);
    if (ether == number::triglyme) return 0.1377 - 0.0399 * std::log(CN);
    return 0.2056 - 0.0618 * std::log(CN);
  }
  if (std::fabs(CN - 1.0) <= 0.1) return 0.0495;
  if (std::fabs(CN - 2.0) <= 0.1) return 0.058;
  if (std::fabs(CN - 3.0) <= 0.1) return mono ? 0.0665 : 0.0639;
  return 0.0;
}

// Takes every pair with a plain hydrocarbon that is left; A is looked at first.
bool rule_glycol_ether(Pair p, I4&) {
  if (!plain(p.A) && !plain(p.B)) return false;
  const I4 IH = plain(p.A) ? p.A : p.B;
  const I4 I2 = plain(p.A) ? p.B : p.A;
  set_symmetric(pairs.TETA0, p, glycol_ether(comp.ICSTD(I2), carbon_from_mass(IH, comp.HCRAT(IH))));
  return true;
}

struct Solvent {
  I4 solvent;
  R8 teta0, teta0t;
};

constexpr Solvent kSolvents[] = {
    {number::monoglyme, -0.27613, 0.000438632},  {number::diglyme, -0.38794, 0.00051114},
    {number::tetraglyme, -0.48956, 0.000568851}, {number::triglyme, -0.4308, 0.000524167},
    {number::pentaglyme, -0.591, 0.000638897},   {number::methyldiethanolamine, -0.83, 0.002},
};

// Takes every pair with water that is left.
bool rule_water_solvent(Pair p, I4&) {
  if (!is(p.A, number::water) && !is(p.B, number::water)) return false;
  const I4 other = is(p.A, number::water) ? p.B : p.A;
  for (const Solvent& row : kSolvents) {
    if (!is(other, row.solvent)) continue;
    set_symmetric(pairs.TETA0, p, row.teta0);
    set_symmetric(pairs.TETA0T, p, row.teta0t);
  }
  return true;
}

using Rule = bool (*)(Pair p, I4& NFAIL);

constexpr Rule kRules[] = {
    rule_hydrogen,            // 1
    rule_carbon_dioxide,      // 2
    rule_helium,              // 3
    rule_nitrogen,            // 4
    rule_oxygen,              // 5
    rule_benzene,             // 6
    rule_methanol,            // 7
    rule_mercury_water,       // 8
    rule_mercury_methanol,    // 9
    rule_mercury_glycol,      // 10
    rule_mercury,             // 11
    rule_hydrogen_sulphide,   // 12
    rule_ethylene_glycol,     // 13
    rule_diethylene_glycol,   // 14
    rule_triethylene_glycol,  // 15
    rule_water,               // 16
    rule_salt,                // 17
    rule_glycol_ether,        // 18
    rule_water_solvent,       // 19
};

}  // namespace

// SSMBI0: estimate the equation-of-state parameters of a pair.
//
// In       A, B    I4  component indices
// Shared   reads comp; writes TETA0, TETA0T, TETA1, TETA1T of the pair, both orders; what a rule does not name
//          stays as it is
// Status   ok; failed when no rule applies; nonstandard when the hydrocarbon beside water is excluded from
//          classification
// Oddity   an asymmetry term is written into (A, B) with the same sign whichever of the two the rule names
void SSMBI0(const I4& A, const I4& B, I4& NFAIL) {
  NFAIL = status::ok;
  for (const Rule rule : kRules)
    if (rule({A, B}, NFAIL)) return;
  NFAIL = status::failed;
}

}  // namespace talix
