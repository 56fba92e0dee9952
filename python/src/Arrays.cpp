#include "Arrays.h"

#include <utility>

#include "Helper.h"

namespace orvantis::python {

using filter::classify::PointsView;

namespace {

// Exactly numpy's array: subclasses, such as a masked array, mean something else.
bool isPlainArray(const py::handle& object) {
  const auto& api = py::detail::npy_api::get();
  return reinterpret_cast<PyObject*>(Py_TYPE(object.ptr())) == reinterpret_cast<PyObject*>(api.PyArray_Type_);
}

// 'f', 'd', or 0 for a type that is not read as it is.
char realOf(const py::array& array) {
  const py::dtype type = array.dtype();
  const int number = type.num();
  if (type.byteorder() == '>') {
    return 0;
  }
  if (number == py::detail::npy_api::NPY_FLOAT_) {
    return 'f';
  }
  return number == py::detail::npy_api::NPY_DOUBLE_ ? 'd' : '\0';
}

struct Columns {
  const char* x;
  const char* y;
  const char* z;
  py::ssize_t stride;
  py::ssize_t size;
  char real;
};

template <typename Real>
GivenPoints viewOf(py::object owner, Columns columns) {
  GivenPoints points;
  points.owner = std::move(owner);
  const auto size = static_cast<std::size_t>(columns.size);
  if (size == 0) {
    points.view = PointsView<Real>::separate(nullptr, nullptr, nullptr, 0);
    return points;
  }
  if (columns.stride < 0) {
    const py::ssize_t last = (columns.size - 1) * columns.stride;
    columns.x += last;
    columns.y += last;
    columns.z += last;
    columns.stride = -columns.stride;
    points.isReversed = true;
  }
  points.view =
      PointsView<Real>{columns.x, columns.y, columns.z, static_cast<std::size_t>(columns.stride), size};
  points.begin = std::min({columns.x, columns.y, columns.z});
  points.end =
      std::max({columns.x, columns.y, columns.z}) + (columns.size - 1) * columns.stride + sizeof(Real);
  return points;
}

GivenPoints viewOf(py::object owner, const Columns& columns) {
  return columns.real == 'f' ? viewOf<float>(std::move(owner), columns)
                             : viewOf<double>(std::move(owner), columns);
}

GivenPoints viewOfRows(const py::array& array, char real) {
  const auto* first = static_cast<const char*>(array.data());
  const py::ssize_t step = array.strides(1);
  return viewOf(array, {first, first + step, first + 2 * step, array.strides(0), array.shape(0), real});
}

// Asked here, and not in Python, since it is asked in every call of a loop.
template <typename T>
bool fits(const py::object& out, std::size_t size) {
  if (!py::isinstance<py::array_t<T, py::array::c_style>>(out)) {
    return false;
  }
  const auto array = py::reinterpret_borrow<py::array>(out);
  constexpr int aligned = py::detail::npy_api::NPY_ARRAY_ALIGNED_;
  return array.ndim() == 1 && static_cast<std::size_t>(array.shape(0)) == size && array.writeable() &&
         (array.flags() & aligned) != 0;
}

}  // namespace

GivenPoints pointsOf(const py::object& points) {
  if (isPlainArray(points)) {
    const auto array = py::reinterpret_borrow<py::array>(points);
    const char real = array.ndim() == 2 && array.shape(1) >= 3 ? realOf(array) : '\0';
    if (real != 0) {
      return viewOfRows(array, real);
    }
  }
  const py::object ready = helper("orvantis_zones._arrays", "points")(points);
  if (!py::isinstance<py::tuple>(ready)) {
    const auto array = ready.cast<py::array>();
    return viewOfRows(array, realOf(array));
  }
  const auto columns = ready.cast<py::tuple>();
  const auto x = columns[0].cast<py::array>();
  const auto y = columns[1].cast<py::array>();
  const auto z = columns[2].cast<py::array>();
  const auto at = [](const py::array& array) { return static_cast<const char*>(array.data()); };
  return viewOf(columns, {at(x), at(y), at(z), x.strides(0), x.shape(0), realOf(x)});
}

template <typename T>
py::array_t<T> resultFor(const GivenPoints& points, const py::object& out) {
  if (out.is_none()) {
    return py::array_t<T>(static_cast<py::ssize_t>(points.size()));
  }
  if (!fits<T>(out, points.size())) {
    helper("orvantis_zones._arrays", "refuse_result")(out, points.size(), py::dtype::of<T>());
  }
  auto array = py::reinterpret_borrow<py::array_t<T>>(out);
  const auto* first = reinterpret_cast<const char*>(array.data());
  if (points.size() != 0 && first < points.end && points.begin < first + array.nbytes()) {
    throw py::value_error("out: it shares memory with the points");
  }
  return array;
}

template py::array_t<bool> resultFor(const GivenPoints& points, const py::object& out);
template py::array_t<std::uint64_t> resultFor(const GivenPoints& points, const py::object& out);

}  // namespace orvantis::python
