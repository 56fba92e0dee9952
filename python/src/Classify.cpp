#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include <filter/classify/PointClassifier.h>

#include "Arrays.h"
#include "Bindings.h"
#include "ClassifierCache.h"
#include "Content.h"
#include "Counts.h"
#include "Helper.h"
#include "Log.h"
#include "Site.h"
#include "session/Coordinates.h"

namespace orvantis::python {

using filter::classify::PointClassifier;
using filter::classify::ZoneCounts;
using filter::detection::Zone3dBase;

namespace {

using Masks = py::array_t<std::uint64_t>;
using Bools = py::array_t<bool>;

PointClassifier classifierOf(const toolkit::Configuration& configuration) {
  const toolkit::Configuration snapshot = snapshotOf(configuration);
  const Unlocked released;
  return PointClassifier(snapshot.detector);
}

// A copy shares the tables, so it stays what it is while another thread changes the site.
PointClassifier current(const Site& site) {
  ClassifierCache& cache = *site.cache;
  if (!cache.classifier || !cache.key->isOf(site.detector())) {
    ClassifierKey key(site.detector());
    PointClassifier made = classifierOf(*site.configuration);
    cache.key = std::move(key);
    cache.classifier = made;
    return made;
  }
  return *cache.classifier;
}

void classifyInto(const PointClassifier& classifier, const GivenPoints& points, std::uint64_t* masks) {
  const Unlocked released;
  std::visit([&](const auto& view) { classifier.classify(view, masks); }, points.view);
  if (points.isReversed) {
    std::reverse(masks, masks + points.size());
  }
}

Masks classify(const PointClassifier& classifier, const py::object& given, const py::object& out) {
  const GivenPoints points = pointsOf(given);
  Masks masks = resultFor<std::uint64_t>(points, out);
  classifyInto(classifier, points, masks.mutable_data());
  return masks;
}

// The masks of points that count: 0 for a point with a coordinate that is not finite.
Masks countedMasks(const PointClassifier& classifier, const py::object& given) {
  const GivenPoints points = pointsOf(given);
  Masks array = resultFor<std::uint64_t>(points, py::none());
  std::uint64_t* const masks = array.mutable_data();
  classifyInto(classifier, points, masks);
  const Unlocked released;
  std::visit(
      [&](const auto& view) {
        for (std::size_t i = 0; i < view.size; ++i) {
          if (!toolkit::coordinatesOf(view, i).isFinite()) {
            masks[points.isReversed ? view.size - 1 - i : i] = 0;
          }
        }
      },
      points.view);
  return array;
}

py::object count(const PointClassifier& classifier, const py::object& given, const py::object& out) {
  const GivenPoints points = pointsOf(given);
  std::uint64_t* masks = nullptr;
  Masks array;
  if (!out.is_none()) {
    array = resultFor<std::uint64_t>(points, out);
    masks = array.mutable_data();
  }
  ZoneCounts counts;
  {
    const Unlocked released;
    counts = std::visit([&](const auto& view) { return classifier.count(view, masks); }, points.view);
    if (points.isReversed && masks != nullptr) {
      std::reverse(masks, masks + points.size());
    }
  }
  return countsOf(counts, points.size());
}

// The classifiers of zones that were asked lately; a zone has none of its own.
class ZoneClassifiers {
 public:
  PointClassifier of(const Zone3dBase& zone) {
    const auto found =
        std::find_if(kept_.begin(), kept_.end(), [&zone](const Kept& kept) { return kept.key.isOf(zone); });
    if (found != kept_.end()) {
      std::rotate(kept_.begin(), found, found + 1);
      return kept_.front().classifier;
    }
    toolkit::Configuration site;
    site.detector.getEvaluationFieldArray()[0] =
        std::make_shared<filter::detection::ZoneDetector::EvaluationField>();
    site.detector.getEvaluationFieldArray()[0]->zones[0] = std::make_shared<Zone3dBase>(zone);
    PointClassifier made = classifierOf(site);
    kept_.insert(kept_.begin(), {ClassifierKey(zone), made});
    if (kept_.size() > most) {
      kept_.pop_back();
    }
    return made;
  }

