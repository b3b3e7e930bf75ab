// Mixing rules: SSMMIX, SSMMR1, SSMMR2, SSMMR8, SSMMR9.
#include "eos/ssm_mixing.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "database/component_record.h"
#include "database/pair_record.h"
#include "engine/codes.h"
#include "engine/model_record.h"
#include "engine/setup_record.h"
#include "eos/cubic_record.h"
#include "eos/eos_caches.h"
#include "eos/ses_pure_parameters.h"
#include "eos/ssm_mixing_quadratic.h"
#include "support/eos_difference.h"
#include "support/eos_fixture.h"

namespace talix::test {
namespace {

using namespace q_index;

constexpr int kCount = 6;
constexpr R8 kT = 260.0;

Vec<bool, 6> all_options() {
  Vec<bool, 6> options{};
  options.fill(true);
  return options;
}

class Mixing : public ::testing::Test {
 protected:
  void SetUp() override {
    reset_fixture();
    set_pair_parameters();
    for (int i = 1; i <= kCount; ++i) x(i) = 0.05 * i - 0.0083333333333333;
    mix(kT);
  }
  void mix(R8 T, int first = 1, int last = kCount) {
    I4 code = 0;
    SESPC0(T, kCubic, all_options(), first, last, code);
    ASSERT_EQ(code, status::ok);
    SSMMIX(T, x, m, first, last, all_options(), kCubic);
  }

  // Family term by its definition, with dense sums over all pairs.
  template <class PRODUCT>
  R8 family_term(const CompVec& fractions, PRODUCT&& product) const {
    const auto family = [](int i) { return comp.ISOFAM(i); };
    R8 total = 0.0;
    for (int i = 1; i <= kCount; ++i) {
      for (int t = 1; t <= 3; ++t) {
        R8 QQ = 0.0, XS = 0.0, XT = 0.0, RR = 0.0;
        for (int k = 1; k <= kCount; ++k) {
          if (family(k) == family(i)) XS += fractions(k);
          if (family(k) == t) XT += fractions(k);
          if (family(k) == t && k != i) RR += fractions(k) * product(i, k);
          for (int l = 1; l <= kCount; ++l)
            if (l != k && family(k) == family(i) && family(l) == t)
              QQ += fractions(k) * fractions(l) * product(k, l);
        }
        total += fractions(i) * 2.0 / 3.0 * (QQ + (XS - XT) * RR);
      }
    }
    return total;
  }
  // a of the mixture at kT from the pure tables, written out.
  R8 dense_a(const CompVec& fractions) const {
    R8 sum = 0.0;
    for (int i = 1; i <= kCount; ++i)
      for (int j = 1; j <= kCount; ++j)
        sum += fractions(i) * fractions(j) * std::sqrt(pures.ARK(i) * pures.ARK(j)) *
               (1.0 - (i == j ? 0.0 : pairs.TETA0(i, j) + kT * pairs.TETA0T(i, j)));
    return sum + family_term(fractions, [](int i, int j) {
             return -std::sqrt(pures.ARK(i) * pures.ARK(j)) * (pairs.TETA1(i, j) + kT * pairs.TETA1T(i, j));
           });
  }

