// Derivative chains against finite differences and against each other, over mixtures, states and cubics, with
// pair parameters of every kind. Temperatures keep every component outside Tc/T 0.909 to 1.04, where the
// tabulated derivatives of a and b are not the slopes of the values.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "database/component_record.h"
#include "engine/codes.h"
#include "eos/cubic_record.h"
#include "support/eos_difference.h"
#include "support/eos_fixture.h"

namespace talix::test {
namespace {

constexpr R8 kTolerance = 1E-6;

struct Mixture {
  const char* name;
  std::vector<R8> n;
};

const std::vector<Mixture>& mixtures() {
  static const std::vector<Mixture> list{
      {"light hydrocarbons", {0.7, 0.2, 0.1}},
      {"oil", {0.3, 0.1, 0.1, 0.5}},
      {"sour wet", {0.5, 0.1, 0.05, 0.05, 0.2, 0.1}},
      {"wide", {0.4, 0.1, 0.05, 0.1, 0.1, 0.15, 0.05, 0.05}},
      {"ten", {0.3, 0.1, 0.05, 0.1, 0.1, 0.1, 0.05, 0.05, 0.08, 0.07}},
  };
  return list;
}

struct State {
  int slot;
  I4 type;
  R8 T, P;
  std::vector<R8> n;
};

std::string describe(const State& s) {
  return "slot " + std::to_string(s.slot) + " type " + std::to_string(s.type) + " T " + std::to_string(s.T) +
         " P " + std::to_string(s.P) + " components " + std::to_string(s.n.size());
}

// Runs a state with every result.
void run(const State& s, Call& call) {
  call.composition(s.n);
  call.want_all();
  call.args.MODEL = s.slot;
  call.args.IPHASE = s.type;
  call.args.T = s.T;
  call.args.P = s.P;
  call.run();
}

// Results that are differenced, with the whole amount of H and S for the partial molar values.
struct Sample {
  R8 Z, V, H, S, KAPT;  // H times T, that is H/R [K]
  R8 NH, NS;
  std::vector<R8> FUG;
  bool same;  // still on the branch of the base state
};

class Derivatives : public ::testing::Test {
 protected:
  void SetUp() override {
    reset_fixture();
    set_pair_parameters();
  }

  Sample sample(const State& s) {
    run(s, work_);
    const EosArgs& a = work_.args;
    R8 N = 0.0;
    for (const R8 n : s.n) N += n;
    Sample r{.Z = a.Z,
             .V = a.V,
             .H = a.H * a.T,
             .S = a.S,
             .KAPT = a.KAPT,
             .NH = N * a.H,
             .NS = N * a.S,
             .FUG = {},
             .same = a.ICODE == status::ok && a.IPHRTN == base_.args.IPHRTN &&
                     (a.ZOTHER == 0.0) == (base_.args.ZOTHER == 0.0)};
    for (int i = 1; i <= a.NCOMP; ++i) r.FUG.push_back(work_.FUG(i));
    continuous_ = continuous_ && r.same;
    return r;
  }

  // The slope of every result along one variable, set through CHANGE(state, value).
  template <class CHANGE>
  Sample slopes(const State& s, R8 at, R8 step, CHANGE&& change) {
    std::vector<Sample> samples;
    for (int k = -4; k <= 4; ++k) {
      State moved = s;
      change(moved, at + k * step);
      samples.push_back(sample(moved));
    }
    const auto derive = [&](auto&& field) {
      return slope(
          [&](R8 x) { return field(samples[static_cast<std::size_t>(std::lround((x - at) / step) + 4)]); },
          at, step);
    };
    Sample d{.Z = derive([](const Sample& r) { return r.Z; }),
             .V = derive([](const Sample& r) { return r.V; }),
             .H = derive([](const Sample& r) { return r.H; }),
             .S = derive([](const Sample& r) { return r.S; }),
             .KAPT = derive([](const Sample& r) { return r.KAPT; }),
             .NH = derive([](const Sample& r) { return r.NH; }),
             .NS = derive([](const Sample& r) { return r.NS; }),
             .FUG = {},
             .same = true};
    for (std::size_t i = 0; i < s.n.size(); ++i)
      d.FUG.push_back(derive([i](const Sample& r) { return r.FUG[i]; }));
    return d;
  }

  static void near(R8 value, R8 expected, R8 scale, const char* name, const State& s) {
    EXPECT_NEAR(value, expected, kTolerance * std::max(std::abs(expected), scale))
        << name << " " << describe(s);
  }

