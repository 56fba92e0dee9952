#include "recording/TopicChoice.h"

#include <algorithm>
#include <iterator>

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

// A bag may have several topics of the same name with different types.
std::optional<std::string> faultOfTopic(const std::string& name, const Topics& topics) {
  const auto isNamed = [&](const TopicContents& contents) { return contents.topic.name == name; };
  if (std::none_of(topics.begin(), topics.end(), isNamed)) {
    return "the recording has no topic " + printable(name) + "; " + othersInWords(topics);
  }
  const auto holdsClouds = [&](const TopicContents& contents) {
    return isNamed(contents) && contents.topic.cloud != CloudEncoding::none;
  };
  if (std::none_of(topics.begin(), topics.end(), holdsClouds)) {
    return "topic " + printable(name) + " holds no point clouds; the recording has " + listOf(topics);
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::string> faultOfChoice(const std::vector<std::string>& chosen, const Topics& topics) {
  for (const std::string& name : chosen) {
    if (std::optional<std::string> fault = faultOfTopic(name, topics)) {
      return fault;
    }
  }
  const Topics clouds = thoseWithClouds(topics);
  const auto isChosen = [&](const TopicContents& contents) {
    return chosen.empty() || std::find(chosen.begin(), chosen.end(), contents.topic.name) != chosen.end();
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
