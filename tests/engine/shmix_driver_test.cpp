// The driver on its own: a recorder stands where the equations of state are, so that every request that the
// driver makes can be looked at and every answer be given to it.
#define SES000 recorded_equation
#define SHMIX0 driver
#include "engine/shmix_driver.cpp"  // NOLINT(bugprone-suspicious-include)
#undef SHMIX0
#undef SES000

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "engine/model_table.h"
#include "engine/reset.h"
#include "support/test_support.h"

namespace talix {
namespace {

// What one call of the recorder was asked for.
struct Asked {
  I4 slot;
  bool LFUG, LVOL, LTHERM;
  EosArgs all;
};

// What the recorder answers.
struct Answer {
  I4 ICODE = status::ok;
  I4 IPHRTN = phase::vapour;
  R8 Z = 0.5;
};

std::vector<Asked> asked;
std::vector<Answer> answers;  // one a slot; the last one also for all further slots

}  // namespace

void recorded_equation(EosArgs& args) {
  asked.push_back({args.MODEL, args.LFUG, args.LVOL, args.LTHERM, args});
  const auto slot = static_cast<std::size_t>(args.MODEL);
  const Answer& answer = answers[std::min(slot, answers.size()) - 1];
  args.ICODE = answer.ICODE;
  args.IPHRTN = answer.IPHRTN;
  args.Z = answer.Z;
  args.ZT = 0.1;
  args.ZP = 0.2;
  args.H = 1.0;
  args.HT = 1.1;
  args.HP = 1.2;
  args.S = 2.0;
  args.ST = 2.1;
  args.SP = 2.2;
  args.BETA = 49.0;
  args.KAPT = 18.0;
  args.CP = 15.0;
  args.CV = 16.0;
  args.DKAPT = 21.0;
  args.DLVTV = 13.0;
  args.DPDTV = 50.0;
  args.KAPS = 2.0;
  args.DPDTS = 17.0;
  args.JTC = 19.0;
  args.WSOUND = 114.0;
  if (args.LFUG) (*args.FUG)(1) = -0.25;
}

namespace {

constexpr R8 kUntouched = -777.0;

// One call with all its arguments.
struct Call {
  I4 IPHTYP = phase::vapour;
  I4 IROOTO = root_option::real_only;
  R8 T = 300.0, P = 1e6;
  I4 NCOMP = 2;
  Vec<I4, kMaxComponents> IC{};
  CompVec X{};
  I4 LNOV = 0, LNOF = 0, LNOH = 0;
  I4 IHTYPE = thermal::total;
  Flags3 DV{}, DF{}, DH{};
  ReservedCodes IRESRV{};
  I4 NRESRV = 0;
  I4 IPHRTN = -1;
  L4 AMBIG{-1};
  R8 ZFUG = kUntouched, ZVOL = kUntouched, DZDT = kUntouched, DZDP = kUntouched;
  R8 H = kUntouched, DHDT = kUntouched, DHDP = kUntouched;
  R8 S = kUntouched, DSDT = kUntouched, DSDP = kUntouched;
  CompVec DZDN{}, FUG{}, DFDT{}, DFDP{}, DHDN{}, DSDN{};
  CompMat DFDN{};
  ReservedValues RESRV{};
  I4 NFAIL = -1;

