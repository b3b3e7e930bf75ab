// The one record of the flash layer: the calculation in progress, the component constants it works on,
// and what is kept from call to call. All reals are 32-bit but the cubic of the direct route; at load every field is zero or blank.
#pragma once

#include "base/array.h"
#include "base/logical.h"
#include "base/real.h"
#include "base/text.h"

namespace talix {

inline constexpr R4 kFlashGasConstant = 8.31447F;  // of the flash layer [J/(mol K)]
inline constexpr R4 kFlashZeroCelsius = 273.15F;   // [K]
inline constexpr R4 kFlowFloor = 2.0E-8F;          // smallest total flow of a phase inside a flash [mol]
inline constexpr R4 kPhaseLimit = 2.1E-8F;         // a phase at or below this total is absent [mol]
inline constexpr R4 kNegligibleFeed = 1.0E-18F;    // smaller feeds are left out of the flash equations
inline constexpr R4 kMaxTemperature = 1773.15F;    // [K]
inline constexpr R4 kMaxPressure = 900.0F;         // [bar]
inline constexpr int kScalRows = kMaxComponents + 2;
inline constexpr int kScalColumns = 8;
inline constexpr int kPropertyRows = 15;
inline constexpr int kPropertyColumns = 3;
inline constexpr I4 kFirstComponentNumber = 2;  // record 1 of the component file is no component
inline constexpr I4 kLastComponentNumber = 1246;

using FlashVec = Vec<R4, kMaxComponents>;
using PropertyColumn = Vec<R4, kPropertyRows>;  // one phase of TPROPS

// REDLAB_MODE when the parameters of the direct route have to be formed anew.
inline constexpr I4 kNoParameters = -1;

// Phases as the flash layer counts them.
namespace flash_phase {
inline constexpr I4 liquid = 1;
inline constexpr I4 vapour = 2;
inline constexpr I4 second_liquid = 3;
}  // namespace flash_phase

// Flash-type codes of the entry call.
namespace flash_type {
inline constexpr I4 bubble_pressure = 1;
inline constexpr I4 bubble_temperature = 2;
inline constexpr I4 dew_pressure = 3;
inline constexpr I4 dew_temperature = 4;
inline constexpr I4 isothermal = 5;
inline constexpr I4 pressure_at_fraction = 6;
inline constexpr I4 temperature_at_fraction = 7;
inline constexpr I4 adiabatic = 8;
inline constexpr I4 adiabatic_nested = 9;
inline constexpr I4 isothermal_fast = 10;
inline constexpr I4 feed_properties = 33;
}  // namespace flash_type

// Call status and warm-start code, field NCAL.
namespace flash_status {
inline constexpr I4 fresh = 0;
inline constexpr I4 warm_start = 2;  // FLTP and FLVP keep the flows they find
inline constexpr I4 warm_last = 3;   // warm start, last pass of FLPQ
inline constexpr I4 first_pass = 5;  // first pass of FLPQ, no warm start
inline constexpr I4 failed = -4;     // -1 to -3 are loose solutions
}  // namespace flash_status

// What the K-values are, argument IDEAL of KVAL.
namespace kvalues {
inline constexpr I4 real = 0;           // real, ready to be judged converged
inline constexpr I4 ideal = 1;          // from the Wilson correlation
inline constexpr I4 provisional = -11;  // real, but convergence must not be accepted yet
}  // namespace kvalues

// How the last load of a component list ended.
namespace load_result {
inline constexpr I4 none = 0;          // no list loaded since the start or since SETTALIXINSTALL
inline constexpr I4 complete = 1;      // constants read, engine started
inline constexpr I4 no_file = 2;       // the component file could not be opened
inline constexpr I4 bad_number = 3;    // a component number outside 2 to 1246
inline constexpr I4 unreadable = 4;    // a record could not be read
inline constexpr I4 engine = 5;        // the engine start failed
inline constexpr I4 empty_record = 6;  // a number without a component
}  // namespace load_result

struct FlashRecord {
  // The current call.
  I4 NC;       // number of components (TALIX)
  I4 IFLASH;   // flash-type code (TALIX)
  R4 T;        // temperature [K] (TALIX; flashes move it)
  R4 P;        // pressure [bar] (TALIX; flashes move it)
  R4 FRV;      // vapour fraction: asked for before the flash, result after it
  R4 T_ASKED;  // T, P and FRV as the caller passed them, [K], [bar] and [-]: what is given and, of the
  R4 P_ASKED;  // other ones, the start value (TALIX)
  R4 FRV_ASKED;
  R4 QSPEC;           // target total enthalpy of the adiabatic flashes [flow x J/mol]
  I4 NCAL;            // call status, flash_status::* (TALIX, flashes)
  L4 KFLAT;           // the isothermal flash found no slope in its equations (FLTP, FLPQ)
  L4 KSTART;          // FLPST left start values in VLK (TALIX clears, FLPST sets)
  L4 KVRESET;         // K-value reset flag, cleared on every call
  I4 NL2KEY;          // key component of a second liquid, 0 when none is sought (TALIX clears)
  R4 RGAS;            // gas constant [J/(mol K)] (TALIX)
  R4 TZERO;           // 273.15 K, also the reference temperature of the direct enthalpy route (TALIX)
  R4 ZL, ZV, ZL2;     // compressibility factors of the last RKSF: liquid, vapour, second liquid [-]
  R4 FT;              // total feed [mol] (TALIX)
  R4 SFT;             // total feed in the basis of the host (TALIX)
  R4 FTV, FTL, FTLS;  // total flows of the phases [mol] (TALIX, after the flash)

