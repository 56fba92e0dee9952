#pragma once

#include <string>
#include <vector>

#include <Eigen/Core>

#include "session/Coordinates.h"

namespace orvantis::app {

/// The points of one frame; a coordinate that is not finite marks a no return.
using Cloud = std::vector<Eigen::Vector3d>;

toolkit::Points viewOf(const Cloud& cloud);

/// Reads a frame. The kind of file is told by its ending: .pcd, .ply, .xyz, or .bin for records of four
/// little-endian float32 x, y, z, intensity. Bytes after the last point of a PCD file are legal.
/// @throws Failure with the path and the reason
Cloud readCloud(const std::string& path);

}  // namespace orvantis::app