 private:
  struct Kept {
    ClassifierKey key;
    PointClassifier classifier;
  };
  static constexpr std::size_t most = 16;

  std::vector<Kept> kept_;
};

void toBools(const std::uint64_t* masks, std::size_t size, bool* inside) {
  std::transform(masks, masks + size, inside, [](std::uint64_t mask) { return mask != 0; });
}

template <typename Real>
void containsInto(const PointClassifier& classifier, filter::classify::PointsView<Real> view, bool* inside) {
  constexpr std::size_t most = 4096;
  std::array<std::uint64_t, most> masks;
  while (view.size != 0) {
    auto piece = view;
    piece.size = std::min(view.size, most);
    classifier.classify(piece, masks.data());
    toBools(masks.data(), piece.size, inside);
    const std::size_t step = piece.size * view.stride;
    view.size -= piece.size;
    inside += piece.size;
    if (view.size != 0) {
      view.x = static_cast<const char*>(view.x) + step;
      view.y = static_cast<const char*>(view.y) + step;
      view.z = static_cast<const char*>(view.z) + step;
    }
  }
}

Bools containsPoints(const std::shared_ptr<filter::detection::Zone>& shape, double zMin, double zMax,
                     const py::object& given, const py::object& out) {
  static auto* const classifiers = new ZoneClassifiers();  // holds nothing of the interpreter's
  const GivenPoints points = pointsOf(given);
  Bools array = resultFor<bool>(points, out);
  const PointClassifier classifier = classifiers->of(Zone3dBase(shape, zMin, zMax));
  bool* const inside = array.mutable_data();
  {
    const Unlocked released;
    std::visit([&](const auto& view) { containsInto(classifier, view, inside); }, points.view);
    if (points.isReversed) {
      std::reverse(inside, inside + points.size());
    }
  }
  return array;
}

}  // namespace

void bindClassify(py::module_& module) {
  module.def("contains_points", &containsPoints, Logged());
  module.def(
      "classify",
      [](const Site& site, const py::object& points, const py::object& out) {
        return classify(current(site), points, out);
      },
      Logged());
  module.def(
      "counted_masks",
      [](const Site& site, const py::object& points) { return countedMasks(current(site), points); },
      Logged());
  module.def(
      "count",
      [](const Site& site, const py::object& points) { return count(current(site), points, py::none()); },
      Logged());
  py::class_<PointClassifier>(module, "Classifier",
                              R"(All zones of a site for whole frames, frozen as they were when it was made.

Any number of threads may use it at once.

>>> site = Site()
>>> site.fields[0] = [Zone(Rectangle((0, 0), (2, 2)))]
>>> Classifier(site).classify([(1, 1, 1), (3, 1, 1)])
array([1, 0], dtype=uint64))")
      .def(py::init([](const Site& site) { return current(site); }), py::arg("site"), Logged())
      .def("classify", &classify, py::arg("points"), py::arg("out") = py::none(), Logged(),
           R"(One mask for each point, as Site.classify: uint64 (N,), or `out`, filled.

>>> site = Site()
>>> site.fields[0] = [None, Zone(Rectangle((0, 0), (2, 2)))]
>>> site.classifier().classify([(1, 1, 1), (3, 1, 1)])
array([2, 0], dtype=uint64))")
      .def(
          "count", &count, py::arg("points"), py::arg("masks") = py::none(), Logged(),
          R"(How many points are where: Counts. Writes the masks too where an array for them is given, uint64 (N,).

>>> site = Site()
>>> site.fields[0] = [None, Zone(Rectangle((0, 0), (2, 2)))]
>>> int(site.classifier().count([(1, 1, 1), (3, 1, 1)]).inside[0, 1])
1)");
}

}  // namespace orvantis::python
