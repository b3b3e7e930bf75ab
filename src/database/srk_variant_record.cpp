#include "database/srk_variant_record.h"

namespace talix {

constinit SrkVariantRecord srk_variants{};

void reset_srk_variant_record() { srk_variants = SrkVariantRecord{}; }

}  // namespace talix
