#include "trigonometry/Mpfr.h"

#include <mpfr.h>

namespace orvantis::testing {
namespace {

// A number of 53 digits with the exponents of a double.
class Number {
 public:
  Number() {
    mpfr_set_emin(-1073);
    mpfr_set_emax(1024);
    mpfr_init2(value_, 53);
  }
  explicit Number(double value) : Number() { mpfr_set_d(value_, value, MPFR_RNDN); }
  Number(const Number&) = delete;
  Number& operator=(const Number&) = delete;
  ~Number() { mpfr_clear(value_); }

  mpfr_ptr get() { return value_; }

  // `ternary` is what the function returned that gave the value.
  double asDouble(int ternary) {
    mpfr_subnormalize(value_, ternary, MPFR_RNDN);
    return mpfr_get_d(value_, MPFR_RNDN);
  }

 private:
  mpfr_t value_;
};

}  // namespace

double mpfrSine(double angle) {
  Number argument(angle);
  Number result;
  return result.asDouble(mpfr_sin(result.get(), argument.get(), MPFR_RNDN));
}

double mpfrCosine(double angle) {
  Number argument(angle);
  Number result;
  return result.asDouble(mpfr_cos(result.get(), argument.get(), MPFR_RNDN));
}

double mpfrBearing(double y, double x) {
  Number first(y);
  Number second(x);
  Number result;
  return result.asDouble(mpfr_atan2(result.get(), first.get(), second.get(), MPFR_RNDN));
}

}  // namespace orvantis::testing
