#include "eos/ssm_model_function.h"

#include <cmath>

#include "engine/codes.h"
#include "engine/error_ring.h"
#include "eos/cubic_record.h"

namespace talix {

namespace {

using namespace q_index;

// Working names of the model function.
struct Terms {
  R8 POVERT;            // P/T [Pa/K]
  R8 z, A, B;           // [-]
  R8 OVMB, OV1B, OV2B;  // reciprocals of z - B, z + c1 B, z + c2 B
  R8 D;                 // product of the last two
  R8 ALVVMB, ALVVPB;    // logarithmic terms of the residual function
  R8 c1, c2;
};

void zero(QSquare& square) {
  for (QVec& row : square.v) row.fill(0.0);
}

void set_symmetric(QSquare& square, int k, int l, R8 value) {
  square(k)(l) = value;
  square(l)(k) = value;
}

// Derivatives of the pressure.
void pressure_terms(const Terms& t, ModelFunction& f, const Vec<bool, 20>& OPTMOD) {
  const R8 OVMB2 = t.OVMB * t.OVMB;
  const R8 AD = t.A * t.D;
  const R8 sum = t.OV1B + t.OV2B;
  const R8 w = t.c1 * t.OV1B + t.c2 * t.OV2B;
  const R8 slope = -(OVMB2 - AD * sum) * t.z;

  if (OPTMOD(2)) f.PV = slope;
  if (OPTMOD(4)) f.PT = t.OVMB - AD;
  if (OPTMOD(3)) {
    f.PQ(IN) = t.OVMB;
    f.PQ(IA) = -t.POVERT * t.D;
    f.PQ(IB) = t.POVERT * (OVMB2 + AD * w);
  }
  if (OPTMOD(5))
    f.PVV = (2.0 * OVMB2 * t.OVMB - 2.0 * AD * (t.OV1B * t.OV1B + t.D + t.OV2B * t.OV2B)) * (t.z * t.z);
  if (OPTMOD(6)) f.PTT = 0.0;
  if (OPTMOD(7)) {
    const R8 P2 = t.POVERT * t.POVERT;
    const R8 c1V = t.c1 * t.OV1B;
    const R8 c2V = t.c2 * t.OV2B;
    zero(f.PQQ);
    set_symmetric(f.PQQ, IN, IB, t.POVERT * OVMB2);
    set_symmetric(f.PQQ, IA, IB, P2 * t.D * w);
    f.PQQ(IB)(IB) = P2 * (2.0 * OVMB2 * t.OVMB - AD * (w * w + c1V * c1V + c2V * c2V));
  }
  if (OPTMOD(8)) f.PVT = slope;
  if (OPTMOD(9)) {
    f.PQV(IN) = -OVMB2 * t.z;
    f.PQV(IA) = t.POVERT * t.D * sum * t.z;
    f.PQV(IB) = -t.POVERT *
                (2.0 * OVMB2 * t.OVMB + AD * (w * sum + t.c1 * t.OV1B * t.OV1B + t.c2 * t.OV2B * t.OV2B)) *
                t.z;
  }
}

// Residual function and its derivatives.
void residual_terms(const Terms& t, ModelFunction& f, const Vec<bool, 20>& OPTMOD) {
  if (OPTMOD(11)) f.F = t.A * t.ALVVPB + t.ALVVMB;
  if (OPTMOD(14)) f.FT = 0.0;
  if (OPTMOD(16)) f.FTT = 0.0;
  if (OPTMOD(20)) f.FQTCQ.fill(0.0);
  if (!OPTMOD(13) && !OPTMOD(17)) return;
  const R8 AB = t.A / t.B;
  if (OPTMOD(13)) {
    f.FQ(IN) = t.ALVVMB;
    f.FQ(IA) = t.POVERT * t.ALVVPB;
    f.FQ(IB) = t.POVERT * (t.OVMB - AB * t.ALVVPB - AB * t.z * t.D);
  }
  if (OPTMOD(17)) {
    const R8 P2 = t.POVERT * t.POVERT;
    const R8 w = t.c1 * t.OV1B + t.c2 * t.OV2B;
    zero(f.FQQ);
    set_symmetric(f.FQQ, IN, IB, t.POVERT * t.OVMB);
    set_symmetric(f.FQQ, IA, IB, -P2 * (t.z * t.D + t.ALVVPB) / t.B);
    f.FQQ(IB)(IB) = P2 * (t.OVMB * t.OVMB + (2.0 * AB / t.B) * t.ALVVPB + AB * t.z * t.D * (2.0 / t.B + w));
  }
}

}  // namespace

void report_volume_below_covolume(I4& ICODE) {
  SERPU0(severity::error, "SSMMF0", "Volume below co-volume (v < b) in equation of state");
  ICODE = status::numerical;
}

// SSMMF0: pressure and residual function of the generalised cubic.
//
// In       Z         R8        compressibility without translation [-]
//          T, P      R8        [K], [Pa]
//          Q         R8(0..2)  mole number [-], a [K/Pa], b [K/Pa]
//          OPTMOD    flags     1 back-check of the pressure, 2 PV, 3 PQ, 4 PT, 5 PVV, 6 PTT, 7 PQQ, 8 PVT,
//                              9 PQV, 11 F, 13 FQ, 14 FT, 16 FTT, 17 FQQ, 20 FQTCQ
// Out      MQ        I4(0..2)  degrees of homogeneity 1, 2, 1
//          function            the entries asked for; the others stay as they are
// Shared   reads cur
// Status   ok; numerical (volume not above the co-volume)
// Reports  "Volume below co-volume (v < b) in equation of state", severity 3
//          "Backcalculated pressure not equal to input pressure", severity 1
// Oddity   a pressure mismatch is only reported, since a pseudo-root has one by design
void SSMMF0(const R8& Z, const R8& T, QDegrees& MQ, const QVec& Q, const R8& P, ModelFunction& function,
            const Vec<bool, 20>& OPTMOD, I4& ICODE) {
  ICODE = status::ok;
  Terms t;
  t.POVERT = P / T;
  t.z = Z;
  t.A = Q(IA) * t.POVERT;
  t.B = Q(IB) * t.POVERT;
  t.c1 = cur.C1PAR;
  t.c2 = cur.C2PAR;
  if (!(t.B < Z)) {
    report_volume_below_covolume(ICODE);
    return;
  }
  MQ(IN) = 1;
  MQ(IA) = 2;
  MQ(IB) = 1;

  const R8 VMB = Z - t.B;
  const R8 VP1B = Z + t.c1 * t.B;
  const R8 VP2B = Z + t.c2 * t.B;
  t.OVMB = 1.0 / VMB;
  t.OV1B = 1.0 / VP1B;
  t.OV2B = 1.0 / VP2B;
  t.D = t.OV1B * t.OV2B;
  t.ALVVMB = std::log(Z / VMB);
  // Equal constants take the exact limit.
  t.ALVVPB = t.c1 != t.c2 ? std::log(VP1B / VP2B) / ((t.c2 - t.c1) * t.B) : -t.OV1B;

  if (OPTMOD(1)) {
    const R8 PCHK = t.OVMB - t.A * t.D;
    if (!(std::abs(PCHK - 1.0) <= 1E-6))
      SERPU0(severity::warning, "SSMMF0", "Backcalculated pressure not equal to input pressure");
  }
  pressure_terms(t, function, OPTMOD);
  residual_terms(t, function, OPTMOD);
}

// SSMIDG: model function of the ideal gas.
//
// In       OPTMOD    flags     as in SSMMF0
// Out      MQ        I4(0..2)  degree 1 of the mole number
//          function            the entries asked for
// Status   ok
void SSMIDG(QDegrees& MQ, ModelFunction& function, const Vec<bool, 20>& OPTMOD, I4& ICODE) {
  ICODE = status::ok;
  MQ(IN) = 1;
  ModelFunction& f = function;
  if (OPTMOD(2)) f.PV = -1.0;
  if (OPTMOD(4)) f.PT = 1.0;
  if (OPTMOD(3)) f.PQ(IN) = 1.0;
  if (OPTMOD(5)) f.PVV = 2.0;
  if (OPTMOD(6)) f.PTT = 0.0;
  if (OPTMOD(7)) zero(f.PQQ);
  if (OPTMOD(8)) f.PVT = -1.0;
  if (OPTMOD(9)) f.PQV(IN) = -1.0;
  if (OPTMOD(11)) f.F = 0.0;
  if (OPTMOD(13)) f.FQ(IN) = 0.0;
  if (OPTMOD(14)) f.FT = 0.0;
  if (OPTMOD(16)) f.FTT = 0.0;
  if (OPTMOD(17)) zero(f.FQQ);
  if (OPTMOD(20)) f.FQTCQ.fill(0.0);
}

}  // namespace talix
