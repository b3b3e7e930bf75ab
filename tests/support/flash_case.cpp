#include "support/flash_case.h"

#include <algorithm>

#include "api/small_calls.h"
#include "base/text.h"
#include "engine/reset.h"
#include "fastprops/error_matrix.h"
#include "fastprops/flash_record.h"
#include "support/test_support.h"

namespace talix::test {

void fresh_library(const std::string& install) {
  reset_engine();
  reset_flash_record();
  ERRINIT();
  const I4 usage = 0;
  const I4 hook = 0;
  const I4 no_unit = -1;
  SETTALIXUSAGE(&usage, &hook, &no_unit);
  install_from(install);
}

void fresh_library() { fresh_library(install_directory()); }

void verify(int level) {
  const I4 LEVEL = level;
  SETTALIXVERIFY(&LEVEL);
}

void fresh_flashes_alone() {
  fresh_library();
  verify(verify_level::flashes_alone);
}

void install_from(const std::string& directory) {
  const I4 length = static_cast<I4>(directory.size());
  SETTALIXINSTALL(directory.c_str(), length, &length);
}

std::string FlashCase::run() {
  I4 NC = nc();
  for (int i = 1; i <= std::min(nc(), kMaxComponents); ++i) {
    SCAL(i, 1) = static_cast<R4>(numbers[static_cast<std::size_t>(i - 1)]);
    SCAL(i, 2) = feed[static_cast<std::size_t>(i - 1)];
  }
  std::string STR(160, '#');
  TALIX(&NC, &T, &P, &FRV, &UNIT, 1, &IFLASH, &SCAL, &TPROPS, STR.data(), static_cast<I4>(STR.size()));
  return std::string{trimmed(STR)};
}

FlashCase natural_gas() {
  FlashCase gas;
  gas.numbers = {15, 4, 20, 21, 22, 24, 23, 25, 28, 116};
  gas.feed = {0.020F, 0.015F, 0.840F, 0.060F, 0.030F, 0.007F, 0.010F, 0.006F, 0.007F, 0.005F};
  gas.T = -20.0F;
  gas.P = 40.0F;
  return gas;
}

}  // namespace talix::test
