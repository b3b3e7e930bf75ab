#include "database/directory_record.h"

namespace talix {

constinit DirectoryRecord directory{};

void reset_directory_record() { directory = DirectoryRecord{}; }

}  // namespace talix
