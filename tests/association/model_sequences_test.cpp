// Models of every family by turns: what NRTL, the volume model and the mixing rules keep never changes a result.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <random>
#include <vector>

#include "association/bwrs.h"
#include "database/component_record.h"
#include "database/pair_record.h"
#include "engine/codes.h"
#include "engine/error_ring.h"
#include "engine/model_record.h"
#include "engine/setup_record.h"
#include "eos/eos_caches.h"
#include "liquid/snl_nrtl.h"
#include "support/eos_fixture.h"

namespace talix::test {
namespace {

enum Family {
  kClassical = 1,
  kSoave,
  kPengRobinsonForm,
  kGExcess,
  kAExcess,
  kConsistent,
  kPlanar,
  kVolumes,
  kFamilies = kVolumes,
  kActivity  // NRTL itself, no slot
};

constexpr R8 kCriticalVolumes[] = {0.0986, 0.1455, 0.2000, 0.6240, 0.0941,
                                   0.0559, 0.0892, 0.0650, 0.2550, 0.3680};
constexpr int kComponentCount = 10;
constexpr int kFlagSets = 4;

struct Request {
  int family;
  int range;  // components, or minus a single one
  R8 T;
  int flags;
};

// Everything that a request can set.
struct Answer {
  Call call;
  ExcessGibbs excess{};
};

void ask(const Request& request, Answer& answer) {
  Call& call = answer.call;
  std::vector<R8> n;
  for (int i = 1; i <= kComponentCount; ++i) n.push_back(0.1 + 0.01 * i);
  call.composition(n);
  EosArgs& a = call.args;
  if (request.family == kActivity) {
    ActivityOptions options{};
    for (int option = 1; option <= 6; ++option)
      options(option) = request.flags == 0 || option % 3 == request.flags % 3;
    const int first = request.range > 0 ? 1 : -request.range;
    const int last = request.range > 0 ? request.range : -request.range;
    SNLAC0(request.T, call.x, answer.excess, first, last, options);
    a.ICODE = status::ok;
    return;
  }
  a.NCOMP = request.range;
  a.MODEL = request.family;
  a.T = request.T;
  a.P = 2E6;
  a.IPHASE = phase::vapour;
  a.LVOL = true;
  if (request.family == kVolumes) {
    if (request.flags % 2 == 1) a.IPHASE = phase::liquid;
    for (int k = 1; k <= 3; ++k) a.LDVOL(k) = request.flags >= 2;
  } else if (request.flags == 1) {
    a.LFUG = true;
    a.LDFUG(3) = true;
  } else if (request.flags == 2) {
    a.LFUG = true;
    a.LDFUG(1) = true;
  } else if (request.flags == 3) {
    call.want_all();
  }
  call.run();
}

void forget() {
  reset_eos_caches();
  reset_nrtl_cache();
  reset_bwrs_cache();
}

// Name of the first difference, or nothing.
const char* difference(const Answer& left, const Answer& right) {
  const EosArgs& a = left.call.args;
  const EosArgs& b = right.call.args;
  if (a.ICODE != b.ICODE) return "ICODE";
  if (a.IPHRTN != b.IPHRTN) return "IPHRTN";
  const R8 EosArgs::*fields[] = {&EosArgs::V,    &EosArgs::Z,    &EosArgs::ZT,    &EosArgs::ZP, &EosArgs::H,
                                 &EosArgs::HT,   &EosArgs::S,    &EosArgs::ST,    &EosArgs::CP, &EosArgs::CV,
                                 &EosArgs::BETA, &EosArgs::KAPT, &EosArgs::WSOUND};
  for (const auto field : fields)
    if (!(a.*field == b.*field)) return "a scalar";
  const auto equal = [](const auto& one, const auto& other) {
    return std::memcmp(&one, &other, sizeof one) == 0;
  };
  if (!equal(left.call.FUG, right.call.FUG)) return "FUG";
  if (!equal(left.call.FUGTL, right.call.FUGTL)) return "FUGTL";
  if (!equal(left.call.FUGPL, right.call.FUGPL)) return "FUGPL";
  if (!equal(left.call.FUGN, right.call.FUGN)) return "FUGN";
  if (!equal(left.call.ZN, right.call.ZN)) return "ZN";
  if (!equal(left.excess, right.excess)) return "the excess energy";
  return nullptr;
}

class ModelSequences : public ::testing::Test {
 protected:
  void SetUp() override {
    reset_fixture();
    forget();
    setup.NUMH = kComponentCount;
    for (int i = 1; i <= kComponentCount; ++i) {
      comp.VC(i) = kCriticalVolumes[i - 1];
      comp.ICSTD(i) = 100 + i;
      for (int j = 1; j <= kComponentCount; ++j) {
        if (i == j) continue;
        pairs.TAUT0(i, j) = 0.01 * ((3 * i + j) % 7) - 0.02;
        pairs.TAUT1(i, j) = 3.0 * ((i + 2 * j) % 9) - 10.0;
        pairs.TAUT2(i, j) = 50.0 * ((i + j) % 3);
        pairs.ALFA(i, j) = i < j ? 0.3 : 1E-4;
        pairs.BICWS(i, j) = 0.05;
      }
    }
    set_pair_parameters();
    set_slot(kClassical, model::vardo1, fun::cubic, pure::vardo, mixing::classical, 0.0, 1.0);
    set_slot(kSoave, model::srk, fun::cubic, pure::soave, mixing::classical, 0.0, 1.0);
    set_slot(kPengRobinsonForm, model::peng_robinson, fun::cubic, pure::peng_robinson, mixing::classical,
             widen(-0.41421354F), widen(2.4142137F));
    set_slot(kGExcess, model::vardo2, fun::cubic, pure::vardo, mixing::g_excess, 0.0, 1.0);
    set_slot(kAExcess, model::vardo3, fun::cubic, pure::vardo, mixing::a_excess, 0.0, 1.0);
    set_slot(kConsistent, model::vardo4, fun::cubic, pure::vardo, mixing::nrtl, 0.0, 1.0);
    set_slot(kPlanar, model::vd2d1, fun::cubic, pure::vd2d1, mixing::classical_2d, 0.0, 1.0);
    set_slot(kVolumes, model::bwrs, fun::bwrs, pure::soave, mixing::classical, 0.0, 1.0);
    for (int slot = 1; slot <= kFamilies; ++slot) {
      models.M1PAR(slot) = 1.75256;
      models.M2PAR(slot) = 0.08128;
      models.M3PAR(slot) = 0.1729;
    }
    models.MODLIQ(kGExcess) = models.MODLIQ(kAExcess) = model::nrtl;
    ++setup.generation;

    for (int family = 1; family <= kActivity; ++family)
      for (const int range : {kComponentCount, 4, -3})
        for (const R8 T : {330.0, 360.0})
          for (int flags = 0; flags < kFlagSets; ++flags) requests.push_back({family, range, T, flags});
  }

