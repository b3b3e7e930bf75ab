// A mixture in the flash record for the searches at a given vapour fraction.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "fastprops/error_matrix.h"
#include "fastprops/flash_message.h"
#include "fastprops/flash_record.h"
#include "support/flash_case.h"

namespace talix::test {

// FLASH is the routine, TYPE its code of the entry call.
template <void (*FLASH)(Message&), I4 TYPE>
class FractionSearch : public testing::Test {
 protected:
  void SetUp() override {
    fresh_flashes_alone();
    load({22, 23, 25, 28}, {0.2F, 0.3F, 0.3F, 0.2F});
  }
  // Leaves a mixture at 300 K in the record, its search started from 5 bar.
  static void load(std::vector<int> numbers, std::vector<R4> feed) {
    FlashCase c;
    c.numbers = std::move(numbers);
    c.feed = std::move(feed);
    ASSERT_EQ(c.run(), "");
    errmat.NERRS = 0;
    errmat.ERRMAT.fill(0);
    start(300.0F, 5.0F, 0.3F);
  }
  static void start(R4 T, R4 P, R4 FRV) {
    fl.T = T;
    fl.P = P;
    fl.FRV = FRV;
    fl.NCAL = flash_status::fresh;
    fl.KSTART = false;
    fl.IFLASH = TYPE;
  }
  static std::string flash() {
    Message STR{};
    STR.blank();
    FLASH(STR);
    return std::string{trimmed(STR)};
  }
};

}  // namespace talix::test