  // Every state of the list on which the base call succeeds.
  template <class CHECK>
  int for_each_state(CHECK&& check) {
    int checked = 0;
    for (const Mixture& mixture : mixtures())
      for (const int slot : {kCubic, kEqualC, kNegativeC})
        for (const R8 T : {160.0, 250.0, 345.0, 475.0, 560.0})
          for (const R8 P : {1E4, 1E6, 6E6, 3E7, 1E8})
            for (const I4 type : {phase::vapour, phase::liquid}) {
              const State s{.slot = slot, .type = type, .T = T, .P = P, .n = mixture.n};
              run(s, base_);
              if (base_.args.ICODE != status::ok) continue;
              continuous_ = true;
              if (check(s)) ++checked;
              if (HasFailure()) return checked;
            }
    return checked;
  }

  Call base_, work_;
  bool continuous_ = true;
};

TEST_F(Derivatives, TemperatureChains) {
  const int checked = for_each_state([this](const State& s) {
    const Sample d = slopes(s, s.T, 5E-4 * s.T, [](State& m, R8 T) { m.T = T; });
    if (!continuous_) return false;
    const EosArgs& a = base_.args;
    near(a.ZT, s.T * d.Z, a.Z, "ZT", s);
    near(a.HT, d.H, 1.0, "HT", s);
    near(a.ST, s.T * d.S, 1.0, "ST", s);
    near(a.CP, kGasConstant * d.H, 1.0, "CP", s);
    near(a.BETA * s.T, s.T * d.V / a.V, 0.01, "BETA", s);
    near(a.DKAPT * s.T, s.T * d.KAPT, a.KAPT, "DKAPT", s);
    for (std::size_t i = 0; i < s.n.size(); ++i)
      near(base_.FUGTL(static_cast<int>(i) + 1), s.T * d.FUG[i], 1.0, "FUGTL", s);
    return true;
  });
  EXPECT_GT(checked, 650);
}

TEST_F(Derivatives, PressureChains) {
  const int checked = for_each_state([this](const State& s) {
    const Sample d = slopes(s, s.P, 1E-3 * s.P, [](State& m, R8 P) { m.P = P; });
    if (!continuous_) return false;
    const EosArgs& a = base_.args;
    near(a.ZP, s.P * d.Z, a.Z, "ZP", s);
    near(a.HP, s.P * d.H / s.T, 0.1, "HP", s);
    near(a.SP, s.P * d.S, 0.1, "SP", s);
    near(a.KAPT * s.P, -s.P * d.V / a.V, 1E-2, "KAPT", s);
    for (std::size_t i = 0; i < s.n.size(); ++i)
      near(base_.FUGPL(static_cast<int>(i) + 1), s.P * d.FUG[i], 0.1, "FUGPL", s);
    return true;
  });
  EXPECT_GT(checked, 650);
}

TEST_F(Derivatives, CompositionChains) {
  const int checked = for_each_state([this](const State& s) {
    for (std::size_t j = 0; j < s.n.size(); ++j) {
      const Sample d = slopes(s, s.n[j], 1E-3, [j](State& m, R8 n) { m.n[j] = n; });
      if (!continuous_) return false;
      const int J = static_cast<int>(j) + 1;
      near(base_.ZN(J), d.Z, base_.args.Z, "ZN", s);
      near(base_.HNR(J), d.NH, 1.0, "HNR", s);
      near(base_.SNR(J), d.NS, 1.0, "SNR", s);
      for (std::size_t i = 0; i < s.n.size(); ++i)
        near(base_.FUGN(static_cast<int>(i) + 1, J), d.FUG[i], 1.0, "FUGN", s);
    }
    return true;
  });
  EXPECT_GT(checked, 600);
}

TEST_F(Derivatives, GibbsDuhemEulerAndSymmetry) {
  const int checked = for_each_state([this](const State& s) {
    const EosArgs& a = base_.args;
    const int count = a.NCOMP;
    R8 total = 0.0;
    for (const R8 n : s.n) total += n;
    const auto x = [&](int i) { return s.n[static_cast<std::size_t>(i - 1)] / total; };
    R8 ln_phi = 0.0, dT = 0.0, dP = 0.0, ZN = 0.0, H = 0.0, S = 0.0;
    for (int i = 1; i <= count; ++i) {
      ln_phi += x(i) * base_.FUG(i);
      dT += x(i) * base_.FUGTL(i);
      dP += x(i) * base_.FUGPL(i);
      ZN += x(i) * base_.ZN(i);
      H += x(i) * base_.HNR(i);
      S += x(i) * base_.SNR(i);
      R8 row = 0.0;
      R8 size = 1.0;
      for (int j = 1; j <= count; ++j) {
        EXPECT_EQ(base_.FUGN(i, j), base_.FUGN(j, i));
        row += x(j) * base_.FUGN(i, j);
        size += std::abs(x(j) * base_.FUGN(i, j));
      }
      EXPECT_NEAR(row, 0.0, 1E-11 * size) << "Gibbs-Duhem " << describe(s);
    }
    EXPECT_NEAR(ZN, 0.0, 1E-10 * (1.0 + a.Z)) << describe(s);
    EXPECT_NEAR(dP, a.Z - 1.0, 1E-10 * (1.0 + a.Z)) << describe(s);
    EXPECT_NEAR(H, a.H, 1E-9 * (1.0 + std::abs(a.H))) << describe(s);
    EXPECT_NEAR(S, a.S, 1E-9 * (1.0 + std::abs(a.S))) << describe(s);

    Call residual;
    residual.args.IHTYPE = thermal::residual;
    run(s, residual);
    EXPECT_NEAR(residual.args.H - residual.args.S, ln_phi, 1E-9 * (1.0 + std::abs(ln_phi))) << describe(s);
    EXPECT_NEAR(residual.args.H, -dT, 1E-9 * (1.0 + std::abs(dT))) << describe(s);
    return true;
  });
  EXPECT_GT(checked, 700);
}

TEST_F(Derivatives, ThermodynamicIdentities) {
  const int checked = for_each_state([this](const State& s) {
    const EosArgs& a = base_.args;
    const R8 R = kGasConstant;
    // Maxwell: (dS/dP)_T = -(dV/dT)_P; enthalpy: (dH/dP)_T = V - T (dV/dT)_P.
    near(a.SP, -s.P * a.V * a.BETA / R, 1E-2, "Maxwell", s);
    near(a.HP, s.P * a.V * (1.0 - s.T * a.BETA) / (R * s.T), 1E-2, "HP", s);
    near(a.DPDTV, a.BETA / a.KAPT, 1.0, "DPDTV", s);
    near(a.CP - a.CV, s.T * a.V * a.BETA * a.BETA / a.KAPT, 1E-2, "CP - CV", s);
    near(a.KAPS * a.CP, a.KAPT * a.CV, 1E-12, "KAPS", s);
    near(a.DPDTS * s.T * a.V * a.BETA, a.CP, 1E-2, "DPDTS", s);
    near(a.JTC * s.P / s.T * a.HT, -a.HP, 1E-2, "JTC", s);
    R8 M = 0.0;
    R8 total = 0.0;
    for (std::size_t i = 0; i < s.n.size(); ++i) {
      M += s.n[i] * comp.RMOLW(static_cast<int>(i) + 1) / 1000.0;
      total += s.n[i];
    }
    M /= total;
    if (a.KAPS > 0.0) {
      near(a.WSOUND * a.WSOUND * M * a.KAPS, a.V, 1E-9, "WSOUND", s);
    } else {
      EXPECT_EQ(a.WSOUND, 0.0);
    }
    near(a.ZT + a.Z, s.T * a.BETA * a.Z, 1E-6, "ZT", s);
    near(a.Z - a.ZP, s.P * a.KAPT * a.Z, 1E-6, "ZP", s);
    return true;
  });
  EXPECT_GT(checked, 700);
}

TEST_F(Derivatives, InsideTheZonesHeatCapacityAndEnthalpyDisagreeByTheStatedMismatch) {
  // Ethane at Tc/T 0.97: the tabulated slope of a lies on a line between the ends of the zone.
  State s{.slot = kCubic, .type = phase::vapour, .T = comp.TC(kEthane) / 0.97, .P = 5E6, .n = {1E-9, 1.0}};
  run(s, base_);
  ASSERT_EQ(base_.args.ICODE, status::ok);
  const Sample d = slopes(s, s.T, 1E-4 * s.T, [](State& m, R8 T) { m.T = T; });
  ASSERT_TRUE(continuous_);
  // Enthalpy over RT from the slope of ln phi, and the one that is returned.
  const R8 from_slope = -s.T * d.FUG[1];
  base_.args.IHTYPE = thermal::residual;
  run(s, base_);
  EXPECT_GT(std::abs(base_.args.H - from_slope), 1E-3);
  // The mismatch is that of the slopes of a and b alone.
  const R8 POVERT = s.P / s.T;
  const R8 A = pures.ARK(kEthane) * POVERT;
  const R8 B = pures.BRK(kEthane) * POVERT;
  const R8 z = base_.args.Z;
  const R8 FA = POVERT * std::log(z / (z + B)) / B;
  const R8 FB = POVERT * (1.0 / (z - B) - A / B * (std::log(z / (z + B)) / B + 1.0 / (z + B)));
  const R8 D1A = pures.D1ADT(kEthane);
  const R8 D1B = pures.D1BDT(kEthane);
  const auto table = [&](PureTables::Each<R8>& values) {
    return s.T * slope(
                     [&](R8 T) {
                       State moved = s;
                       moved.T = T;
                       run(moved, work_);
                       return values(kEthane);
                     },
                     s.T, 1E-4 * s.T);
  };
  const R8 slope_a = table(pures.ARK);
  const R8 slope_b = table(pures.BRK);
  EXPECT_NEAR(base_.args.H - from_slope, -FA * (D1A - slope_a) - FB * (D1B - slope_b), 1E-6);
}

}  // namespace
}  // namespace talix::test
