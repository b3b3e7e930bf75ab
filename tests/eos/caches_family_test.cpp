// The caches of the whole cubic family never change a result: what any sequence of calls and changes leaves behind
// gives the bits of a fresh engine.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "database/component_record.h"
#include "database/pair_record.h"
#include "database/srk_variant_record.h"
#include "engine/codes.h"
#include "engine/model_record.h"
#include "engine/setup_record.h"
#include "eos/eos_caches.h"
#include "eos/ssm_mixing_g_excess.h"
#include "eos/vardo95_record.h"
#include "liquid/snl_nrtl.h"
#include "support/cubic_family.h"
#include "support/eos_fixture.h"

namespace talix::test {
namespace {

struct Request {
  I4 slot;
  I4 range;  // components, or minus a single one
  R8 T;
  int flags;
};

class CachesFamily : public ::testing::Test {
 protected:
  void SetUp() override {
    reset_cubic_family();
    for (const I4 code :
         {model::vardo1, model::vardo2, model::vardo3, model::vardo4, model::vardo5, model::vd2d1, model::srk,
          model::peng_robinson, model::srk_simsci, model::srk_aspen})
      slots_.push_back(load_model(code));
  }
  static void forget() {
    reset_eos_caches();
    reset_nrtl_cache();
    g_excess = {};
  }
  static void run(const Request& request, Call& call) {
    std::vector<R8> n;
    for (int i = 1; i <= 8; ++i) n.push_back(0.1 + 0.01 * i);
    call.composition(n);
    call.args.NCOMP = request.range;
    call.args.MODEL = request.slot;
    call.args.T = request.T;
    call.args.P = 2E6;
    call.args.LFUG = true;
    call.args.LDFUG(1) = (request.flags & 1) != 0;
    call.args.LDFUG(3) = (request.flags & 2) != 0;
    call.args.LTHERM = (request.flags & 4) != 0;
    call.args.LVOL = (request.flags & 8) != 0;
    call.args.LDVOL(1) = call.args.LVOL;
    call.run();
  }
  static bool same(const Call& left, const Call& right) {
    const EosArgs& a = left.args;
    const EosArgs& b = right.args;
    const R8 EosArgs::*fields[] = {&EosArgs::V, &EosArgs::Z, &EosArgs::ZT,
                                   &EosArgs::H, &EosArgs::S, &EosArgs::CP};
    bool equal = a.ICODE == b.ICODE && a.IPHRTN == b.IPHRTN;
    for (const auto field : fields) equal = equal && std::memcmp(&(a.*field), &(b.*field), sizeof(R8)) == 0;
    return equal && std::memcmp(&left.FUG, &right.FUG, sizeof left.FUG) == 0 &&
           std::memcmp(&left.FUGTL, &right.FUGTL, sizeof left.FUGTL) == 0 &&
           std::memcmp(&left.FUGN, &right.FUGN, sizeof left.FUGN) == 0;
  }
  static void expect_fresh(const Request& request) {
    Call warm;
    run(request, warm);
    forget();
    Call fresh;
    run(request, fresh);
    EXPECT_TRUE(same(warm, fresh)) << "slot " << request.slot << " range " << request.range << " T "
                                   << request.T << " flags " << request.flags;
  }
  std::vector<I4> slots_;
};

TEST_F(CachesFamily, SequencesOfModelsRangesTemperaturesAndFlagsGiveFreshResults) {
  std::vector<Request> requests;
  for (const I4 slot : slots_)
    for (const I4 range : {8, 5, -3})
      for (const R8 T : {240.0, 330.0})
        for (const int flags : {0, 1, 2, 5, 12, 15}) requests.push_back({slot, range, T, flags});
  std::vector<Call> results(requests.size());
  for (std::size_t k = 0; k < requests.size(); ++k) {
    forget();
    run(requests[k], results[k]);
    ASSERT_EQ(results[k].args.ICODE, status::ok) << requests[k].slot << " " << requests[k].range;
  }
  std::mt19937 random(41);
  std::uniform_int_distribution<std::size_t> pick(0, requests.size() - 1);
  for (int step = 0; step < 20000; ++step) {
    const std::size_t k = pick(random);
    Call call;
    run(requests[k], call);
    ASSERT_TRUE(same(call, results[k])) << "slot " << requests[k].slot << " range " << requests[k].range;
  }
}

TEST_F(CachesFamily, EveryKindOfDataThatChangesIsNoticedByEveryModel) {
  using Change = void (*)();
  const Change changes[] = {
      [] { comp.OMEGA(2) += 0.01; },
      [] { comp.PARABF(3, 1) *= 1.01; },
      [] { comp.NOTRY(4) = 1 - comp.NOTRY(4); },
      [] {
        comp.ICSTD(2) = 9;
        comp.NOTRY(2) = 1;
      },
      [] { pairs.TETA0(1, 2) = pairs.TETA0(2, 1) = 0.3; },
      [] { pairs.TETA0T(1, 3) = pairs.TETA0T(3, 1) = 3E-4; },
      [] { pairs.TAUT0(1, 2) += 0.4; },
      [] { pairs.TAUT1(2, 3) += 40.0; },
      [] { pairs.TAUT2(2, 3) += 900.0; },
      [] { pairs.ALFA(1, 4) += 0.1; },
      [] { pairs.BICWS(1, 2) = pairs.BICWS(2, 1) = 0.2; },
      [] { srk_variants.CSRKP2(2, 1) += 0.1; },
      [] { srk_variants.CSRKAP(1, 1) += 0.1; },
      [] { vardo95.C95(1, 1) += 1E-6; },
  };
  for (const Change change : changes) {
    for (const I4 slot : slots_) {
      Call before;
      run({slot, 8, 300.0, 15}, before);
    }
    change();
    ++setup.generation;
    for (const I4 slot : slots_) {
      expect_fresh({slot, 8, 300.0, 15});
      expect_fresh({slot, 5, 300.0, 3});
    }
  }
}

TEST_F(CachesFamily, AModelThatTakesAnotherRuleOrOriginIsNoticed) {
  const I4 slot = slots_.front();
  for (const I4 rule :
       {mixing::g_excess, mixing::nrtl, mixing::a_excess, mixing::classical_2d, mixing::classical}) {
    for (const I4 origin :
         {pure::soave, pure::peng_robinson, pure::vd2d1, pure::phase_envelope, pure::vardo}) {
      if (rule == mixing::classical_2d && origin != pure::vd2d1) continue;
      models.MODMIX(slot) = rule;
      models.MODPUR(slot) = origin;
      models.MODLIQ(slot) = model::nrtl;
      expect_fresh({slot, 8, 300.0, 15});
    }
  }
}

}  // namespace
}  // namespace talix::test
