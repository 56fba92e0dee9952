// The smallest host: one class, so that the linker may leave out every library that is not named here.

#include <filter/detection/Sector.h>

int main() {
  const orvantis::filter::detection::Sector sector("stop", 0.0, 1.0, 3.0);
  return sector.within(orvantis::filter::detection::Point(1.0, 0.5)) ? 0 : 1;
}
