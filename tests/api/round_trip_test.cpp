// Round trips: a state at given temperature and pressure, found again from its fraction and from its enthalpy.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <string>

#include "fastprops/flash_record.h"
#include "support/flash_case.h"
#include "support/random_mixtures.h"

namespace talix {
namespace {

using test::FlashCase;

constexpr int kMixtures = 480;
constexpr int kStatesPerMixture = 3;
constexpr std::uint32_t kSeed = 20250117;
constexpr R4 kTemperatureBand = 0.01F;  // [K]
constexpr R4 kPressureBand = 1.0E-4F;   // of the pressure
constexpr R4 kFractionBand = 1.0E-4F;
constexpr R4 kTwinBand = 1.0E-5F;     // of the fraction at the other pressure of a retrograde gas
constexpr R4 kBesideTheTwin = 1.02F;  // start value on the state's own side, factor on its pressure

const char* pressure_bin(R8 P) {
  if (P < 10.0) return "0.5 to 10 bar";
  if (P < 30.0) return "10 to 30 bar";
  return P < 60.0 ? "30 to 60 bar" : "60 to 100 bar";
}

bool two_phases(const FlashCase& c) { return c.total(3) > kPhaseLimit && c.total(4) > kPhaseLimit; }

// Two phases of one composition are no answer: the isothermal flash reports them near and beyond critical points.
bool phases_differ(const FlashCase& c) {
  R4 difference = 0.0F;
  for (int i = 1; i <= c.nc(); ++i) difference = std::max(difference, std::fabs(c.SCAL(i, 6) - c.SCAL(i, 7)));
  return difference > 1.0E-3F;
}

bool same_state(const FlashCase& a, const FlashCase& b) {
  return std::fabs(a.T - b.T) <= kTemperatureBand && std::fabs(a.P - b.P) <= kPressureBand * a.P &&
         std::fabs(a.FRV - b.FRV) <= kFractionBand;
}

struct Leg {
  const char* name;
  I4 IFLASH;
  R4 away_T;  // added to the temperature where it is sought [K]
  R4 away_P;  // factor on the pressure where it is sought
};
constexpr Leg kLegs[] = {{"vfrac-t", flash_type::pressure_at_fraction, 0.0F, 0.7F},
                         {"vfrac-p", flash_type::temperature_at_fraction, 10.0F, 1.0F},
                         {"ph", flash_type::adiabatic, 10.0F, 1.0F}};
constexpr int kLegCount = 3;

FlashCase start_of(const Leg& leg, const FlashCase& state) {
  FlashCase c = state;
  c.IFLASH = leg.IFLASH;
  c.T += leg.away_T;
  c.P *= leg.away_P;
  if (leg.IFLASH == flash_type::adiabatic) c.FRV = 0.5F;
  return c;
}

// Why a leg that reported success is elsewhere: it may be an equilibrium too, with the fraction within 1e-3.
std::string cause_of(const FlashCase& result) {
  if (!phases_differ(result)) return "answer with two equal phases";
  FlashCase check = result;
  check.IFLASH = flash_type::isothermal;
  check.FRV = 1.0F;
  const bool equilibrium = check.run().empty() && std::fabs(check.FRV - result.FRV) <= 1.0E-3F;
  return equilibrium ? "another equilibrium of nearly this fraction" : "loose end without a text";
}

// The fraction of a lean gas passes an extremum between its two dew pressures: a fraction has one pressure on either
// side of it, and the search gives the one nearest to its start value. True when RESULT is the other pressure of STATE:
// an equilibrium with the very fraction, nearer to the start, and another fraction between the two.
bool is_retrograde_twin(const Leg& way, const FlashCase& state, const FlashCase& result) {
  if (way.IFLASH != flash_type::pressure_at_fraction || !phases_differ(result)) return false;
  const R4 start = start_of(way, state).P;
  if (std::fabs(result.P - start) >= std::fabs(state.P - start)) return false;
  FlashCase check = state;
  check.P = result.P;
  if (!check.run().empty() || !(std::fabs(check.FRV - state.FRV) <= kTwinBand)) return false;
  FlashCase between = state;
  between.P = std::sqrt(result.P * state.P);
  return between.run().empty() && two_phases(between) && std::fabs(between.FRV - state.FRV) > kFractionBand;
}

struct Count {
  int tried = 0, back = 0;
  [[nodiscard]] R8 percent() const { return tried > 0 ? 100.0 * back / tried : 100.0; }
};

class RoundTrips : public testing::Test {
 protected:
  std::map<std::string, Count> shares[kLegCount];
  std::map<std::string, int> causes;
  int states = 0;
  int twins = 0;  // legs that reached the other pressure of the fraction first

  // A leg that ends at the other pressure has to find the state from its own side.
  bool returns_beside_the_twin(const Leg& way, const FlashCase& state, const FlashCase& result) {
    if (!is_retrograde_twin(way, state, result)) return false;
    ++twins;
    FlashCase c = start_of(way, state);
    c.P = kBesideTheTwin * state.P;
    return c.run().empty() && same_state(state, c);
  }

