// SSMAO0: the sparse lists of the pairs with parameters, and the families of the list.
#pragma once

namespace talix {

void SSMAO0();

}  // namespace talix
