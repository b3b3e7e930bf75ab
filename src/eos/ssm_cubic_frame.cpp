#include "eos/ssm_cubic_frame.h"

#include "engine/codes.h"
#include "engine/error_ring.h"
#include "engine/model_record.h"
#include "eos/cubic_record.h"
#include "eos/scb_root_choice.h"
#include "eos/ses_pure_parameters.h"
#include "eos/ssm_mixing.h"
#include "eos/ssm_model_function.h"

namespace talix {

namespace {

using q_index::IA;
using q_index::IB;

constexpr const char* kFunctionFailed = "Could not evaluate expressions related to e.o.s. model function";

// Pressure of a given volume; the given volume of a translated model carries its translation.
void pressure_of_volume(const I4& MODEL, const R8& T, const CompVec& X, const I4& IFCOM, const I4& ILCOM,
                        const QVec& Q, R8& P, R8& V, R8& Z, I4& ICODE) {
  if (models.MODFUN(MODEL) == fun::ideal_gas) {
    Z = 1.0;
    P = kGasConstant * T / V;
    if (!(P > 0.0)) ICODE = status::numerical;
    return;
  }
  V /= kGasConstant;
  if (models.MODPUR(MODEL) == pure::vardo95 || models.MODPUR(MODEL) == pure::soave) {
    R8 shift = 0.0;
    for (int i = IFCOM; i <= ILCOM; ++i) shift += X(i) * pures.CRK(i);
    V -= shift;
  }
  const R8 a = Q(IA);
  const R8 b = Q(IB);
  P = T * (1.0 / (V - b) - (a / (cur.C1PAR * b + V)) / (cur.C2PAR * b + V));
  Z = P * V / T;
  if (!(V > b)) {
    // Below b the pressure is negative, and the reduced form no longer shows which side v is on.
    report_volume_below_covolume(ICODE);
    SERPU0(severity::error, "SSM000", kFunctionFailed);
  } else if (!(P > 0.0)) {
    ICODE = status::numerical;
  }
  V *= kGasConstant;
}

}  // namespace

// SSM000: parameters, root and model function of the generalised cubic or the ideal gas.
//
// In       MODEL     I4     slot of the model table
//          IPHASE    I4     phase::vapour, liquid, gibbs, hydrate, solid; phase::given_volume
//          T         R8     temperature [K]
//          X         R8(50) mole fractions of IFCOM..ILCOM [-]
//          OPTMR, OPTMOD    requests, see SESAO0
//          KROOT     I4     root_option::pseudo allows a pseudo-root
// In/Out   P         R8     pressure [Pa]; out for a given volume
//          V         R8     volume [m3/mol], without translation on return; in for a given volume
// Out      Z         R8     compressibility without translation [-]
//          ZOTHER    R8     the opposite extreme root [-]
//          ZGAP      R8     difference of the Gibbs measure of the extreme roots, 0 where not compared
//          mixture          parameter vector
//          function         model function
//          IPHRTN    I4     type of the root; stays as it is for a given volume
// Shared   reads models, cur, pures
// Status   ok; not_available; no_root; numerical
// Reports  "Incorrect model function", "Illegal phase type", "Could not solve cubic equation of state",
//          "Could not evaluate expressions related to e.o.s. model function", all severity 3
// Oddity   a model function that is not served is reported, and the status stays ok; the status of SESPC0
//          is not looked at, and a root search overwrites it
void SSM000(const I4& MODEL, const I4& IPHASE, const R8& T, R8& P, const CompVec& X, const I4& IFCOM,
            const I4& ILCOM, const Vec<bool, 6>& OPTMR, const Vec<bool, 20>& OPTMOD, R8& V, R8& Z, R8& ZOTHER,
            R8& ZGAP, const I4& KROOT, MixtureVector& mixture, ModelFunction& function, I4& IPHRTN,
            I4& ICODE) {
  ICODE = status::ok;
  const I4 MODFUN = models.MODFUN(MODEL);

  // Parameters.
  if (MODFUN == fun::cubic) {
    mixture.NQ = 2;
    SESPC0(T, MODEL, OPTMR, IFCOM, ILCOM, ICODE);
  } else if (MODFUN == fun::ideal_gas) {
    mixture.NQ = 0;
  } else {
    SERPU0(severity::error, "SSM000", "Incorrect model function");
    return;
  }
  SSMMIX(T, X, mixture, IFCOM, ILCOM, OPTMR, MODEL);

  // Pressure of the volume, or volume of the pressure.
  switch (IPHASE) {
    case phase::given_volume:
      ZOTHER = 0.0;
      ZGAP = 0.0;
      pressure_of_volume(MODEL, T, X, IFCOM, ILCOM, mixture.Q, P, V, Z, ICODE);
      break;
    case phase::vapour:
    case phase::liquid:
    case phase::gibbs:
    case phase::hydrate:
    case phase::solid:
      SCBDS3(MODFUN, mixture.Q, T, P, IPHASE, Z, ZOTHER, ZGAP, KROOT, IPHRTN, ICODE);
      if (ICODE != status::ok) {
        SERPU0(severity::error, "SSM000", "Could not solve cubic equation of state");
        return;
      }
      V = kGasConstant * Z * T / P;
      break;
    default:
      ICODE = status::not_available;
      SERPU0(severity::error, "SSM000", "Illegal phase type");
      return;
  }
  if (ICODE != status::ok) return;

  // Model function.
  if (MODFUN == fun::cubic) {
    SSMMF0(Z, T, mixture.MQ, mixture.Q, P, function, OPTMOD, ICODE);
  } else {
    SSMIDG(mixture.MQ, function, OPTMOD, ICODE);
  }
  if (ICODE != status::ok) SERPU0(severity::error, "SSM000", kFunctionFailed);
}

}  // namespace talix
