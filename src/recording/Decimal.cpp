#include "recording/Decimal.h"

#include <cmath>
#include <system_error>

namespace orvantis::toolkit::detail {
namespace {

const char* withoutPlus(const char* first, const char* last) {
  return last - first > 1 && first[0] == '+' && first[1] != '-' ? first + 1 : first;
}

}  // namespace

std::from_chars_result readLongDecimal(const char* first, const char* last, double& value) {
  return readNumber(withoutPlus(first, last), last, value);
}

std::from_chars_result readLongDecimal(const char* first, const char* last, float& value) {
  const auto result = readNumber(withoutPlus(first, last), last, value);
  if (result.ec != std::errc::result_out_of_range) {
    return result;
  }
  double wide = 0.0;
  const auto wideResult = readLongDecimal(first, last, wide);
  if (wideResult.ec == std::errc() && std::fabs(wide) < 1.0) {
    value = static_cast<float>(wide);
    return wideResult;
  }
  return result;
}

}  // namespace orvantis::toolkit::detail
