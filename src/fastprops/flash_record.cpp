#include "fastprops/flash_record.h"

namespace talix {

namespace {

constexpr FlashRecord record_at_load() {
  FlashRecord record{};
  record.INSTALL.blank();
  for (Text<28>& name : record.NAME.v) name.blank();
  for (Text<4>& name : record.MFDS.v) name.blank();
  record.REDLAB_MODE = kNoParameters;
  return record;
}

constinit const FlashRecord at_load = record_at_load();

}  // namespace

constinit FlashRecord fl = record_at_load();

void reset_flash_record() { fl = at_load; }

}  // namespace talix
