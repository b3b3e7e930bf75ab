#include "support/eos_fixture.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "database/component_record.h"
#include "database/pair_record.h"
#include "engine/codes.h"
#include "engine/error_ring.h"
#include "engine/model_record.h"
#include "engine/setup_record.h"
#include "eos/cubic_record.h"
#include "eos/eos_caches.h"
#include "eos/ssm_pure_curves.h"
#include "eos/ssm_pure_generalised.h"

namespace talix::test {

namespace {

struct Row {
  const char* code;
  R8 TC, PC, OMEGA, RMOLW;
  I4 family;
  R8 c1, c2, c3, c4;  // ideal-gas heat capacity [J/(mol K)] over powers of K, rough fits
};

// Critical data: rounded textbook figures; they only have to be reasonable.
constexpr Row kRows[] = {
    {"C1", 190.56, 45.99, 0.0115, 16.043, 1, 19.25, 5.213E-2, 1.197E-5, -1.132E-8},
    {"C2", 305.32, 48.72, 0.0995, 30.07, 1, 5.409, 1.781E-1, -6.938E-5, 8.713E-9},
    {"C3", 369.83, 42.48, 0.1523, 44.096, 1, -4.224, 3.063E-1, -1.586E-4, 3.215E-8},
    {"NC10", 617.7, 21.1, 0.4923, 142.285, 1, -7.913, 9.609E-1, -5.288E-4, 1.131E-7},
    {"CO2", 304.13, 73.77, 0.2239, 44.01, 2, 19.8, 7.344E-2, -5.602E-5, 1.715E-8},
    {"H2O", 647.1, 220.64, 0.3443, 18.015, 3, 32.24, 1.924E-3, 1.055E-5, -3.596E-9},
    {"N2", 126.19, 33.96, 0.0372, 28.014, 2, 31.15, -1.357E-2, 2.680E-5, -1.168E-8},
    {"H2", 33.15, 12.96, -0.219, 2.016, 2, 27.14, 9.274E-3, -1.381E-5, 7.645E-9},
    {"NC4", 425.12, 37.96, 0.2002, 58.122, 1, 9.487, 3.313E-1, -1.108E-4, -2.822E-9},
    {"NC6", 507.6, 30.25, 0.3013, 86.175, 1, -4.413, 5.820E-1, -3.119E-4, 6.494E-8},
};

constexpr R8 kLightest = 0.1045;  // smallest acentric factor of the generalised curves

// Generalised curves; below their range those of its lower end, with b shifted to meet the fixed constants.
void set_curves(int i) {
  CurveSet curves{};
  I4 icode = 0;
  R8 reserved = 0.0;
  SSMPC4(std::max(comp.OMEGA(i), kLightest), curves, icode, reserved);
  for (int k = 1; k <= 15; ++k) comp.PARABF(i, k) = curves(k);
  const auto meet = [i](R8 b) {
    comp.PARABF(i, 6) += 100.0 * b - 100.0 * SSMPC1(comp.PARABF, kMaxComponents, i, 5, 1.04, 1);
  };
  if (i == kNitrogen) meet(0.080835);
  if (i == kHydrogen) {
    meet(0.083814);
    // Stays above the floor of a at many times the critical temperature.
    comp.PARABF(i, 12) = 1.0;
    comp.PARABF(i, 13) = -1.2;
  }
}

void set_component(int i, const Row& row) {
  comp.ICS(i) = row.code;
  comp.TC(i) = row.TC;
  comp.PC(i) = row.PC;
  comp.OMEGA(i) = row.OMEGA;
  comp.RMOLW(i) = row.RMOLW;
  comp.ISOFAM(i) = row.family;
  comp.ICPIG(i) = 1;
  comp.COFHT(i, 1) = row.c1;
  comp.COFHT(i, 2) = row.c2;
  comp.COFHT(i, 3) = row.c3;
  comp.COFHT(i, 4) = row.c4;
  set_curves(i);
}

}  // namespace

void set_slot(int slot, I4 code, I4 function, I4 pure_code, I4 mix, R8 c1, R8 c2) {
  models.count = std::max(models.count, slot);
  models.MODEL(slot) = code;
  models.MODTYP(slot) = model_class::equation_of_state;
  models.MODFUN(slot) = function;
  models.MODPUR(slot) = pure_code;
  models.MODMIX(slot) = mix;
  models.C1PAR(slot) = c1;
  models.C2PAR(slot) = c2;
  const R8 n = 2.0 + c1 + c2;
  const R8 k = 27.0 * (1.0 + c1) * (1.0 + c2);
  R8 b = 0.08;
  for (int step = 0; step < 50; ++step)
    b += (std::pow(1.0 - n * b, 3) - k * b * b) / (3.0 * n * std::pow(1.0 - n * b, 2) + 2.0 * k * b);
  const R8 f = (1.0 + (1.0 - c1 - c2) * b) / 3.0;
  models.OBPAR(slot) = b;
  models.OAPAR(slot) = f * f * f / b - c1 * c2 * (1.0 + b) * b;
}

void update_pairs() {
  const auto list = [](const PairRecord::Table& table, const PairRecord::Table& slope, I4& count,
                       Vec<I4, kMaxOrderedPairs>& it, Vec<I4, kMaxOrderedPairs>& jt) {
    count = 0;
    for (int i = 1; i <= setup.NUMH; ++i) {
      for (int j = i + 1; j <= setup.NUMH; ++j) {
        if (table(i, j) == 0.0 && slope(i, j) == 0.0) continue;
        it(count + 1) = jt(count + 2) = i;
        jt(count + 1) = it(count + 2) = j;
        count += 2;
      }
    }
  };
  list(pairs.TETA0, pairs.TETA0T, pairs.NT0, pairs.IT0, pairs.JT0);
  list(pairs.TETA1, pairs.TETA1T, pairs.NT1, pairs.IT1, pairs.JT1);
  pairs.NF = 0;
  for (int i = 1; i <= setup.NUMH; ++i) {
    pairs.NFAM(i) = 0;
    for (int j = 1; j <= setup.NUMH; ++j) pairs.IDELTA(i, j) = comp.ISOFAM(i) == comp.ISOFAM(j) ? 1 : 0;
    for (int j = 1; j < i && pairs.NFAM(i) == 0; ++j)
      if (comp.ISOFAM(i) == comp.ISOFAM(j)) pairs.NFAM(i) = pairs.NFAM(j);
    if (pairs.NFAM(i) == 0) pairs.NFAM(i) = ++pairs.NF;
  }
  ++setup.generation;
}

void set_pair_parameters() {
  for (int i = 1; i <= setup.NUMH; ++i) {
    for (int j = i + 1; j <= setup.NUMH; ++j) {
      pairs.TETA0(i, j) = pairs.TETA0(j, i) = 0.01 + 0.003 * ((i * 7 + j * 3) % 11);
      pairs.TETA0T(i, j) = pairs.TETA0T(j, i) = 1E-5 * ((i * 5 + j) % 7 - 3);
      if (comp.ISOFAM(i) == comp.ISOFAM(j)) continue;
      pairs.TETA1(i, j) = 0.02 * ((i + 3 * j) % 5 - 1.5);
      pairs.TETA1T(i, j) = 2E-5 * ((2 * i + j) % 5 - 1.5);
      pairs.TETA1(j, i) = -pairs.TETA1(i, j);
      pairs.TETA1T(j, i) = -pairs.TETA1T(i, j);
    }
  }
  update_pairs();
}

void reset_fixture() {
  const I4 generation = setup.generation;
  setup = {};
  setup.generation = generation + 1;
  comp = {};
  pairs = {};
  models = {};
  reset_error_ring();
  reset_eos_caches();
  setup.TREF = 273.15;
  setup.NUMH = kMaxComponents;
  int i = 0;
  for (const Row& row : kRows) set_component(++i, row);
  while (i < kMaxComponents) {
    ++i;
    const R8 size = 0.02 * (i - kHexane);
    set_component(i, {"CX", 510.0 + 300.0 * size, 30.0 - 18.0 * size, 0.31 + 0.5 * size, 88.0 + 200.0 * size,
                      1, 5.0, 5.0E-1, -2.0E-4, 2.0E-8});
  }
  update_pairs();
  set_slot(kCubic, model::vardo1, fun::cubic, pure::vardo, mixing::classical, 0.0, 1.0);
  set_slot(kIdealGas, model::ideal_gas, fun::ideal_gas, pure::none, mixing::none, 0.0, 1.0);
  set_slot(kEqualC, model::van_der_waals, fun::cubic, pure::vardo, mixing::classical, 0.0, 0.0);
  set_slot(kNegativeC, model::peng_robinson, fun::cubic, pure::vardo, mixing::classical, widen(-0.41421354F),
           widen(2.4142137F));
  set_slot(kOtherSlot, model::vardo1, fun::cubic, pure::vardo, mixing::classical, 0.0, 1.0);
}

Call::Call() : args{}, x{}, FUG{}, FUGTL{}, FUGPL{}, ZN{}, HNR{}, SNR{}, FUGN{} {
  args.IPHASE = phase::gibbs;
  args.KROOT = root_option::real_only;
  args.IHTYPE = thermal::total;
  args.MODEL = kCubic;
  args.XIN = &x;
  args.FUG = &FUG;
  args.FUGTL = &FUGTL;
  args.FUGPL = &FUGPL;
  args.FUGN = &FUGN;
  args.ZN = &ZN;
  args.HNR = &HNR;
  args.SNR = &SNR;
}

void Call::composition(const std::vector<R8>& n) {
  x = {};
  args.NCOMP = static_cast<I4>(n.size());
  for (int i = 1; i <= args.NCOMP; ++i) x(i) = n[static_cast<std::size_t>(i - 1)];
}

void Call::want_all() {
  args.LFUG = args.LVOL = args.LTHERM = true;
  for (int k = 1; k <= 3; ++k) args.LDFUG(k) = args.LDVOL(k) = args.LDTHERM(k) = true;
}

}  // namespace talix::test
