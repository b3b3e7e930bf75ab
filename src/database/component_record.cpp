#include "database/component_record.h"

namespace talix {

constinit ComponentRecord comp{};

void reset_component_record() {
  comp = ComponentRecord{};
  comp.TMELT.fill(-1.0);
}

}  // namespace talix
