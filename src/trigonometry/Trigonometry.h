#pragma once

/// Sine, cosine and bearing that are the same on every machine: the double nearest to the true value, for
/// every argument. C libraries do not promise the last bit, and two of them differ in it for one argument in
/// ten. That would move a point on the border of a sector or of a turned rectangle to the other side.
///
/// All arithmetic is done in integers, so the answers depend neither on the compiler and its flags nor on the
/// rounding mode. Thread-safe. Allocates nothing, except when the value is closer to the middle between two
/// doubles than 1e-18 of their distance, since more digits are needed then.
namespace orvantis::trigonometry {

/// The sine of an angle in radians. -0.0 for -0.0; NaN for NaN and for the infinities.
double sine(double angle);

/// The cosine of an angle in radians. NaN for NaN and for the infinities.
double cosine(double angle);

/// The bearing of the direction (x, y), in radians from the x axis towards the y axis, from -pi to pi, with
/// the arguments of C's atan2 and its answers for zeros and infinities: the bearing has the sign of `y`, that
/// of a zero included, and is pi on the negative x axis, to which (-0.0, 0.0) belongs. NaN when an argument
/// is NaN.
double bearing(double y, double x);

}  // namespace orvantis::trigonometry