  CompVec x{};
  MixtureVector m{};
};

TEST_F(Mixing, MoleNumberEntry) {
  EXPECT_EQ(m.Q(IN), 1.0);
  EXPECT_EQ(m.QT(IN), 0.0);
  EXPECT_EQ(m.QTT(IN), 0.0);
  for (int i = 1; i <= kCount; ++i) {
    EXPECT_EQ(m.QN(IN)(i), 1.0);
    EXPECT_EQ(m.QNT(IN)(i), 0.0);
    for (int j = 1; j <= kCount; ++j) EXPECT_EQ(m.QNN(IN)(i, j), 0.0);
  }
}

TEST_F(Mixing, BIsLinear) {
  R8 b = 0.0, bt = 0.0, btt = 0.0;
  for (int i = 1; i <= kCount; ++i) {
    b += x(i) * pures.BRK(i);
    bt += x(i) * pures.D1BDT(i);
    btt += x(i) * pures.D2BDT(i);
    EXPECT_EQ(m.QN(IB)(i), pures.BRK(i));
    EXPECT_EQ(m.QNT(IB)(i), pures.D1BDT(i));
    for (int j = 1; j <= kCount; ++j) EXPECT_EQ(m.QNN(IB)(i, j), 0.0);
  }
  EXPECT_EQ(m.Q(IB), b);
  EXPECT_EQ(m.QT(IB), bt);
  EXPECT_EQ(m.QTT(IB), btt);
}

TEST_F(Mixing, AIsTheDenseDoubleSumWithPairAndFamilyTerms) {
  EXPECT_NEAR(m.Q(IA), dense_a(x), 1E-14 * m.Q(IA));
}

TEST_F(Mixing, FamilyTermMatters) {
  const R8 with = m.Q(IA);
  pairs.TETA1.fill(0.0);
  pairs.TETA1T.fill(0.0);
  update_pairs();
  mix(kT);
  EXPECT_GT(std::abs(m.Q(IA) - with), 1E-4 * with);
}

TEST_F(Mixing, CompositionDerivativesAreThoseOfTheWholeAmount) {
  // a of n moles is N^2 a(x); its derivatives with the mole numbers at one mole.
  R8 N = 0.0;
  for (int i = 1; i <= kCount; ++i) N += x(i);
  const CompVec base = [&] {
    CompVec scaled = x;
    for (int i = 1; i <= kCount; ++i) scaled(i) /= N;
    return scaled;
  }();
  x = base;
  mix(kT);
  const auto whole = [&](const CompVec& n) {
    R8 total = 0.0;
    for (int i = 1; i <= kCount; ++i) total += n(i);
    CompVec fractions{};
    for (int i = 1; i <= kCount; ++i) fractions(i) = n(i) / total;
    return total * total * dense_a(fractions);
  };
  for (int i = 1; i <= kCount; ++i) {
    const auto along = [&](R8 value) {
      CompVec n = base;
      n(i) = value;
      return whole(n);
    };
    EXPECT_NEAR(m.QN(IA)(i), slope(along, base(i), 1E-2), 1E-11 * m.Q(IA)) << i;
    for (int j = 1; j <= kCount; ++j) {
      const auto mixed = [&](R8 outer) {
        return slope(
            [&](R8 inner) {
              CompVec n = base;
              n(j) = outer;
              n(i) = i == j ? outer + inner - base(i) : inner;
              return whole(n);
            },
            base(i), 1E-2);
      };
      EXPECT_NEAR(m.QNN(IA)(i, j), slope(mixed, base(j), 1E-2), 1E-9 * m.Q(IA)) << i << " " << j;
      EXPECT_NEAR(m.QNN(IA)(i, j), m.QNN(IA)(j, i), 1E-15 * m.Q(IA) * 10);
    }
  }
}

TEST_F(Mixing, DegreesOfHomogeneityHold) {
  R8 N = 0.0;
  for (int i = 1; i <= kCount; ++i) N += x(i);
  for (int i = 1; i <= kCount; ++i) x(i) /= N;
  mix(kT);
  R8 a = 0.0, at = 0.0;
  for (int i = 1; i <= kCount; ++i) {
    a += x(i) * m.QN(IA)(i);
    at += x(i) * m.QNT(IA)(i);
    R8 row = 0.0;
    for (int j = 1; j <= kCount; ++j) row += x(j) * m.QNN(IA)(i, j);
    EXPECT_NEAR(row, m.QN(IA)(i), 1E-14 * m.Q(IA)) << i;
  }
  EXPECT_NEAR(a, 2.0 * m.Q(IA), 1E-14 * m.Q(IA));
  EXPECT_NEAR(at, 2.0 * m.QT(IA), 1E-14 * m.Q(IA));
}

TEST_F(Mixing, TemperatureDerivativesAreSlopes) {
  // All six components stay outside the zones of their derivatives within the steps.
  const MixtureVector base = m;
  const auto value = [&](R8 T) {
    mix(T);
    return m.Q(IA);
  };
  EXPECT_NEAR(base.QT(IA), kT * slope(value, kT, 0.1), 1E-10 * base.Q(IA));
  EXPECT_NEAR(base.QTT(IA), kT * kT * curvature(value, kT, 0.2), 1E-7 * base.Q(IA));
  for (int i = 1; i <= kCount; ++i) {
    const auto along = [&](R8 T) {
      mix(T);
      return m.QN(IA)(i);
    };
    EXPECT_NEAR(base.QNT(IA)(i), kT * slope(along, kT, 0.1), 1E-10 * base.Q(IA));
  }
}

TEST_F(Mixing, PureComponentHasNoPairOrFamilyWork) {
  x(3) = 1.0;
  mix(kT, 3, 3);
  EXPECT_NEAR(m.Q(IA), pures.ARK(3), 1E-15 * pures.ARK(3));
  EXPECT_NEAR(m.QN(IA)(3), 2.0 * pures.ARK(3), 1E-15 * pures.ARK(3));
  EXPECT_NEAR(m.QNN(IA)(3, 3), 2.0 * pures.ARK(3), 1E-15 * pures.ARK(3));
  EXPECT_EQ(quadratic_cache.quadratic.count, 0);
  EXPECT_EQ(quadratic_cache.familywise.count, 0);
}

TEST_F(Mixing, BinaryWithoutAsymmetryHasNoFamilyTerm) {
  pairs.TETA1.fill(0.0);
  pairs.TETA1T.fill(0.0);
  update_pairs();
  mix(kT, 1, 2);
  R8 E = 5.0;
  CompVec RESLTN{};
  RESLTN.fill(5.0);
  SSMMR9(x, quadratic_cache.familywise.Q, E, RESLTN, quadratic_cache.familywise, 1, 2);
  EXPECT_EQ(E, 0.0);
  EXPECT_EQ(RESLTN(1), 0.0);
  EXPECT_EQ(RESLTN(2), 0.0);
  const R8 alpha = std::sqrt(pures.ARK(1)) * std::sqrt(pures.ARK(2));
  const R8 theta = pairs.TETA0(1, 2) + kT * pairs.TETA0T(1, 2);
  EXPECT_NEAR(m.QNN(IA)(1, 2), 2.0 * alpha * (1.0 - theta), 1E-15 * alpha);
}

TEST_F(Mixing, PureRangeOfTheFamilyTermIsZero) {
  R8 E = 5.0;
  CompVec RESLTN{};
  RESLTN(2) = 5.0;
  SSMMR9(x, quadratic_cache.familywise.Q, E, RESLTN, quadratic_cache.familywise, 2, 2);
  EXPECT_EQ(E, 0.0);
  EXPECT_EQ(RESLTN(2), 0.0);
}

TEST_F(Mixing, OneFamilyCancelsTheAsymmetryExactly) {
  // Antisymmetric products within one family: QQ(s, s) and with it E is a sum of opposite terms.
  for (int i = 1; i <= kMaxComponents; ++i) comp.ISOFAM(i) = 1;
  update_pairs();
  ASSERT_EQ(pairs.NF, 1);
  ASSERT_GT(pairs.NT1, 0);
  mix(kT);
  const R8 with = m.Q(IA);
  const R8 QNN12 = m.QNN(IA)(1, 6);
  pairs.TETA1.fill(0.0);
  pairs.TETA1T.fill(0.0);
  update_pairs();
  mix(kT);
  EXPECT_NEAR(with, m.Q(IA), 1E-15 * with);
  EXPECT_NEAR(QNN12, m.QNN(IA)(1, 6), 1E-13 * with);
}

TEST_F(Mixing, FamilyTermOfOneFamilyIsTwoThirdsOfItsPairSum) {
  // With products that are not antisymmetric the reduction to (2/3) QQ(s, s) shows.
  for (int i = 1; i <= kMaxComponents; ++i) comp.ISOFAM(i) = 1;
  update_pairs();
  mix(kT);
  PairProducts& list = quadratic_cache.familywise;
  R8 QQ = 0.0;
  R8 X = 0.0;
  for (int L = 1; L <= list.count; ++L) {
    list.Q(L) = 0.1 * L;
    QQ += x(list.I(L)) * x(list.J(L)) * list.Q(L);
  }
  for (int i = 1; i <= kCount; ++i) X += x(i);
  R8 E = 0.0;
  CompVec RESLTN{};
  SSMMR9(x, list.Q, E, RESLTN, list, 1, kCount);
  EXPECT_NEAR(E, X * 2.0 / 3.0 * QQ, 1E-13 * QQ);
  reset_eos_caches();
}

TEST_F(Mixing, PairsWithAMemberOutsideTheRangeAreSkipped) {
  mix(kT, 2, 4);
  const PairProducts& list = quadratic_cache.quadratic;
  EXPECT_EQ(list.count, 6);
  for (int L = 1; L <= list.count; ++L) {
    EXPECT_GE(list.I(L), 2);
    EXPECT_LE(list.I(L), 4);
    EXPECT_GE(list.J(L), 2);
    EXPECT_LE(list.J(L), 4);
  }
}

TEST_F(Mixing, FiftyComponentsUseBothOrdersOfEveryPair) {
  EXPECT_EQ(pairs.NT0, 2450);
  for (int i = 1; i <= kMaxComponents; ++i) x(i) = 0.02;
  mix(kT, 1, kMaxComponents);
  EXPECT_EQ(quadratic_cache.quadratic.count, 2450);
  R8 sum = 0.0;
  for (int i = 1; i <= kMaxComponents; ++i) sum += x(i) * m.QN(IA)(i);
  EXPECT_NEAR(sum, 2.0 * m.Q(IA), 1E-13 * m.Q(IA));
}

TEST_F(Mixing, RuleWithoutRoutineLeavesNoNumber) {
  models.MODMIX(kCubic) = mixing::none;
  mix(kT);
  EXPECT_TRUE(std::isnan(m.Q(IA)));
  EXPECT_TRUE(std::isnan(m.Q(IB)));
  EXPECT_EQ(m.Q(IN), 1.0);
}

}  // namespace
}  // namespace talix::test
