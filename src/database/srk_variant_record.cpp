#include "database/srk_variant_record.h"

namespace talix {

constinit SrkVariantRecord srk_variants{};

}  // namespace talix