  void run() {
    asked.clear();
    driver(IPHTYP, IROOTO, T, P, NCOMP, IC, X, LNOV, DV, LNOF, DF, LNOH, IHTYPE, DH, IRESRV, NRESRV, IPHRTN,
           AMBIG, ZFUG, ZVOL, DZDT, DZDP, DZDN, FUG, DFDT, DFDP, DFDN, H, DHDT, DHDP, DHDN, S, DSDT, DSDP,
           DSDN, RESRV, NFAIL);
  }
};

class DriverTest : public ::testing::Test {
 protected:
  void SetUp() override {
    reset_engine();
    asked.clear();
    answers = {Answer{}};
    call.X(1) = 0.4;
    call.X(2) = 0.6;
  }
  static I4 load(I4 model_code) {
    I4 slot = 0;
    I4 nfail = 0;
    SMDAO0(model_code, slot, nfail);
    EXPECT_EQ(nfail, status::ok);
    return slot;
  }
  static void expect_message(const std::string& message) {
    ASSERT_EQ(ring.count, 1);
    EXPECT_EQ(ring.SEVER0(1), 3);
    EXPECT_EQ(ring.NAMER0(1).view(), "SHMIX0");
    EXPECT_EQ(trimmed(ring.TXTER0(1)), message);
  }
  Call call;
};

// ---- guards

TEST_F(DriverTest, TemperatureAndPressureBoundsAreOpen) {
  call.LNOF = load(model::vardo1);
  const R8 nan = std::numeric_limits<R8>::quiet_NaN();
  const R8 inf = std::numeric_limits<R8>::infinity();
  const std::pair<R8, R8> refused[] = {{1.0, 1e5},   {0.0, 1e5},    {-300.0, 1e5}, {300.0, 1e-30},
                                       {300.0, 0.0}, {300.0, -1.0}, {nan, 1e5},    {300.0, nan},
                                       {inf, 1e5},   {300.0, inf}};
  for (const auto& [T, P] : refused) {
    reset_error_ring();
    call.T = T;
    call.P = P;
    call.run();
    EXPECT_EQ(call.NFAIL, status::input) << T << " K " << P << " Pa";
    EXPECT_TRUE(asked.empty());
    expect_message("Pressure or temperature too low (input)");
  }
  call.T = 1.0000001;
  call.P = 1.1e-30;
  call.run();
  EXPECT_EQ(call.NFAIL, status::ok);
}

TEST_F(DriverTest, SomethingMustBeAskedFor) {
  load(model::vardo1);
  call.LNOV = -1;
  call.run();
  EXPECT_EQ(call.NFAIL, status::failed);
  expect_message("All calculation property flags were .FALSE. (input)");
}

TEST_F(DriverTest, KindOfEnthalpyIsCheckedOnlyWithThermalProperties) {
  call.LNOF = load(model::vardo1);
  call.IHTYPE = 7;
  call.run();
  EXPECT_EQ(call.NFAIL, status::ok);
  call.LNOH = 1;
  call.run();
  EXPECT_EQ(call.NFAIL, status::input);
  EXPECT_TRUE(asked.empty());
  expect_message("Impossible value of IHTYPE for thermophysical properties");
  for (const I4 kind : {118, 111, 85}) {
    call.IHTYPE = kind;
    call.run();
    EXPECT_EQ(call.NFAIL, status::ok);
  }
}

TEST_F(DriverTest, SlotWithoutAModelIsRefused) {
  load(model::vardo1);
  for (const I4 slot : {2, 10, 11, 1000000}) {
    reset_error_ring();
    call.LNOF = slot;
    call.run();
    EXPECT_EQ(call.NFAIL, status::input);
    expect_message("Requested model not available");
  }
}

// ---- which rows run

TEST_F(DriverTest, OneRowForAllRunsOnceWithAllFlags) {
  call.LNOF = call.LNOV = call.LNOH = load(model::vardo1);
  call.run();
  EXPECT_EQ(call.NFAIL, status::ok);
  ASSERT_EQ(asked.size(), 1U);
  EXPECT_TRUE(asked[0].LFUG && asked[0].LVOL && asked[0].LTHERM);
}

TEST_F(DriverTest, LowestRowRunsFirstAndEachForWhatItWasNamed) {
  load(model::vardo1);
  load(model::srk);
  load(model::peng_robinson);
  call.LNOF = 3;
  call.LNOV = 1;
  call.LNOH = 3;
  call.run();
  ASSERT_EQ(asked.size(), 2U);
  EXPECT_EQ(asked[0].slot, 1);
  EXPECT_TRUE(!asked[0].LFUG && asked[0].LVOL && !asked[0].LTHERM);
  EXPECT_EQ(asked[1].slot, 3);
  EXPECT_TRUE(asked[1].LFUG && !asked[1].LVOL && asked[1].LTHERM);
}

TEST_F(DriverTest, RequestReachesTheEquationUnchanged) {
  call.LNOF = call.LNOV = call.LNOH = load(model::vardo1);
  call.IPHTYP = phase::liquid;
  call.IROOTO = root_option::pseudo;
  call.NCOMP = -2;
  call.IHTYPE = thermal::residual;
  call.DV(1) = true;
  call.DF(2) = true;
  call.DH(3) = true;
  call.run();
  ASSERT_EQ(asked.size(), 1U);
  const EosArgs& args = asked[0].all;
  EXPECT_EQ(args.IPHASE, phase::liquid);
  EXPECT_EQ(args.KROOT, root_option::pseudo);
  EXPECT_EQ(args.T, 300.0);
  EXPECT_EQ(args.P, 1e6);
  EXPECT_EQ(args.NCOMP, -2);
  EXPECT_EQ(args.XIN, &call.X);
  EXPECT_EQ(args.IHTYPE, thermal::residual);
  EXPECT_TRUE(args.LDVOL(1) && !args.LDVOL(2) && args.LDFUG(2) && !args.LDFUG(3) && args.LDTHERM(3));
  EXPECT_EQ(args.FUG, &call.FUG);
  EXPECT_EQ(args.FUGTL, &call.DFDT);
  EXPECT_EQ(args.FUGPL, &call.DFDP);
  EXPECT_EQ(args.FUGN, &call.DFDN);
  EXPECT_EQ(args.ZN, &call.DZDN);
  EXPECT_EQ(args.HNR, &call.DHDN);
  EXPECT_EQ(args.SNR, &call.DSDN);
}

TEST_F(DriverTest, ResultsAreHandedBackAsFarAsTheyWereAskedFor) {
  call.LNOF = call.LNOV = call.LNOH = load(model::vardo1);
  call.DV(1) = true;
  call.DV(2) = true;
  call.DH(1) = true;
  call.DH(2) = true;
  call.run();
  EXPECT_EQ(call.ZFUG, 0.5);
  EXPECT_EQ(call.ZVOL, 0.5);
  EXPECT_EQ(call.FUG(1), -0.25);
  EXPECT_EQ(call.DZDT, 0.1);
  EXPECT_EQ(call.DZDP, 0.2);
  EXPECT_EQ(call.H, 1.0);
  EXPECT_EQ(call.DHDT, 1.1);
  EXPECT_EQ(call.DHDP, 1.2);
  EXPECT_EQ(call.S, 2.0);
  EXPECT_EQ(call.DSDT, 2.1);
  EXPECT_EQ(call.DSDP, 2.2);
  call = Call{};
  call.LNOF = 1;
  call.run();
  for (const R8 left : {call.DZDT, call.DZDP, call.H, call.DHDT, call.DHDP, call.S, call.DSDT, call.DSDP})
    EXPECT_EQ(left, kUntouched);
}

TEST_F(DriverTest, CompressibilityIsThatOfTheLastRow) {
  load(model::vardo1);
  load(model::srk);
  answers = {{.Z = 0.3}, {.Z = 0.4}};
  call.LNOF = 1;
  call.LNOV = 2;
  call.run();
  EXPECT_EQ(call.ZFUG, 0.4);
  EXPECT_EQ(call.ZVOL, 0.4);
}

TEST_F(DriverTest, RowWithoutFugacitiesCannotReachThose) {
  load(model::vardo1);
  load(model::srk);
  call.LNOF = 1;
  call.LNOH = 2;
  call.run();
  ASSERT_EQ(asked.size(), 2U);
  EXPECT_EQ(asked[0].all.FUG, &call.FUG);
  EXPECT_EQ(asked[1].all.FUG, nullptr);
  EXPECT_EQ(asked[1].all.FUGTL, nullptr);
}

// ---- failure of the equation of state

TEST_F(DriverTest, FailedEquationLeavesTheMarkAndItsStatus) {
  call.LNOF = load(model::vardo1);
  answers = {{.ICODE = status::numerical}};
  call.run();
  EXPECT_EQ(call.NFAIL, status::numerical);
  EXPECT_EQ(call.ZFUG, 1.23456789e34);
  EXPECT_EQ(call.ZVOL, 1.23456789e34);
  expect_message("Equation of state calculation failed");
}

TEST_F(DriverTest, RowsBeforeAFailureKeepTheirResults) {
  load(model::vardo1);
  load(model::srk);
  answers = {{.Z = 0.3}, {.ICODE = status::no_root}};
  call.LNOF = 1;
  call.LNOH = 2;
  call.run();
  EXPECT_EQ(call.NFAIL, status::no_root);
  EXPECT_EQ(call.FUG(1), -0.25);
  EXPECT_EQ(call.H, kUntouched);
}

// ---- phase codes

struct PhaseCase {
  I4 asked_for, root, returned;
  bool ambiguous;
};

TEST_F(DriverTest, PhaseCodesAreNormalised) {
  call.LNOF = load(model::vardo1);
  const PhaseCase cases[] = {
      {122, 122, 122, false}, {90, 90, 90, false},   {122, 81, 122, true},  {90, 81, 90, true},
      {82, 81, 122, true},    {122, 120, 98, false}, {90, 120, 98, false},  {122, 109, 109, false},
      {90, 122, 122, false},  {82, 90, 90, false},   {82, 122, 122, false},
  };
  for (const PhaseCase& c : cases) {
    SCOPED_TRACE(std::to_string(c.asked_for) + " asked, " + std::to_string(c.root) + " found");
    answers = {{.IPHRTN = c.root}};
    call.IPHTYP = c.asked_for;
    call.run();
    EXPECT_EQ(call.NFAIL, status::ok);
    EXPECT_EQ(call.IPHRTN, c.returned);
    EXPECT_EQ(static_cast<bool>(call.AMBIG), c.ambiguous);
  }
}

TEST_F(DriverTest, GibbsRequestNeedsALiquidOrAVapour) {
  call.LNOF = load(model::vardo1);
  call.IPHTYP = phase::gibbs;
  for (const I4 root : {120, 109, 100}) {
    reset_error_ring();
    answers = {{.IPHRTN = root}};
    call.run();
    EXPECT_EQ(call.NFAIL, status::no_root);
    expect_message("Could not find e.o.s. root of requested Gibbs type");
    EXPECT_EQ(call.ZFUG, 0.5);
  }
}

// ---- dissolved salt

TEST_F(DriverTest, SaltShrinksTheVolumeOfTheStandardCubicOnly) {
  call.LNOF = load(model::vardo1);
  call.LNOV = load(model::srk);
  comp.ISALT = 2;
  call.LNOV = 0;
  call.run();
  EXPECT_DOUBLE_EQ(call.ZFUG, 0.5 - 1e6 * 0.6 * 0.000231 / (8.31447 * 300.0));
  EXPECT_EQ(call.ZVOL, call.ZFUG);
  call.LNOF = 2;
  call.run();
  EXPECT_EQ(call.ZFUG, 0.5);
}

TEST_F(DriverTest, SaltFractionIsThatOfWhatWasCalculated) {
  call.LNOF = load(model::vardo1);
  comp.ISALT = 2;
  call.X(1) = 4.0;
  call.X(2) = 6.0;
  call.run();
  EXPECT_DOUBLE_EQ(call.ZFUG, 0.5 - 1e6 * 0.6 * 0.000231 / (8.31447 * 300.0));
  call.NCOMP = -1;
  call.run();
  EXPECT_EQ(call.ZFUG, 0.5);
  call.NCOMP = -2;
  call.run();
  EXPECT_DOUBLE_EQ(call.ZFUG, 0.5 - 1e6 * 0.000231 / (8.31447 * 300.0));
  call.NCOMP = 1;
  call.run();
  EXPECT_EQ(call.ZFUG, 0.5);
}

// ---- classes without data

struct ClassCase {
  I4 model_code, nfail, returned;
  const char* message;
};

TEST_F(DriverTest, OtherClassesAnswerWithTheirFailure) {
  const ClassCase cases[] = {
      {model::wp1, 102, 98, "Could not compute properties of hydrate phase"},
      {model::ice, 102, 98, "Could not compute properties of freezeout phase"},
      {model::freeze_out, 102, 98, "Could not compute properties of freezeout phase"},
      {model::nrtl, 102, 98, "Could not compute properties of liquid phase"},
      {model::steam, 102, -1, "Steam table calculation failed"},
      {model::keldrin, 87, -1, "Requested model not available"},
      {model::none, 87, -1, "Requested model not available"},
  };
  for (const ClassCase& c : cases) {
    SCOPED_TRACE(c.message);
    reset_engine();
    call = Call{};
    call.LNOF = load(c.model_code);
    call.run();
    EXPECT_EQ(call.NFAIL, c.nfail);
    EXPECT_EQ(call.IPHRTN, c.returned);
    EXPECT_TRUE(asked.empty());
    expect_message(c.message);
  }
}

// ---- reserved results

TEST_F(DriverTest, ReservedResultsFollowTheirCodes) {
  call.LNOH = load(model::vardo1);
  const I4 codes[] = {49, 18, 15, 16, 21, 13, 50, 2, 17, 19, 114, 3, 0};
  call.NRESRV = 13;
  for (int i = 1; i <= 13; ++i) call.IRESRV(i) = codes[i - 1];
  for (const I4 kind : {118, 111, 85}) {
    call.IHTYPE = kind;
    call.RESRV.fill(kUntouched);
    call.run();
    EXPECT_EQ(call.NFAIL, status::ok);
    for (int i = 1; i <= 7; ++i) EXPECT_EQ(call.RESRV(i), codes[i - 1]);
    for (int i = 8; i <= 11; ++i) EXPECT_EQ(call.RESRV(i), kind == 118 ? codes[i - 1] : 0.0);
    EXPECT_EQ(call.RESRV(12), 0.0);
    EXPECT_EQ(call.RESRV(13), 0.0);
    EXPECT_EQ(call.RESRV(14), kUntouched);
  }
}

TEST_F(DriverTest, WithoutEntriesTheReservedResultsAreLeftAlone) {
  call.LNOH = load(model::vardo1);
  call.RESRV.fill(kUntouched);
  call.run();
  EXPECT_EQ(call.RESRV(1), kUntouched);
}

TEST_F(DriverTest, WithoutThermalPropertiesTheReservedResultsAreZero) {
  call.LNOF = load(model::vardo1);
  call.NRESRV = 2;
  call.IRESRV(1) = reserved::heat_capacity_p;
  call.IRESRV(2) = reserved::speed_of_sound;
  call.RESRV.fill(kUntouched);
  resv.CP = 33.0;
  call.run();
  EXPECT_EQ(call.RESRV(1), 0.0);
  EXPECT_EQ(call.RESRV(2), 0.0);
  EXPECT_EQ(resv.CP, 33.0);
}

TEST_F(DriverTest, ReservedResultsAreClearedEvenWhenTheCallIsRefused) {
  call.NRESRV = 1;
  call.RESRV(1) = kUntouched;
  call.T = 0.0;
  call.run();
  EXPECT_EQ(call.RESRV(1), 0.0);
  EXPECT_FALSE(call.AMBIG);
}

TEST_F(DriverTest, ListLongerThanItsStorageStaysInBounds) {
  call.LNOH = load(model::vardo1);
  call.NRESRV = 1000;
  call.IRESRV.fill(reserved::heat_capacity_p);
  call.run();
  EXPECT_EQ(call.NFAIL, status::ok);
  EXPECT_EQ(call.RESRV(20), 15.0);
}

}  // namespace
}  // namespace talix
