#include "base/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <system_error>

#include "base/runtime_error.h"

namespace cvl {

namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool IsSign(char c) {
  return c == '+' || c == '-';
}

/// Length of the longest number at the start of TEXT, 0 if there is none.
std::size_t NumberLength(std::string_view text) {
  std::size_t at = 0;
  if (at < text.size() && IsSign(text[at])) ++at;
  bool digits = false;
  bool point = false;
  for (; at < text.size(); ++at) {
    if (IsDigit(text[at])) {
      digits = true;
    } else if (text[at] == '.' && !point) {
      point = true;
    } else {
      break;
    }
  }
  if (!digits) return 0;
  if (at == text.size() || std::string_view("eEdD").find(text[at]) == std::string_view::npos) {
    return at;
  }
  // An exponent without digits is no part of the number.
  std::size_t exponent = at + 1;
  if (exponent < text.size() && IsSign(text[exponent])) ++exponent;
  if (exponent == text.size() || !IsDigit(text[exponent])) return at;
  while (exponent < text.size() && IsDigit(text[exponent])) {
    ++exponent;
  }
  return exponent;
}

/// The exponent DIGITS, with or without a sign, as a number. Values beyond any exponent of a
/// float saturate, far enough from the edge to be added to a position in a text.
std::int64_t ExponentOf(std::string_view digits) {
  constexpr std::int64_t Beyond = 1'000'000'000'000'000;
  const bool is_negative = digits.starts_with('-');
  if (IsSign(digits.front())) digits.remove_prefix(1);
  std::int64_t exponent = 0;
  for (const char digit : digits) {
    exponent = std::min(exponent * 10 + (digit - '0'), Beyond);
  }
  return is_negative ? -exponent : exponent;
}

/// Roughly the power of ten of a number with digits other than 0, whose exponent is marked by
/// a small e.
std::int64_t Magnitude(std::string_view number) {
  const std::size_t mark = std::min(number.find('e'), number.size());
  const std::string_view mantissa = number.substr(0, mark);
  const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
  const std::size_t first = std::min(mantissa.find_first_of("123456789"), mantissa.size());
  const auto of_mantissa = static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first);
  if (mark == number.size()) return of_mantissa;
  return of_mantissa + ExponentOf(number.substr(mark + 1));
}

/// The value of a text that is one number; infinity when it is too large.
double ValueOf(std::string_view number) {
  std::string plain(number);
  for (char &c : plain) {
    if (c == 'E' || c == 'd' || c == 'D') c = 'e';
  }
  const char *first = plain.c_str();
  if (*first == '+') ++first;
  double value = 0;
  const auto [end, error] = std::from_chars(first, plain.c_str() + plain.size(), value);
  (void)end;
  if (error != std::errc::result_out_of_range) return value;
  // from_chars doesn't say on which side the number left its range.
  return Magnitude(first) > 0 ? std::numeric_limits<double>::infinity() : 0;
}

std::string_view TrimStart(std::string_view text, const char *blanks) {
  const std::size_t at = text.find_first_not_of(blanks);
  return at == std::string_view::npos ? std::string_view() : text.substr(at);
}

}  // namespace

double Val(std::string_view text) {
  text = TrimStart(text, " \t");
  const std::size_t length = NumberLength(text);
  if (length == 0) return 0;
  const double value = ValueOf(text.substr(0, length));
  if (std::isinf(value)) throw RuntimeError(error_number::Overflow);
  return value;
}

bool IsNumeric(std::string_view text) {
  text = TrimStart(text, " ");
  const std::size_t length = NumberLength(text);
  if (length == 0 || !TrimStart(text.substr(length), " ").empty()) return false;
  return !std::isinf(ValueOf(text.substr(0, length)));
}

std::string NumberText(double value) {
  // 15 significant digits as D.DDDDDDDDDDDDDDeXX, then the point put where it belongs.
  char scientific[40];
  std::snprintf(scientific, sizeof scientific, "%.14e", std::fabs(value));
  std::string digits;
  const char *at = scientific;
  for (; *at != 'e' && *at != '\0'; ++at) {
    if (IsDigit(*at)) digits += *at;
  }
  const auto exponent = *at == 'e' ? ExponentOf(at + 1) : 0;
  while (digits.size() > 1 && digits.back() == '0') {
    digits.pop_back();
  }
  std::string text;
  if (exponent < 0) {
    text = "0." + std::string(static_cast<std::size_t>(-exponent - 1), '0') + digits;
  } else {
    const auto whole = static_cast<std::size_t>(exponent) + 1;
    if (digits.size() <= whole) {
      text = digits + std::string(whole - digits.size(), '0');
    } else {
      text = digits.substr(0, whole) + "." + digits.substr(whole);
    }
  }
  if (digits == "0") return "0";
  return value < 0 ? "-" + text : text;
}

}  // namespace cvl
