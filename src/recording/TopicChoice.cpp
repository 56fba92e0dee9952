#include "recording/TopicChoice.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <string_view>

#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

using Topics = std::vector<TopicContents>;

Topics thoseWithClouds(const Topics& topics) {
  Topics found;
  std::copy_if(topics.begin(), topics.end(), std::back_inserter(found), [](const TopicContents& contents) {
    return contents.topic.cloud != CloudEncoding::none && contents.messages != 0;
  });
  return found;
}

std::string othersInWords(const Topics& topics) {
  return topics.empty() ? "it has no topics" : "it has " + listOf(topics);
}

// A hint for compressed clouds, which only their own packages can unfold.
std::string hintFor(const Topics& topics) {
  for (const TopicContents& contents : topics) {
    if (contents.topic.type.ends_with("/CompressedPointCloud2")) {
      return "; unfold the clouds of " + printable(contents.topic.name) +
             " first: ros2 run point_cloud_transport republish";
    }
  }
  return "";
}

// Whether a topic of each name has clouds. A bag may have several topics of the same name with different
// types.
std::map<std::string_view, bool> cloudsByName(const Topics& topics) {
  std::map<std::string_view, bool> holdClouds;
  for (const TopicContents& contents : topics) {
    holdClouds[contents.topic.name] |= contents.topic.cloud != CloudEncoding::none;
  }
  return holdClouds;
}

}  // namespace

std::optional<std::string> faultOfChoice(const TopicNames& chosen, const Topics& topics) {
  const std::map<std::string_view, bool> holdClouds = cloudsByName(topics);
  for (const std::string& name : chosen) {
    const auto found = holdClouds.find(name);
    if (found == holdClouds.end()) {
      return "the recording has no topic " + printable(name) + "; " + othersInWords(topics);
    }
    if (!found->second) {
      return "topic " + printable(name) + " holds no point clouds; the recording has " + listOf(topics);
    }
  }
  const Topics clouds = thoseWithClouds(topics);
  const auto isChosen = [&](const TopicContents& contents) {
    return chosen.empty() || chosen.contains(contents.topic.name);
  };
  if (!clouds.empty() && std::none_of(clouds.begin(), clouds.end(), isChosen)) {
    return "the chosen topics hold no messages; the recording has " + listOf(topics);
  }
  if (clouds.empty()) {
    return "the recording holds no point clouds (sensor_msgs/msg/PointCloud2); " + othersInWords(topics) +
           hintFor(topics);
  }
  if (chosen.empty() && clouds.size() > 1) {
    return "the recording has point clouds of " + std::to_string(clouds.size()) +
           " topics; choose with --topic: " + listOf(clouds);
  }
  return std::nullopt;
}

}  // namespace orvantis::toolkit
