// Viscosity and conductivity of a phase: what the flash layer hands to the engine and what it makes of the answer.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "engine/codes.h"
#include "fastprops/error_matrix.h"
#include "fastprops/fast_conductivity.h"
#include "fastprops/fast_viscosity.h"
#include "fastprops/flash_record.h"
#include "fastprops/transport_call.h"
#include "support/flash_case.h"
#include "transport/stc_conductivity.h"
#include "transport/svi_liquid.h"
#include "transport/svi_vapour.h"

namespace talix {
namespace {

constexpr R4 kReserved = 0.0F;

class FastTransport : public testing::Test {
 protected:
  void SetUp() override {
    test::fresh_library();
    test::FlashCase gas = test::natural_gas();
    ASSERT_EQ(gas.run(), "");
    ASSERT_EQ(errmat.NERRS, 0);
  }
  static R4 vapour_viscosity(R4 T, R4 P) {
    R4 ETA = -1.0F;
    MULO(fl.NC, T, P, kReserved, fl.Y, fl.VC, fl.PC, fl.TC, fl.ZC, fl.CGAS, fl.AMW, kReserved, kReserved, ETA,
         kReserved);
    return ETA;
  }
  static R4 vapour_conductivity(R4 T, R4 P) {
    R4 LAMBDA = -1.0F;
    KLO(fl.NC, T, P, kReserved, fl.Y, fl.VC, fl.PC, fl.TC, fl.ZC, fl.CGAS, fl.COFHT, fl.AMW, kReserved,
        kReserved, LAMBDA, kReserved);
    return LAMBDA;
  }
  static R4 liquid_viscosity(R4 T, R4 P) {
    const FlashVec none{};
    R4 ETA = -1.0F;
    VISLIQ(fl.NC, T, P, fl.CVISL, none, none, fl.X1, ETA);
    return ETA;
  }
  static R4 liquid_conductivity(R4 T) {
    const FlashVec none{};
    R4 LAMBDA = -1.0F;
    KLIQ(fl.NC, T, fl.CKLIQ, none, fl.X1, kReserved, LAMBDA);
    return LAMBDA;
  }
  // The engine's own answer to the question that the flash layer asks.
  template <class Entry>
  static R4 engine(Entry entry, R8 T, R8 P, const FlashVec& X) {
    CompVec x{};
    Vec<I4, kMaxComponents> IC{};
    for (int i = 1; i <= fl.NC; ++i) {
      x(i) = static_cast<R8>(X(i));
      IC(i) = 1;
    }
    R8 value = 0.0, derivative = 0.0;
    I4 STATUS = 0;
    entry(T, P, x, fl.NC, IC, transport_request::value, method::mixture, value, derivative, STATUS);
    EXPECT_EQ(STATUS, status::ok);
    return static_cast<R4>(value);
  }
};

TEST_F(FastTransport, ValuesAreThoseOfTheEngineInPascal) {
  EXPECT_EQ(vapour_viscosity(253.15F, 40.0F), engine(SVVIM1, widen(253.15F), 40.0e5, fl.Y));
  EXPECT_EQ(vapour_conductivity(253.15F, 40.0F), engine(STCVM1, widen(253.15F), 40.0e5, fl.Y));
  EXPECT_EQ(liquid_viscosity(253.15F, 40.0F), engine(SLVIM1, widen(253.15F), 40.0e5, fl.X1));
  EXPECT_EQ(errmat.NERRS, 0);
}

TEST_F(FastTransport, LiquidConductivityIsThatAtOneHundredThousandPascal) {
  EXPECT_EQ(liquid_conductivity(253.15F), engine(STCLM1, widen(253.15F), 1.0e5, fl.X1));
  fl.P = 300.0F;
  EXPECT_EQ(liquid_conductivity(253.15F), engine(STCLM1, widen(253.15F), 1.0e5, fl.X1));
}

TEST_F(FastTransport, BadStatusIsCountedInTheCellOfItsRoutine) {
  vapour_viscosity(300.0F, 0.0F);
  EXPECT_EQ(errmat.ERRMAT(error_row::MULO, 1), 1);
  vapour_conductivity(300.0F, 0.0F);
  EXPECT_EQ(errmat.ERRMAT(error_row::KLO, 1), 2);
  liquid_viscosity(-1.0F, 10.0F);
  EXPECT_EQ(errmat.ERRMAT(error_row::VISLIQ, 1), 3);
  liquid_conductivity(0.0F);
  EXPECT_EQ(errmat.ERRMAT(error_row::KLIQ, 1), 4);
  EXPECT_EQ(errmat.NERRS, 4);
}

TEST_F(FastTransport, NoNotANumberLeavesACall) {
  TransportCall call{};
  call.STATUS = status::ok;
  for (const R8 bad : {std::nan(""), std::numeric_limits<R8>::infinity(), 1e300}) {
    call.VALUE = bad;
    EXPECT_EQ(transport_value(call, error_row::MULO), 0.0F);
  }
  call.VALUE = 0.25;
  EXPECT_EQ(transport_value(call, error_row::MULO), 0.25F);
  EXPECT_EQ(errmat.NERRS, 0);
}

TEST_F(FastTransport, ValueOfABadStatusStands) {
  TransportCall call{};
  call.STATUS = status::not_available;
  call.VALUE = 0.5;
  EXPECT_EQ(transport_value(call, error_row::VISLIQ), 0.5F);
  EXPECT_EQ(errmat.ERRMAT(error_row::VISLIQ, 1), 1);
}

}  // namespace
}  // namespace talix