  void travel(const FlashCase& state, const std::string& kind) {
    ++states;
    for (int leg = 0; leg < kLegCount; ++leg) {
      const Leg& way = kLegs[leg];
      FlashCase c = start_of(way, state);
      const std::string STR = c.run();
      Count& share = shares[leg][pressure_bin(static_cast<R8>(state.P))];
      ++share.tried;
      if (STR.empty() && (same_state(state, c) || returns_beside_the_twin(way, state, c))) {
        ++share.back;
        continue;
      }
      const std::string cause = STR.empty() ? cause_of(c) : STR;
      ++causes[std::string(pressure_bin(static_cast<R8>(state.P))) + ", " + way.name + ": " + cause];
      // The enthalpy search has no loose ends below 30 bar.
      if (way.IFLASH == flash_type::adiabatic && state.P < 30.0F && STR.empty()) {
        ADD_FAILURE() << kind << " T " << state.T << " P " << state.P << " came back at " << c.T;
      }
    }
  }

  void travel_all();
};

void RoundTrips::travel_all() {
  test::MixtureSource source(kSeed);
  std::map<std::string, int> kinds;
  for (int k = 0; k < kMixtures; ++k) {
    const FlashCase mixture = source.next();
    test::load(mixture);
    ASSERT_GE(mixture.nc(), 2);
    ASSERT_LE(mixture.nc(), 15);
    bool travelled = false;
    for (int j = 0; j < kStatesPerMixture; ++j) {
      const R8 P = std::exp(source.uniform(std::log(0.5), std::log(100.0)));
      FlashCase state = mixture;
      state.P = static_cast<R4>(P);
      state.T = static_cast<R4>(test::temperature_between(mixture, P, source.uniform(0.02, 0.98)) - 273.15);
      if (!state.run().empty() || !two_phases(state) || !phases_differ(state)) continue;
      travel(state, source.kind());
      travelled = true;
    }
    if (travelled) ++kinds[source.kind()];
  }

  int mixtures = 0;
  std::printf("%d two-phase states:", states);
  for (const auto& [kind, number] : kinds) {
    std::printf(" %s %d;", kind.c_str(), number);
    mixtures += number;
    EXPECT_GE(number, 20) << kind;
  }
  std::printf(" %d mixtures\n%-16s %8s %10s %10s %10s\n", mixtures, "", "states", kLegs[0].name,
              kLegs[1].name, kLegs[2].name);
  for (const auto& [bin, count] : shares[0])
    std::printf("%-16s %8d %9.2f%% %9.2f%% %9.2f%%\n", bin.c_str(), count.tried, count.percent(),
                shares[1][bin].percent(), shares[2][bin].percent());
  for (const auto& [cause, number] : causes) std::printf("  %4d %s\n", number, cause.c_str());

  EXPECT_GE(mixtures, 200);
}

TEST_F(RoundTrips, ComeBackToTheirStateWhateverThePressure) {
  test::fresh_flashes_alone();
  test::verify(1);
  travel_all();
  EXPECT_TRUE(causes.empty());
  // A lean gas at 72.7 C has the fraction of 78.52 bar at 67.23 bar too, which is nearer to the start at 54.97 bar.
  EXPECT_EQ(twins, 1);
  for (const auto& legs : shares)
    for (const auto& [bin, count] : legs) EXPECT_EQ(count.back, count.tried) << bin;
}

TEST_F(RoundTrips, ComeBackBelowThirtyBarByTheFlashesAlone) {
  test::fresh_flashes_alone();
  travel_all();
  for (const auto& legs : shares)
    for (const char* bin : {"0.5 to 10 bar", "10 to 30 bar"}) EXPECT_GE(legs.at(bin).percent(), 97.0) << bin;
}

TEST_F(RoundTrips, OnePhaseStatesComeBackFromTheirEnthalpy) {
  test::fresh_flashes_alone();
  test::verify(1);
  test::MixtureSource source(kSeed + 1);
  int tried = 0, back = 0;
  for (int k = 0; k < 200; ++k) {
    const FlashCase mixture = source.next();
    test::load(mixture);
    const R8 P = std::exp(source.uniform(std::log(0.5), std::log(30.0)));
    const R8 share = k % 2 == 0 ? source.uniform(1.2, 1.6) : source.uniform(-0.4, -0.1);
    FlashCase state = mixture;
    state.P = static_cast<R4>(P);
    state.T = static_cast<R4>(test::temperature_between(mixture, P, share) - 273.15);
    if (!(state.T > -200.0F) || !state.run().empty() || two_phases(state)) continue;
    ++tried;
    FlashCase c = start_of(kLegs[2], state);
    if (c.run().empty() && same_state(state, c)) ++back;
  }
  std::printf("%d of %d one-phase states came back from their enthalpy\n", back, tried);
  EXPECT_GE(tried, 100);
  EXPECT_EQ(back, tried);
}

}  // namespace
}  // namespace talix
