// What the database tests share: an empty engine whose data directory is a scratch folder.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "base/stop_handler.h"
#include "database/component_record.h"
#include "database/directory_record.h"
#include "database/file_layer.h"
#include "database/pair_record.h"
#include "database/unit_table.h"
#include "engine/codes.h"
#include "engine/error_ring.h"
#include "engine/reset.h"
#include "engine/setup.h"
#include "engine/setup_record.h"
#include "support/bank_writer.h"
#include "support/test_support.h"

namespace talix::test {

inline std::vector<std::string> stops;

class DatabaseTest : public ::testing::Test {
 protected:
  DatabaseTest() {
    reset_engine();
    reset_error_ring();
    stops.clear();
    previous_ = set_stop_handler([](std::string_view text) { stops.emplace_back(text); });
    setup.platform = platform::pc_ftn77;
    folder = scratch.path() / "Zandor";
    std::filesystem::create_directories(folder);
    I4 NFAIL = 0;
    SSYAO2(folder.string() + "\\", NFAIL);
  }
  ~DatabaseTest() override {
    set_stop_handler(previous_);
    reset_engine();
  }

  static void set_components(std::initializer_list<std::string_view> codes) {
    setup.NUMH = 0;
    for (const std::string_view code : codes) setup.SHCOMP(++setup.NUMH) = code;
  }
  static int open_units() {
    int count = 0;
    for (I4 unit = 1; unit <= kLastUnit; ++unit) count += unit_is_open(unit) ? 1 : 0;
    return count;
  }
  // Severity and routine of the last entry of the ring.
  static std::string last_entry() {
    if (ring.count == 0) return {};
    return std::to_string(ring.SEVER0(ring.count)) + " " + std::string{trimmed(ring.NAMER0(ring.count))} +
           " " + std::string{trimmed(ring.TXTER0(ring.count))};
  }

  ScratchDirectory scratch;
  std::filesystem::path folder;

 private:
  StopHandler previous_;
};

}  // namespace talix::test
