// Reading and replacing constants by name.
#pragma once

#include "base/array.h"
#include "base/real.h"
#include "base/text.h"

namespace talix {

inline constexpr int kMaxKeys = 20;
using KeyNames = Vec<Text<10>, kMaxKeys>;
using KeyValues = Vec<R8, kMaxKeys>;

// Constants of a model: ACTION action::information reads them out, action::input writes them in.
void SURMD0(I4& NKEYS, KeyNames& KEYS, const I4& WIDTH, KeyValues& VALUES, const I4& ACTION, const I4& MODEL,
            I4& NFAIL);

}  // namespace talix
