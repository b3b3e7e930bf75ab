// A result depends on its arguments only, and a calculation allocates nothing.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <new>
#include <random>

#include "fastprops/flash_record.h"
#include "support/flash_case.h"

namespace {

// Calls of the replaced allocator.
int allocations = 0;

void* counted_or_null(std::size_t size) noexcept {
  ++allocations;
  return std::malloc(size != 0 ? size : 1);
}

void* counted(std::size_t size) {
  void* memory = counted_or_null(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

void* operator new(std::size_t size) { return counted(size); }
void* operator new[](std::size_t size) { return counted(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return counted_or_null(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return counted_or_null(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace talix {
namespace {

// What a call hands back, as plain bytes.
struct Outcome {
  R4 T, P, FRV;
  ScalTable SCAL;
  PropertyTable TPROPS;
  char STR[120];
};

constexpr std::array<R4, 10> kNumbers = {15, 4, 20, 21, 22, 24, 23, 25, 28, 116};

Outcome call(R4 T, R4 P, char UNIT, I4 IFLASH, const std::array<R4, 10>& feed) {
  Outcome r{};
  r.T = T;
  r.P = P;
  r.FRV = 1.0F;
  I4 NC = 10;
  for (int i = 1; i <= 10; ++i) {
    r.SCAL(i, 1) = kNumbers[static_cast<std::size_t>(i - 1)];
    r.SCAL(i, 2) = feed[static_cast<std::size_t>(i - 1)];
  }
  TALIX(&NC, &r.T, &r.P, &r.FRV, &UNIT, 1, &IFLASH, &r.SCAL, &r.TPROPS, r.STR, 120);
  return r;
}

constexpr std::array<R4, 10> kFeed = {0.020F, 0.015F, 0.840F, 0.060F, 0.030F,
                                      0.007F, 0.010F, 0.006F, 0.007F, 0.005F};

struct State {
  R4 T, P;
};
// Two phases, gas, dense, liquid.
constexpr State kStates[] = {{-20.0F, 40.0F}, {100.0F, 1.0F}, {30.0F, 250.0F}, {-150.0F, 60.0F}};

void make_history() {
  std::mt19937 engine(7);
  const auto uniform = [&engine] { return static_cast<R4>(engine() >> 8) / 16777216.0F; };
  for (int k = 0; k < 1000; ++k) {
    std::array<R4, 10> feed{};
    for (R4& f : feed) f = uniform();
    // Every hundredth call has another list, every tenth fails.
    if (k % 100 == 99) {
      test::FlashCase other;
      other.numbers = {22, 277, 9};
      other.feed = {uniform(), uniform(), uniform()};
      other.P = 20.0F;
      other.run();
    }
    call(k % 10 == 9 ? 2000.0F : -150.0F + 400.0F * uniform(), 0.1F + 300.0F * uniform(),
         k % 3 == 0 ? 'W' : 'M', k % 7 == 0 ? 33 : 5, feed);
  }
}

// The same calls in a process of their own, with or without the check behind the flashes.
void fresh_outcomes(int level, Outcome* results) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    ::close(ends[0]);
    test::fresh_library();
    test::verify(level);
    for (const State& s : kStates) {
      const Outcome r = call(s.T, s.P, 'M', 5, kFeed);
      if (::write(ends[1], &r, sizeof r) != static_cast<ssize_t>(sizeof r)) ::_exit(1);
    }
    ::_exit(0);
  }
  ::close(ends[1]);
  for (std::size_t k = 0; k < std::size(kStates); ++k) {
    char* target = reinterpret_cast<char*>(results + k);
    std::size_t got = 0;
    while (got < sizeof(Outcome)) {
      const ssize_t n = ::read(ends[0], target + got, sizeof(Outcome) - got);
      ASSERT_GT(n, 0);
      got += static_cast<std::size_t>(n);
    }
  }
  ::close(ends[0]);
  int status = 0;
  ::waitpid(child, &status, 0);
  ASSERT_EQ(status, 0);
}

TEST(History, CallAfterAThousandOthersEqualsAFreshProcessBitForBit) {
  for (const int level : {0, 1}) {
    test::fresh_library();
    test::verify(level);
    Outcome fresh[std::size(kStates)];
    fresh_outcomes(level, fresh);
    make_history();
    for (std::size_t k = 0; k < std::size(kStates); ++k) {
      const Outcome after = call(kStates[k].T, kStates[k].P, 'M', 5, kFeed);
      EXPECT_EQ(std::memcmp(&after, &fresh[k], sizeof after), 0) << "state " << k << ", level " << level;
      EXPECT_EQ(after.STR[0], ' ');
    }
  }
}

TEST(Allocation, RepeatedCallsAllocateNothing) {
  test::fresh_library();
  call(kStates[0].T, kStates[0].P, 'M', 5, kFeed);
  const int before = allocations;
  for (const State& s : kStates)
    for (const char UNIT : {'M', 'W'})
      for (const int level : {0, 1}) {
        test::verify(level);
        for (const I4 code : {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 33, 77}) call(s.T, s.P, UNIT, code, kFeed);
      }
  call(5000.0F, 1.0F, 'M', 5, kFeed);
  EXPECT_EQ(allocations, before);
}

TEST(Allocation, CounterSeesTheAllocator) {
  const int before = allocations;
  delete new int(3);
  EXPECT_GE(allocations, before);
  void* memory = ::operator new(16);
  ::operator delete(memory);
  EXPECT_GT(allocations, before);
}

}  // namespace
}  // namespace talix
