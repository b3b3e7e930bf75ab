// The caches never change a result: any order of calls gives what a fresh engine gives.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "database/component_record.h"
#include "database/pair_record.h"
#include "engine/codes.h"
#include "engine/model_record.h"
#include "engine/setup_record.h"
#include "eos/eos_caches.h"
#include "eos/ssm_pure_generalised.h"
#include "support/eos_fixture.h"

namespace talix::test {
namespace {

// One request: model, range, temperature, flags.
struct Request {
  int slot;
  int range;  // components, or minus a single one
  R8 T;
  int flags;
};

constexpr int kFlagSets = 7;

void run(const Request& request, Call& call) {
  std::vector<R8> n;
  for (int i = 1; i <= 10; ++i) n.push_back(0.1 + 0.01 * i);
  call.composition(n);
  EosArgs& a = call.args;
  a.NCOMP = request.range;
  a.MODEL = request.slot;
  a.T = request.T;
  a.P = 2E6;
  switch (request.flags) {
    case 0:
      a.LFUG = true;
      break;
    case 1:
      a.LDFUG(1) = a.LFUG = true;
      break;
    case 2:
      a.LDFUG(3) = a.LFUG = true;
      break;
    case 3:
      a.LDVOL(1) = a.LVOL = true;
      break;
    case 4:
      a.LTHERM = true;
      break;
    case 5:
      a.LVOL = true;
      break;
    default:
      call.want_all();
  }
  call.run();
}

template <int N>
void expect_same(const Vec<R8, N>& left, const Vec<R8, N>& right, const char* name) {
  EXPECT_EQ(std::memcmp(&left, &right, sizeof left), 0) << name;
}

void expect_same(const Call& left, const Call& right) {
  const EosArgs& a = left.args;
  const EosArgs& b = right.args;
  EXPECT_EQ(a.ICODE, b.ICODE);
  EXPECT_EQ(a.IPHRTN, b.IPHRTN);
  const R8 EosArgs::*fields[] = {&EosArgs::V,      &EosArgs::Z,     &EosArgs::ZT,    &EosArgs::ZP,
                                 &EosArgs::H,      &EosArgs::HT,    &EosArgs::HP,    &EosArgs::S,
                                 &EosArgs::ST,     &EosArgs::SP,    &EosArgs::BETA,  &EosArgs::KAPS,
                                 &EosArgs::KAPT,   &EosArgs::CP,    &EosArgs::CV,    &EosArgs::JTC,
                                 &EosArgs::WSOUND, &EosArgs::DKAPT, &EosArgs::ZOTHER};
  for (const auto field : fields) EXPECT_EQ(a.*field, b.*field);
  expect_same(left.FUG, right.FUG, "FUG");
  expect_same(left.FUGTL, right.FUGTL, "FUGTL");
  expect_same(left.FUGPL, right.FUGPL, "FUGPL");
  expect_same(left.ZN, right.ZN, "ZN");
  expect_same(left.HNR, right.HNR, "HNR");
  expect_same(left.SNR, right.SNR, "SNR");
  EXPECT_EQ(std::memcmp(&left.FUGN, &right.FUGN, sizeof left.FUGN), 0);
}

class Caches : public ::testing::Test {
 protected:
  void SetUp() override {
    reset_fixture();
    set_pair_parameters();
  }
  // What the engine says now, and what a fresh one says.
  static void expect_fresh(const Request& request) {
    Call warm;
    run(request, warm);
    reset_eos_caches();
    Call fresh;
    run(request, fresh);
    ASSERT_EQ(fresh.args.ICODE, status::ok);
    expect_same(warm, fresh);
  }
};

const std::vector<Request>& requests() {
  static const std::vector<Request> all = [] {
    std::vector<Request> list;
    for (const int slot : {kCubic, kNegativeC, kOtherSlot, kEqualC, kIdealGas})
      for (const int range : {10, 6, -4})
        for (const R8 T : {260.0, 340.0})
          for (int flags = 0; flags < kFlagSets; ++flags) list.push_back({slot, range, T, flags});
    return list;
  }();
  return all;
}

TEST_F(Caches, EveryOrderOfTwoRequestsGivesFreshResults) {
  // The second of every ordered pair against a fresh engine.
  std::vector<Call> fresh(requests().size());
  for (std::size_t k = 0; k < requests().size(); ++k) {
    reset_eos_caches();
    run(requests()[k], fresh[k]);
    ASSERT_EQ(fresh[k].args.ICODE, status::ok);
  }
  for (const Request& before : requests()) {
    for (std::size_t k = 0; k < requests().size(); ++k) {
      reset_eos_caches();
      Call first;
      run(before, first);
      Call second;
      run(requests()[k], second);
      expect_same(second, fresh[k]);
      if (HasFailure()) return;
    }
  }
}

TEST_F(Caches, LongRandomSequencesGiveFreshResults) {
  std::vector<Call> fresh(requests().size());
  for (std::size_t k = 0; k < requests().size(); ++k) {
    reset_eos_caches();
    run(requests()[k], fresh[k]);
  }
  std::mt19937 random(7);
  std::uniform_int_distribution<std::size_t> pick(0, requests().size() - 1);
  for (int step = 0; step < 20000; ++step) {
    const std::size_t k = pick(random);
    Call call;
    run(requests()[k], call);
    expect_same(call, fresh[k]);
    if (HasFailure()) return;
  }
}

TEST_F(Caches, ChangedConstantsOfASlotAreNoticed) {
  const Request request{kCubic, 6, 300.0, 6};
  Call before;
  run(request, before);
  set_slot(kCubic, model::vardo1, fun::cubic, pure::vardo, mixing::classical, 0.0, 0.5);
  expect_fresh(request);
}

TEST_F(Caches, ChangedDataAreNoticedThroughTheCounter) {
  const Request request{kCubic, 6, 300.0, 6};
  Call before;
  run(request, before);
  pairs.TETA0(1, 2) = pairs.TETA0(2, 1) = 0.3;
  ++setup.generation;
  expect_fresh(request);

  CurveSet curves{};
  R8 reserved = 0.0;
  I4 code = 0;
  SESGE0(model::vardo1, 400.0, 40.0, 0.3, 3, curves, reserved, code);
  expect_fresh(request);

  pairs.TETA1.fill(0.0);
  pairs.TETA1T.fill(0.0);
  update_pairs();
  expect_fresh(request);
}

TEST_F(Caches, FailedCallLeavesNothingBehind) {
  const Request request{kCubic, 6, 300.0, 6};
  Call before;
  run(request, before);
  models.MODPUR(kOtherSlot) = pure::none;
  Call failed;
  run({kOtherSlot, 6, 300.0, 6}, failed);
  EXPECT_NE(failed.args.ICODE, status::ok);
  Call again;
  run({kOtherSlot, 6, 300.0, 6}, again);
  EXPECT_EQ(again.args.ICODE, failed.args.ICODE);
  expect_fresh(request);
}

}  // namespace
}  // namespace talix::test