  // Component tables, by position in the list.
  Vec<I4, kMaxComponents> ICOMP;    // component numbers of this call
  Vec<I4, kMaxComponents> STD_OLD;  // component numbers of the previous call
  Vec<R4, kScalRows> SF;            // feed as the host passes it; NC+1 total, NC+2 enthalpy
  FlashVec F;                       // working feed [mol]
  FlashVec FV, FL, FLS;             // component flows of vapour, liquid, second liquid [mol]
  FlashVec Y, X1, X2;               // mole fractions of vapour, liquid, second liquid
  FlashVec VLK;                     // K-value, vapour over liquid
  FlashVec VLKS;                    // K-value, vapour over second liquid

  // Constants of the components (VLINIT).
  FlashVec TC;                         // critical temperature [K]
  FlashVec PC;                         // critical pressure [bar]
  FlashVec VC;                         // critical volume [cm3/mol]
  FlashVec ZC;                         // PC VC/(RGAS TC), ten times the compressibility factor [-]
  FlashVec OMEG;                       // acentric factor [-]
  FlashVec AMW;                        // molar mass [g/mol]
  Vec<I4, kMaxComponents> ISTAT2;      // state-class code; 6: heavy-component branch of REDLAB
  Vec<Text<28>, kMaxComponents> NAME;  // component name
  Vec<Text<4>, kMaxComponents> MFDS;   // engine component code
  Mat<R4, kMaxComponents, 15> PARABF;  // curves of the equation parameters (component, column)
  Mat<R4, 8, kMaxComponents> COFHT;    // ideal-gas heat capacity coefficients
  Mat<R4, 5, kMaxComponents> CP0;      // heat capacity correlation
  Mat<R4, 4, kMaxComponents> CDEN;     // liquid density correlation
  Mat<R4, 6, kMaxComponents> CKLIQ;    // liquid conductivity correlation
  Mat<R4, 6, kMaxComponents> CVISL;    // liquid viscosity correlation
  Mat<R4, 2, kMaxComponents> SUR;      // surface tension correlation
  Mat<R4, 4, kMaxComponents> CGAS;     // gas transport: 1-2 conductivity, 3-4 viscosity

  // Pure-component parameters of the direct route at the current temperature (REDLAB).
  FlashVec A, B;      // parameters of the cubic
  FlashVec DA1, DA2;  // first and second temperature derivative of A
  FlashVec DB1, DB2;  // first and second temperature derivative of B
  I4 REDLAB_MODE;     // what A and B were last formed for: MODE of REDLAB, kNoParameters when out of date
  R4 REDLAB_T;        // and its temperature [K]

  // Work of the direct route (RKSF).
  FlashVec AA, BB;      // parameters of the pure components times P/(RT) [-]
  FlashVec AMIX, BMIX;  // their sums over the mixture [-]
  Vec<R8, 3> AN;        // coefficients of the cubic in the compressibility factor
  Vec<R8, 3> ZZ;        // its roots

  // Kept between calls and between iterations.
  I4 NCOLD;       // NC of the previous call; 0 at load and after SETTALIXINSTALL
  I4 NCALLS;      // calls of TALIX; written, never read
  I4 IDEAL_FLTP;  // K-value status of FLTP, kvalues::*
  I4 IDEAL_FLVP;  // K-value status of FLVP, kvalues::*
  R4 FTLS_FLTP;   // total second-liquid flow of the last FLTP [mol]
  I4 PASSES;      // passes of the last FLTP; for reports, never read by a calculation
  I4 NENGINE;     // SHMIX0 calls of the flash layer since load; for reports, never read by a calculation
  R4 FTLS_FLVP;   // total second-liquid flow of the last FLVP [mol]
  R4 PLAST;       // pressure at the last K-value evaluation [bar] (KVAL)
  R4 TLAST;       // temperature at the last K-value evaluation [K] (KVAL)
  Mat<R4, kMaxComponents, 3> XX;    // last compositions; columns are flash_phase::* (KVAL)
  Mat<R4, kMaxComponents, 3> FOOX;  // last fugacity coefficients, same columns (KVAL)

  // Settings from the host.
  Text<256> INSTALL;  // install directory, no trailing separator (SETTALIXINSTALL)
  I4 INSTALL_LENGTH;  // characters of INSTALL in use
  I4 USAGE1;          // stored, not read (SETTALIXUSAGE)
  L4 UNVERIFIED;      // the flashes run without the check behind them (SETTALIXVERIFY)
  L4 ECHO_HELD;       // messages are stored but not echoed: the check may still mend what they tell (TALIX)
  L4 MSGHOOK;         // send echo lines to WRLIN (SETTALIXUSAGE)
  I4 MSGUNIT;         // unit of echo lines: 0 standard error, 6 standard output, others drop the line

  // Engine link.
  I4 MODELID;      // model-table slot to pass to SHMIX0 (SHMLD0 through MORVEI)
  L4 ENGREADY;     // MORVEI has run to the end once; never cleared again
  I4 LOAD;         // how the last load ended, load_result::* (VLINIT)
  I4 LOAD_DETAIL;  // the number refused, the record not read, or the stage at which the engine start failed
};

extern constinit FlashRecord fl;

// Every field to zero or blank, as at load.
void reset_flash_record();

}  // namespace talix
