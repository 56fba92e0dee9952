#pragma once

namespace crossing {

/// Angles in hundredths of a degree, counterclockwise.
///
/// The standard library's functions may differ in the last bit from one system to the next; these are sums
/// and products of doubles in a fixed order, which IEEE 754 defines to the bit.
double sine(int centidegrees);
double cosine(int centidegrees);

}  // namespace crossing
