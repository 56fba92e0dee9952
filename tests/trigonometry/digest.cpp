// Sines, cosines and bearings of some million arguments, as one number. It is the same from every compiler,
// with every optimisation and on every machine.

#include <cstdint>
#include <cstdio>
#include <cstring>

#include "trigonometry/Arguments.h"
#include "trigonometry/Doubted.h"
#include "trigonometry/Trigonometry.h"

namespace {

constexpr std::uint64_t expected = 0xc071b9ec4c316f16;

class Digest {
 public:
  void add(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof(bits));
    value_ = (value_ ^ bits) * 0x9E3779B97F4A7C15U;
    value_ ^= value_ >> 32;
  }
  std::uint64_t value() const { return value_; }

 private:
  std::uint64_t value_ = 0;
};

}  // namespace

int main() {
  using namespace orvantis;
  testing::Arguments arguments(80);
  Digest digest;
  for (int i = 0; i < 1000000; ++i) {
    const double angle = arguments.angle();
    const testing::Arguments::Direction direction = arguments.direction();
    digest.add(trigonometry::sine(angle));
    digest.add(trigonometry::cosine(angle));
    digest.add(trigonometry::bearing(direction.y, direction.x));
  }
  // The way that nearly no argument takes.
  constexpr trigonometry::Wide allDoubt = trigonometry::Wide{1} << 76;
  for (int i = 0; i < 1000; ++i) {
    const testing::Arguments::Direction direction = arguments.direction();
    digest.add(trigonometry::sine(direction.y, allDoubt));
    digest.add(trigonometry::cosine(direction.x, allDoubt));
    digest.add(trigonometry::bearing(direction.y, direction.x, allDoubt));
  }
  if (digest.value() != expected) {
    std::printf("the digest is 0x%016llx, and should be 0x%016llx\n",
                static_cast<unsigned long long>(digest.value()), static_cast<unsigned long long>(expected));
    return 1;
  }
  std::printf("0x%016llx\n", static_cast<unsigned long long>(expected));
  return 0;
}