  // Answers of an engine that forgets before each.
  [[nodiscard]] std::vector<std::unique_ptr<Answer>> fresh_answers() const {
    std::vector<std::unique_ptr<Answer>> answers;
    for (const Request& request : requests) {
      forget();
      answers.push_back(std::make_unique<Answer>());
      ask(request, *answers.back());
    }
    return answers;
  }

  std::vector<Request> requests;
};

TEST_F(ModelSequences, EveryRequestIsServed) {
  const auto answers = fresh_answers();
  for (std::size_t k = 0; k < requests.size(); ++k)
    EXPECT_EQ(answers[k]->call.args.ICODE, status::ok) << "family " << requests[k].family << " range "
                                                       << requests[k].range << " flags " << requests[k].flags;
}

TEST_F(ModelSequences, SecondOfEveryTwoRequestsIsFresh) {
  const auto answers = fresh_answers();
  for (const Request& before : requests) {
    for (std::size_t k = 0; k < requests.size(); ++k) {
      const Request& now = requests[k];
      forget();
      Answer first;
      ask(before, first);
      Answer second;
      ask(now, second);
      const char* const what = difference(second, *answers[k]);
      ASSERT_EQ(what, nullptr) << what << ": family " << before.family << " then " << now.family << ", flags "
                               << before.flags << " then " << now.flags << ", range " << before.range
                               << " then " << now.range;
    }
  }
}

TEST_F(ModelSequences, LongSequencesWithChangesOfTheDataAreFresh) {
  std::mt19937 random(11);
  const auto pick = [&](std::size_t count) {
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
  };
  const auto value = [&](R8 low, R8 high) { return std::uniform_real_distribution<R8>(low, high)(random); };
  auto answers = fresh_answers();
  for (int round = 0; round < 12; ++round) {
    switch (round % 4) {
      case 0:
        pairs.TAUT0(2, 3) = value(-0.1, 0.1);
        break;
      case 1:
        comp.OMEGA(2) = value(0.05, 0.2);
        break;
      case 2:
        comp.VC(1) = value(0.09, 0.11);
        break;
      default:
        pairs.TETA0(1, 2) = pairs.TETA0(2, 1) = value(0.0, 0.1);
    }
    ++setup.generation;
    // The first requests after the change meet tables of the old data.
    std::vector<std::pair<std::size_t, std::unique_ptr<Answer>>> warm;
    for (int step = 0; step < 400; ++step) {
      const std::size_t k = pick(requests.size());
      warm.emplace_back(k, std::make_unique<Answer>());
      ask(requests[k], *warm.back().second);
    }
    answers = fresh_answers();
    for (const auto& [k, answer] : warm) {
      const char* const what = difference(*answer, *answers[k]);
      ASSERT_EQ(what, nullptr) << what << ": round " << round << " family " << requests[k].family;
    }
    // Fill the tables with the present data for the next change.
    for (int step = 0; step < 50; ++step) {
      Answer answer;
      ask(requests[pick(requests.size())], answer);
    }
  }
}

}  // namespace
}  // namespace talix::test
