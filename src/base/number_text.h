// Numbers as text and back, as the settings, the boxes and the server file hold them.
//
// A number, wherever text is read here, is: a sign, digits with at most one full stop
// among them, and an exponent marked by e or d. It has at least one digit in front of
// its exponent.

#pragma once

#include <string>
#include <string_view>

namespace cvl {

/// The number at the start of TEXT, as far as it reads as one; 0 if it doesn't begin
/// with one. Leading blanks and tabs are passed over. Raises 6 when the number is too
/// large for a 64-bit float.
double Val(std::string_view text);

/// True when all of TEXT is one number, blanks around it allowed, and the number fits
/// a 64-bit float.
bool IsNumeric(std::string_view text);

/// VALUE in decimal with at most 15 significant digits, without an exponent and
/// without trailing zeros behind the full stop.
std::string NumberText(double value);

}  // namespace cvl
