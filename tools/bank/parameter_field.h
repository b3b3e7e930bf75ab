// Numbers in the columns of the parameter files.
#pragma once

#include <string>
#include <string_view>

namespace talix::bank {

// A real in WIDTH columns, right-justified, with a decimal point, so that a reader takes its decimals as they are:
// as many digits as the columns hold. Throws BankError where these are fewer than three digits and fewer than DECIMALS
// decimals.
std::string real_text(double value, int width, int decimals);
// The same for a published figure, of which no digit is lost. Where the columns are too few for a decimal point it is
// left out, with the exponent behind its sign alone; a reader takes the last DECIMALS digits as decimals then. Throws
// BankError where that does not fit either.
std::string exact_text(double value, int width, int decimals);

// A whole number in WIDTH columns, right-justified. Throws BankError where it does not fit.
std::string integer_text(int value, int width);
// TEXT in WIDTH columns, cut or filled with blanks.
std::string padded_text(std::string_view text, int width);

}  // namespace talix::bank
