#include "CloudReader.h"

#include "Console.h"
#include "session/Coordinates.h"

namespace orvantis::app {

Points viewOf(const Cloud& cloud) {
  return filter::classify::PointsView<double>::interleaved(cloud.data(), sizeof(Cloud::value_type),
                                                           cloud.size());
}

Cloud copyOf(const Points& points) {
  Cloud cloud;
  cloud.reserve(sizeOf(points));
  std::visit(
      [&cloud](const auto& view) {
        for (std::size_t i = 0; i < view.size; ++i) {
          const Coordinates p = coordinatesOf(view, i);
          cloud.push_back({p.x, p.y, p.z});
        }
      },
      points);
  return cloud;
}

Cloud readCloud(const std::string& path, const FrameOptions& options) {
  FrameInput input({path}, options);
  const auto frame = input.next();
  if (!frame) {
    throw Failure(path, "cannot be read: there is no frame in it");
  }
  return copyOf(frame->points);
}

}  // namespace orvantis::app
