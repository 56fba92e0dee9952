#include "classify/Strokes.h"

#include "classify/StrokeMaker.h"

namespace orvantis::filter::classify {
namespace {

constexpr std::size_t mostStrokes = std::size_t{1} << 19U;

}  // namespace

std::optional<Strokes> strokesOf(const std::vector<OutlinedZone>& zones, const Lattice& lattice,
                                 double safety) {
  StrokeMaker maker(lattice, safety);
  for (const OutlinedZone& zone : zones) {
    maker.add(zone);
    if (maker.strokes().size() > mostStrokes) {
      return std::nullopt;
    }
  }
  Strokes result;
  result.curves = maker.curves();
  result.firstOfColumn.assign(static_cast<std::size_t>(lattice.columns.size()) + 1, 0);
  for (const StrokeMaker::Placed& placed : maker.strokes()) {
    ++result.firstOfColumn[placed.column + 1];
  }
  for (std::size_t i = 1; i < result.firstOfColumn.size(); ++i) {
    result.firstOfColumn[i] += result.firstOfColumn[i - 1];
  }
  std::vector<std::uint32_t> next = result.firstOfColumn;
  result.strokes.resize(maker.strokes().size());
  for (const StrokeMaker::Placed& placed : maker.strokes()) {
    result.strokes[next[placed.column]++] = placed.stroke;
  }
  return result;
}

}  // namespace orvantis::filter::classify
