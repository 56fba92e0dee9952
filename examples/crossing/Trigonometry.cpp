#include "Trigonometry.h"

namespace crossing {
namespace {

constexpr int rightAngle = 9000;

// The series up to x^15: exact to the last bits for angles of at most 90 degrees.
double series(double x, double first, int power) {
  const double square = x * x;
  double term = first;
  double sum = first;
  for (int n = power; n <= 20; n += 2) {
    term *= -square / (n * (n + 1));
    sum += term;
  }
  return sum;
}

double sineOfAcute(int centidegrees) {
  const double x = centidegrees * (3.141592653589793 / 18000.0);
  return series(x, x, 2);
}

}  // namespace

double sine(int centidegrees) {
  const int turn = 4 * rightAngle;
  const int angle = ((centidegrees % turn) + turn) % turn;
  const int rest = angle % rightAngle;
  switch (angle / rightAngle) {
    case 0:
      return sineOfAcute(rest);
    case 1:
      return sineOfAcute(rightAngle - rest);
    case 2:
      return -sineOfAcute(rest);
    default:
      return -sineOfAcute(rightAngle - rest);
  }
}

double cosine(int centidegrees) {
  return sine(centidegrees + rightAngle);
}

}  // namespace crossing
