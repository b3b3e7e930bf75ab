// Viscosity of the corresponding-states method: TRPVIS, DELHSV, ENSKOG.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/dense_fluid_cases.h"

namespace talix::test {
namespace {

class DenseFluidViscosity : public ::testing::Test {
 protected:
  void SetUp() override {
    reset_dense_fluid_record();
    set_dense_fluid_constants();
    // The reference fluid itself.
    dense_mixture.FMIX = dense_mixture.HMIX = dense_mixture.F(1) = dense_mixture.H(1) = 1.0F;
    dense_mixture.MWETA = dense_mixture.MWLAM = mass(1) = dense_fluid.MWREF;
    dense_mixture.ZCMIX = dense_fluid.ZCREF;
    x(1) = 1.0F;
  }
  R4 reference(R4 RHO0, R4 T) const { return TRPVIS(RHO0, T, x, 1, mass); }
  DenseVec x{};
  DenseVec mass{};
};

struct Branches {
  double dilute, warm, cold;  // [micropoise]
};

// The viscosity of the reference fluid in 64-bit reals: dilute with first density term, and the two excess branches.
Branches branches(double RHO0, double T) {
  const double d = 0.001 * RHO0 * 16.04;
  const double ts = T / 148.6;
  const double omega =
      1.16145 / std::pow(ts, 0.14874) + 0.52487 * std::exp(-0.7732 * ts) + 2.16178 * std::exp(-2.43787 * ts);
  const double l = 1.4 - std::log(T / 168.0);
  const double g = 1.696986 - 0.13337235 * l * l;
  const double r1 = std::pow(d, 0.1);
  const double r2 = (d / 0.1628 - 1.0) * std::sqrt(d);
  const auto excess = [&](double e1, double e2, double e3, double e4, double e5, double e6, double e7) {
    const double t0 = e1 + e2 / T;
    const double t2 = e3 + e4 / std::pow(T, 1.5);
    const double t3 = e5 + (e6 + e7 / T) / T;
    return std::exp(t0 + t2 * r1 + t3 * r2) - std::exp(t0);
  };
  return {g * d + 7.67035 * std::sqrt(T) / omega,
          excess(-10.2391605, 174.228226, 17.4605465, -2847.63281, 0.133685023, 142.072403, 5002.06689),
          excess(-9.74602, 44.6055, 18.0834, -4126.66, 0.976544, 81.8134, 15649.9)};
}

TEST_F(DenseFluidViscosity, ColdBranchIsLeftOutAboveTheBlend) {
  for (const R4 T0 : {130.66F, 140.0F, 300.0F}) {
    const Branches b = branches(25.0, static_cast<double>(T0));
    EXPECT_NEAR(static_cast<double>(reference(25.0F, T0)) / (b.dilute + b.warm), 1.0, 2E-05) << T0;
    EXPECT_GT(std::abs(b.cold / b.warm - 1.0), 0.03) << "the branches differ enough for the test to tell";
  }
}

TEST_F(DenseFluidViscosity, BranchesMeetHalfwayAtTheTriplePointOfMethane) {
  const Branches b = branches(28.0, widen(90.65F));
  EXPECT_NEAR(static_cast<double>(reference(28.0F, 90.65F)) / (b.dilute + 0.5 * (b.warm + b.cold)), 1.0,
              3E-05);
}

TEST_F(DenseFluidViscosity, ColdBranchStandsAloneBelowTheBlend) {
  for (const R4 T0 : {50.0F, 50.64F, 60.0F}) {
    const Branches b = branches(20.0, static_cast<double>(T0));
    EXPECT_NEAR(static_cast<double>(reference(20.0F, T0)) / (b.dilute + b.cold), 1.0, 5E-05) << T0;
  }
}

TEST_F(DenseFluidViscosity, WeightIsTheHyperbolicTangent) {
  for (const R4 T0 : {89.0F, 90.0F, 92.0F}) {
    const Branches b = branches(28.0, static_cast<double>(T0));
    const double w1 = 0.5 * (1.0 + std::tanh(static_cast<double>(T0) - 90.65));
    EXPECT_NEAR(static_cast<double>(reference(28.0F, T0)) / (b.dilute + w1 * b.warm + (1.0 - w1) * b.cold),
                1.0, 3E-05);
  }
}

TEST_F(DenseFluidViscosity, IsContinuousWhereTheBlendEnds) {
  for (const R4 T0 : {50.65F, 84.9F, 96.4F, 130.65F}) {
    const R4 below = reference(26.0F, T0 - 0.01F);
    const R4 above = reference(26.0F, T0 + 0.01F);
    EXPECT_NEAR(above / below, 1.0F, 3E-03F) << T0;
  }
}

TEST_F(DenseFluidViscosity, PositiveSlopeLeavesThePlainRatio) {
  dense_mixture.ZCMIX = 0.27F;
  dense_mixture.DFDT = 0.0F;
  const R4 plain = reference(15.0F, 250.0F);
  dense_mixture.DFDT = 0.01F;
  EXPECT_TRUE(same_bits(reference(15.0F, 250.0F), plain));
  dense_mixture.DFDT = -0.001F;
  EXPECT_GT(reference(15.0F, 250.0F), plain);
}

TEST_F(DenseFluidViscosity, CorrectionActsOnTheExcessUnderASquareRoot) {
  dense_mixture.ZCMIX = 0.25F;
  dense_mixture.DFDT = -0.001F;
  const Branches b = branches(22.0, 250.0);
  const double correction = std::sqrt((1.0 + 1.5 * 250.0 * 0.001) * 0.25 / widen(0.287046F));
  EXPECT_NEAR(static_cast<double>(reference(22.0F, 250.0F)) / (b.dilute + b.warm * correction), 1.0, 2E-05);
}

TEST_F(DenseFluidViscosity, LimitOfNoDensityIsTheDiluteGas) {
  const double dilute = branches(0.0, 300.0).dilute;
  EXPECT_NEAR(static_cast<double>(reference(0.0F, 300.0F)) / dilute, 1.0, 1E-05);
  const DenseCase c = dense_case({{"methane", 0.5F}, {"n-octane", 0.5F}}, 400.0F, 1E-14F);
  const R4 RHO0 = run_DCST(c);
  const R4 thin = TRPVIS(RHO0, c.T, c.X, c.N, c.CMW);
  for (const R4 density : {1E-18F, 1E-25F, 1E-42F, 0.0F})
    EXPECT_NEAR(TRPVIS(density, c.T, c.X, c.N, c.CMW) / thin, 1.0F, 2E-06F) << density;
}

TEST_F(DenseFluidViscosity, NotANumberComesThrough) {
  EXPECT_TRUE(std::isnan(reference(std::numeric_limits<R4>::quiet_NaN(), 300.0F)));
  EXPECT_TRUE(std::isnan(reference(1.0F, std::numeric_limits<R4>::quiet_NaN())));
}

// Hard spheres.

TEST_F(DenseFluidViscosity, PureFluidHasNoMixtureCorrection) {
  for (const DenseComponent& d : kDenseComponents) {
    const DenseCase c = dense_case({{d.name, 1.0F}}, 1.3F * d.TC, 1.5F / d.VC);
    const R4 RHO0 = run_DCST(c);
    EXPECT_LT(std::abs(DELHSV(RHO0, c.T, c.X, c.N, c.CMW)), 1E-05F * TRPVIS(RHO0, c.T, c.X, c.N, c.CMW))
        << d.name;
  }
}

TEST_F(DenseFluidViscosity, EqualSpheresHaveNoMixtureCorrection) {
  const DenseCase c = dense_case({{"ethane", 0.2F}, {"ethane", 0.5F}, {"ethane", 0.3F}}, 350.0F, 9.0F);
  const R4 RHO0 = run_DCST(c);
  EXPECT_NEAR(DELHSV(RHO0, c.T, c.X, c.N, c.CMW), 0.0F, 1E-05F * TRPVIS(RHO0, c.T, c.X, c.N, c.CMW));
}

TEST_F(DenseFluidViscosity, AbsentComponentCountsWithATraceInTheMixtureCorrection) {
  DenseCase c = dense_case({{"methane", 0.4F}, {"n-decane", 0.6F}, {"hydrogen", 0.0F}}, 420.0F, 3.0F);
  const R4 RHO0 = run_DCST(c);
  const R4 absent = DELHSV(RHO0, c.T, c.X, c.N, c.CMW);
  c.X(3) = 1E-06F;
  EXPECT_TRUE(same_bits(DELHSV(RHO0, c.T, c.X, c.N, c.CMW), absent));
  c.X(3) = std::numeric_limits<R4>::quiet_NaN();
  EXPECT_TRUE(same_bits(DELHSV(RHO0, c.T, c.X, c.N, c.CMW), absent));
  c.X(3) = 1E-03F;
  EXPECT_FALSE(same_bits(DELHSV(RHO0, c.T, c.X, c.N, c.CMW), absent));
}

TEST_F(DenseFluidViscosity, MixtureCorrectionOfNoComponentsIsZero) {
  EXPECT_EQ(DELHSV(1.0F, 300.0F, x, 0, mass), 0.0F);
}

TEST_F(DenseFluidViscosity, MixtureCorrectionTakesEitherSign) {
  const auto correction = [](R4 RHO) {
    const DenseCase c = dense_case({{"methane", 0.888889F}, {"ethane", 0.111111F}}, 120.0F, RHO);
    return DELHSV(run_DCST(c), c.T, c.X, c.N, c.CMW);
  };
  EXPECT_LT(correction(0.04F), 0.0F);
  EXPECT_GT(correction(25.0F), 0.0F);
}

TEST_F(DenseFluidViscosity, MassesOfTheCallerStayAsTheyAre) {
  const DenseCase c = dense_case({{"methane", 0.4F}, {"n-decane", 0.6F}}, 420.0F, 3.0F);
  const DenseVec before = c.CMW;
  DELHSV(run_DCST(c), c.T, c.X, c.N, c.CMW);
  for (int i = 1; i <= c.N; ++i) EXPECT_TRUE(same_bits(c.CMW(i), before(i)));
}

TEST_F(DenseFluidViscosity, PureHardSpheresFollowEnskog) {
  DenseMat sigma{};
  DenseVec one{};
  sigma(1, 1) = one(1) = 1.0F;
  for (const double packing : {1E-06, 0.05, 0.2, 0.45}) {
    R4 VIS = 0.0F;
    ENSKOG(1, static_cast<R4>(packing / 0.52359879), sigma, one, one, VIS);
    // Contact value of Percus and Yevick for one component; volume b rho = 4 packing.
    const double e = 1.0 - packing;
    const double contact = (e * packing * 1.5 + e * e + 0.5 * packing * packing) / (e * e * e);
    const double y = 4.0 * packing * contact;
    const double expected =
        (1.0 + 0.4 * y) * (1.0 + 0.4 * y) / contact + 8.0 / (25.0 * 0.52359879) * 4.0 * packing * y;
    EXPECT_NEAR(static_cast<double>(VIS) / expected, 1.0, 1E-05) << packing;
  }
}

TEST_F(DenseFluidViscosity, HardSpheresDoNotNoticeHowAComponentIsCut) {
  const auto cut = [](const std::vector<R4>& fractions, const std::vector<R4>& diameter,
                      const std::vector<R4>& weight) {
    DenseMat sigma{};
    DenseVec share{};
    DenseVec masses{};
    const int n = static_cast<int>(fractions.size());
    for (int i = 1; i <= n; ++i) {
      share(i) = fractions[static_cast<std::size_t>(i - 1)];
      masses(i) = weight[static_cast<std::size_t>(i - 1)];
      for (int j = 1; j <= n; ++j)
        sigma(i, j) =
            0.5F * (diameter[static_cast<std::size_t>(i - 1)] + diameter[static_cast<std::size_t>(j - 1)]);
    }
    R4 VIS = 0.0F;
    ENSKOG(n, 0.3F, sigma, masses, share, VIS);
    return VIS;
  };
  const R4 two = cut({0.7F, 0.3F}, {1.0F, 1.4F}, {1.0F, 3.0F});
  EXPECT_NEAR(cut({0.2F, 0.3F, 0.5F}, {1.0F, 1.4F, 1.0F}, {1.0F, 3.0F, 1.0F}) / two, 1.0F, 3E-06F);
  EXPECT_NEAR(cut({0.3F, 0.7F}, {1.4F, 1.0F}, {3.0F, 1.0F}) / two, 1.0F, 3E-06F);
  EXPECT_NEAR(cut({0.25F, 0.25F, 0.25F, 0.25F}, {1.0F, 1.0F, 1.0F, 1.0F}, {1.0F, 1.0F, 1.0F, 1.0F}) /
                  cut({1.0F}, {1.0F}, {1.0F}),
              1.0F, 3E-06F);
}

// Limits of the whole.

TEST_F(DenseFluidViscosity, InfiniteDilutionIsThePureFluid) {
  for (const char* solute : {"hydrogen", "n-decane", "water"}) {
    const R4 pure = dense_answer(dense_case({{"propane", 1.0F}}, 400.0F, 2.0F)).viscosity;
    const R4 trace = 1E-06F;
    for (const bool last : {true, false}) {
      std::vector<DenseShare> shares{{"propane", 1.0F - trace}, {solute, trace}};
      if (!last) std::swap(shares[0], shares[1]);
      EXPECT_NEAR(dense_answer(dense_case(shares, 400.0F, 2.0F)).viscosity / pure, 1.0F, 3E-05F) << solute;
    }
  }
}

TEST_F(DenseFluidViscosity, ZeroFractionsLeaveOnlyTheirTraceInTheMixtureCorrection) {
  const R4 pure = dense_answer(dense_case({{"propane", 1.0F}}, 400.0F, 2.0F)).viscosity;
  const DenseCase c =
      dense_case({{"methane", 0.0F}, {"propane", 1.0F}, {"n-octane", 0.0F}, {"water", 0.0F}}, 400.0F, 2.0F);
  const R4 RHO0 = run_DCST(c);
  const R4 correction = DELHSV(RHO0, c.T, c.X, c.N, c.CMW);
  const R4 mixture = TRPVIS(RHO0, c.T, c.X, c.N, c.CMW);
  EXPECT_NEAR((mixture - correction) / pure, 1.0F, 2E-06F);
  EXPECT_NE(correction, 0.0F);
  EXPECT_LT(std::abs(correction), 3E-05F * pure);
}

TEST_F(DenseFluidViscosity, OrderOfTheComponentsChangesRoundingAtMost) {
  const R4 one = dense_answer(dense_case({{"methane", 0.5F}, {"carbon dioxide", 0.3F}, {"n-hexane", 0.2F}},
                                         350.0F, 4.0F))
                     .viscosity;
  const R4 other = dense_answer(dense_case({{"n-hexane", 0.2F}, {"methane", 0.5F}, {"carbon dioxide", 0.3F}},
                                           350.0F, 4.0F))
                       .viscosity;
  EXPECT_NEAR(other / one, 1.0F, 1E-05F);
}

TEST_F(DenseFluidViscosity, IsContinuousInTemperatureAndDensity) {
  const auto at = [](R4 T, R4 RHO) {
    return dense_answer(dense_case({{"methane", 0.8F}, {"propane", 0.15F}, {"nitrogen", 0.05F}}, T, RHO))
        .viscosity;
  };
  for (R4 T = 120.0F; T < 600.0F; T += 0.5F) EXPECT_NEAR(at(T + 0.5F, 3.0F) / at(T, 3.0F), 1.0F, 0.005F) << T;
  for (R4 RHO = 0.05F; RHO < 22.0F; RHO *= 1.005F)
    EXPECT_NEAR(at(300.0F, 1.005F * RHO) / at(300.0F, RHO), 1.0F, 0.02F) << RHO;
}

}  // namespace
}  // namespace talix::test
