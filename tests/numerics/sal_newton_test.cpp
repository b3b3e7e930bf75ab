#include "numerics/sal_newton.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "engine/codes.h"
#include "engine/error_ring.h"
#include "support/test_support.h"

namespace talix {
namespace {

using Jacobian = Mat<R8, kMaxSystem, kMaxSystem>;
using Residuals = Vec<R8, kMaxSystem>;

class NewtonTest : public ::testing::Test {
 protected:
  void SetUp() override { reset_error_ring(); }
};

void expect_single_message(const std::string& name, const std::string& message) {
  ASSERT_EQ(ring.count, 1);
  EXPECT_EQ(ring.SEVER0(1), 3);
  EXPECT_EQ(ring.NAMER0(1).view(), name);
  EXPECT_EQ(trimmed(ring.TXTER0(1)), message);
}

// ---- systems

// x^2 + y^2 = 5, x y = 2: root (2, 1).
void circle_and_hyperbola(void*, const R8* X, Jacobian& ALPHA, Residuals& FI, I4&) {
  FI(1) = X[0] * X[0] + X[1] * X[1] - 5.0;
  FI(2) = X[0] * X[1] - 2.0;
  ALPHA(1, 1) = 2.0 * X[0];
  ALPHA(1, 2) = 2.0 * X[1];
  ALPHA(2, 1) = X[1];
  ALPHA(2, 2) = X[0];
}

// Residual x - target with unit slope; the context holds the target.
void shifted(void* context, const R8* X, Jacobian& ALPHA, Residuals& FI, I4&) {
  FI(1) = X[0] - *static_cast<R8*>(context);
  ALPHA(1, 1) = 1.0;
}

TEST_F(NewtonTest, SystemConvergesOnTheResiduals) {
  R8 x[2] = {2.5, 1.2};
  I4 nfail = 0;
  SALNR0(20, x, 2, 0.0, 1e-12, {circle_and_hyperbola, nullptr}, nfail);
  EXPECT_EQ(nfail, status::ok);
  EXPECT_NEAR(x[0], 2.0, 1e-12);
  EXPECT_NEAR(x[1], 1.0, 1e-12);
}

TEST_F(NewtonTest, SystemConvergesOnTheStep) {
  R8 x[2] = {2.5, 1.2};
  I4 nfail = 0;
  SALNR0(20, x, 2, 1e-6, -1.0, {circle_and_hyperbola, nullptr}, nfail);
  EXPECT_EQ(nfail, status::ok);
  EXPECT_NEAR(x[0], 2.0, 1e-10);
}

TEST_F(NewtonTest, VariableAtMostDoublesInOneStep) {
  R8 target = 6.0;
  R8 x[1] = {1.0};
  I4 nfail = 0;
  // The step of +5 is cut to 2; its full size decides the convergence test, so that 4.9 is not enough.
  SALNR0(1, x, 1, 4.9, 0.0, {shifted, &target}, nfail);
  EXPECT_EQ(x[0], 2.0);
  EXPECT_EQ(nfail, status::failed);
  x[0] = 1.0;
  SALNR0(1, x, 1, 5.0, 0.0, {shifted, &target}, nfail);
  EXPECT_EQ(x[0], 2.0);
  EXPECT_EQ(nfail, status::ok);
}

TEST_F(NewtonTest, StepDownOfAPositiveVariableIsNotLimited) {
  R8 target = -50.0;
  R8 x[1] = {1.0};
  I4 nfail = 0;
  SALNR0(1, x, 1, 1e9, 0.0, {shifted, &target}, nfail);
  EXPECT_EQ(x[0], -50.0);
}

TEST_F(NewtonTest, OldValueBelowItsStepIsDoubledWhateverItsSign) {
  R8 target = -1.5;
  R8 x[1] = {-1.0};
  I4 nfail = 0;
  SALNR0(1, x, 1, 1e9, 0.0, {shifted, &target}, nfail);
  EXPECT_EQ(x[0], -2.0);
}

TEST_F(NewtonTest, FailingFunctionPassesItsStatusOn) {
  R8 x[1] = {1.0};
  I4 nfail = 0;
  SALNR0(5, x, 1, 1e-9, 1e-9,
         {[](void*, const R8*, Jacobian&, Residuals&, I4& s) { s = status::range; }, nullptr}, nfail);
  EXPECT_EQ(nfail, status::range);
  expect_single_message("SALNR0", "Could not create partial derivatives for Newton-Raphson");
}

TEST_F(NewtonTest, SingularJacobianIsReportedByBothRoutines) {
  R8 x[1] = {1.0};
  I4 nfail = 0;
  SALNR0(5, x, 1, 1e-9, 1e-9,
         {[](void*, const R8*, Jacobian& a, Residuals& f, I4&) {
            a(1, 1) = 0.0;
            f(1) = 1.0;
          },
          nullptr},
         nfail);
  EXPECT_EQ(nfail, status::failed);
  ASSERT_EQ(ring.count, 2);
  EXPECT_EQ(trimmed(ring.TXTER0(1)), "LU decomposition, singular matrix");
  EXPECT_EQ(trimmed(ring.TXTER0(2)), "LU decomposition failed");
  EXPECT_EQ(ring.NAMER0(2).view(), "SALNR0");
}

TEST_F(NewtonTest, UsedUpTrialsFail) {
  R8 target = 1000.0;
  R8 x[1] = {1.0};
  I4 nfail = 0;
  SALNR0(3, x, 1, 1e-9, 1e-9, {shifted, &target}, nfail);
  EXPECT_EQ(nfail, status::failed);
  EXPECT_EQ(x[0], 8.0);
  expect_single_message("SALNR0", "Could not improve root");
}

TEST_F(NewtonTest, NoTrialsFailAtOnce) {
  for (const I4 trials : {0, -4}) {
    reset_error_ring();
    R8 target = 1.0;
    R8 x[1] = {1.0};
    I4 nfail = 0;
    SALNR0(trials, x, 1, 1e-9, 1e-9, {shifted, &target}, nfail);
    EXPECT_EQ(nfail, status::failed);
    EXPECT_EQ(x[0], 1.0);
    expect_single_message("SALNR0", "Could not improve root");
  }
}

TEST_F(NewtonTest, SystemLargerThanTheStorageIsRefused) {
  std::vector<R8> x(60, 1.0);
  for (const I4 n : {51, 0, -1}) {
    I4 nfail = 0;
    SALNR0(5, x.data(), n, 1e-9, 1e-9, {circle_and_hyperbola, nullptr}, nfail);
    EXPECT_EQ(nfail, status::failed);
    EXPECT_EQ(x[0], 1.0);
  }
}

TEST_F(NewtonTest, NotANumberNeverCountsAsConverged) {
  R8 target = std::numeric_limits<R8>::quiet_NaN();
  R8 x[1] = {1.0};
  I4 nfail = 0;
  SALNR0(4, x, 1, 1e9, 1e9, {shifted, &target}, nfail);
  EXPECT_EQ(nfail, status::failed);
}

TEST_F(NewtonTest, FiftyEquationsFit) {
  const auto squares = [](void*, const R8* X, Jacobian& a, Residuals& f, I4&) {
    for (int i = 1; i <= 50; ++i) {
      for (int j = 1; j <= 50; ++j) a(i, j) = i == j ? 2.0 * X[i - 1] : 0.0;
      f(i) = X[i - 1] * X[i - 1] - i;
    }
  };
  std::vector<R8> x(50, 3.0);
  I4 nfail = 0;
  SALNR0(30, x.data(), 50, 0.0, 1e-10, {squares, nullptr}, nfail);
  EXPECT_EQ(nfail, status::ok);
  for (int i = 1; i <= 50; ++i) EXPECT_NEAR(x[static_cast<std::size_t>(i - 1)], std::sqrt(i), 1e-11);
}

// ---- one dimension

// Counts its calls and fails from call FAIL_AT on.
struct Probe {
  R8 (*value)(R8);
  R8 (*slope)(R8);
  int fail_at = 1000000;
  int calls = 0;
  R8 last = 0.0;
};

void probe_call(void* context, const R8& X, R8& F, R8& DF, I4& nfail) {
  auto& probe = *static_cast<Probe*>(context);
  ++probe.calls;
  if (probe.calls >= probe.fail_at) {
    nfail = status::not_converged;
    return;
  }
  probe.last = X;
  F = probe.value(X);
  DF = probe.slope(X);
}

R8 root_of(Probe& probe, R8 a, R8 b, R8 tolerance, I4& nfail) {
  return SALNR1({probe_call, &probe}, a, b, tolerance, nfail);
}

Probe cubic() {
  return {[](R8 x) { return x * x * x - 2.0; }, [](R8 x) { return 3.0 * x * x; }};
}

TEST_F(NewtonTest, BracketedRootIsFoundFromBothSides) {
  for (const bool swapped : {false, true}) {
    Probe probe = cubic();
    I4 nfail = 0;
    const R8 root = swapped ? root_of(probe, 4.0, 0.0, 1e-12, nfail) : root_of(probe, 0.0, 4.0, 1e-12, nfail);
    EXPECT_EQ(nfail, status::ok);
    EXPECT_NEAR(root, std::cbrt(2.0), 1e-13);
  }
}

TEST_F(NewtonTest, FallingFunctionIsBracketedToo) {
  Probe probe{[](R8 x) { return 1.0 - x * x; }, [](R8 x) { return -2.0 * x; }};
  I4 nfail = 0;
  EXPECT_NEAR(root_of(probe, 0.0, 3.0, 1e-12, nfail), 1.0, 1e-12);
  EXPECT_EQ(nfail, status::ok);
}

TEST_F(NewtonTest, BisectionTakesOverWhereNewtonLeavesTheBracket) {
  Probe probe{[](R8 x) { return std::atan(50.0 * (x - 0.9)); },
              [](R8 x) { return 50.0 / (1.0 + 2500.0 * (x - 0.9) * (x - 0.9)); }};
  I4 nfail = 0;
  EXPECT_NEAR(root_of(probe, -10.0, 10.0, 1e-12, nfail), 0.9, 1e-12);
  EXPECT_EQ(nfail, status::ok);
}

TEST_F(NewtonTest, ReturnedRootIsTheEstimateBehindTheLastEvaluation) {
  Probe probe = cubic();
  I4 nfail = 0;
  const R8 root = root_of(probe, 1.0, 2.0, 1e-3, nfail);
  EXPECT_NE(root, probe.last);
  EXPECT_LT(std::abs(root - std::cbrt(2.0)), std::abs(probe.last - std::cbrt(2.0)));
}

TEST_F(NewtonTest, EndsOfEqualSignDoNotBracket) {
  Probe probe = cubic();
  I4 nfail = 0;
  root_of(probe, 2.0, 3.0, 1e-12, nfail);
  EXPECT_EQ(nfail, status::failed);
  expect_single_message("SALNR1", "Could not bracket root");
}

TEST_F(NewtonTest, RootOnAnEndDoesNotCountAsBracketed) {
  Probe probe{[](R8 x) { return x; }, [](R8) { return 1.0; }};
  I4 nfail = 0;
  root_of(probe, 0.0, 1.0, 1e-12, nfail);
  EXPECT_EQ(nfail, status::failed);
  expect_single_message("SALNR1", "Could not bracket root");
}

TEST_F(NewtonTest, NotANumberDoesNotBracket) {
  Probe probe{[](R8) { return std::numeric_limits<R8>::quiet_NaN(); }, [](R8) { return 1.0; }};
  I4 nfail = 0;
  root_of(probe, 0.0, 1.0, 1e-12, nfail);
  EXPECT_EQ(nfail, status::failed);
}

TEST_F(NewtonTest, FailureAtTheEndsIsReportedByPoint) {
  Probe first = cubic();
  first.fail_at = 1;
  I4 nfail = 0;
  EXPECT_EQ(root_of(first, 0.0, 4.0, 1e-12, nfail), 0.0);
  EXPECT_EQ(nfail, status::not_converged);
  expect_single_message("SALNR1", "Bracketing root, error supplied function, point 1");
  reset_error_ring();
  Probe second = cubic();
  second.fail_at = 2;
  EXPECT_EQ(root_of(second, 0.0, 4.0, 1e-12, nfail), 4.0);
  EXPECT_EQ(nfail, status::not_converged);
  expect_single_message("SALNR1", "Bracketing root, error supplied function, point 2");
}

TEST_F(NewtonTest, FailureDuringTheSearchReturnsTheCurrentEstimate) {
  Probe middle = cubic();
  middle.fail_at = 3;
  I4 nfail = 0;
  EXPECT_EQ(root_of(middle, 0.0, 4.0, 1e-12, nfail), 2.0);
  EXPECT_EQ(nfail, status::not_converged);
  expect_single_message("SALNR1", "Bracketing root, error during iteration");
  reset_error_ring();
  Probe later = cubic();
  later.fail_at = 4;
  EXPECT_EQ(root_of(later, 0.0, 4.0, 1e-12, nfail), 1.5);  // 2 - 6/12
  EXPECT_EQ(nfail, status::not_converged);
  expect_single_message("SALNR1", "Bracketing root, error during iteration");
}

TEST_F(NewtonTest, HundredPassesAreTheMost) {
  // Nothing but bisection, in a bracket that needs a thousand halvings.
  Probe probe{[](R8 x) { return x < 1.0 ? -1.0 : 1.0; }, [](R8) { return 0.0; }};
  I4 nfail = 0;
  root_of(probe, -1e300, 1e300, 1e-12, nfail);
  EXPECT_EQ(nfail, status::failed);
  expect_single_message("SALNR1", "Bracketing root, maximum number of iterarions");
  EXPECT_EQ(probe.calls, 103);
}

}  // namespace
}  // namespace talix
