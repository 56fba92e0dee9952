"""What users may give as points, pairs and rings, and what they are told when it is something else."""
import numpy as np

_POINTS = "points are an array (N, 3 or more) of numbers, or a structured one with x, y and z"


def _shown(array):
    return f"an array of shape {array.shape} and dtype {array.dtype}"


def _array(given, what, allowed):
    """The array that was given, or made of what was given; never one of objects or with masked values."""
    if isinstance(given, np.ma.MaskedArray):
        raise ValueError(f"{what}: a masked array was given, and what is masked would count; give {what}.compressed() "
                         f"or {what}.filled(numpy.nan); {allowed}")
    try:
        array = np.asarray(given)
    except ValueError as error:
        raise ValueError(f"{what}: {error}; {allowed}") from None
    if array.dtype.names is None and array.dtype.kind not in "fiu":
        raise TypeError(f"{what}: {_shown(array)} was given; {allowed}")
    return array


def _ready(array):
    """The array itself where the engine reads it as it is, else a copy in double precision."""
    if array.dtype in (np.float32, np.float64):  # of this machine's byte order: another one is another type
        return array
    return array.astype(np.float64)


def _columns(given, names):
    columns = [np.asarray(given[name]) for name in names]
    for name, column in zip(names, columns):
        if column.dtype.kind not in "fiu" or column.ndim != 1:
            raise TypeError(f"points: field {name} is {_shown(column)}; it must be one number for each point")
    if len({column.dtype for column in columns}) == 1 and len({column.strides for column in columns}) == 1:
        return tuple(_ready(column) for column in columns)
    return np.stack([column.astype(np.float64) for column in columns], axis=1)


def points(given):
    """An array (N, 3 or more) of float32 or float64, or x, y and z of equal strides."""
    names = getattr(given, "columns", None)
    if names is not None and all(name in names for name in "xyz"):
        return _columns(given, "xyz")
    array = _array(given, "points", _POINTS)
    if array.dtype.names is not None:
        missing = [name for name in "xyz" if name not in array.dtype.names]
        if missing or array.ndim != 1:
            raise ValueError(f"points: {_shown(array)} was given; {_POINTS}, of one dimension")
        return _columns(array, "xyz")
    if array.size == 0 and array.ndim == 1:
        return np.empty((0, 3))
    if array.ndim != 2 or array.shape[1] < 3:
        raise ValueError(f"points: {_shown(array)} was given; {_POINTS}")
    # A plain array: a subclass may answer otherwise when it is sliced.
    return _ready(np.asarray(array))


def ring(given, what):
    """Vertices as an array (N, 2) of float64."""
    allowed = "vertices are an array (N, 2) of numbers"
    array = _array(given, what, allowed)
    if array.size == 0 and array.ndim == 1:
        return np.empty((0, 2))
    if array.dtype.names is not None or array.ndim != 2 or array.shape[1] != 2:
        raise ValueError(f"{what}: {_shown(array)} was given; {allowed}")
    return np.ascontiguousarray(array, dtype=np.float64)


def pair(given, what):
    """Two numbers as an array (2,) of float64."""
    allowed = "it is two numbers, x and y"
    array = _array(given, what, allowed)
    if array.shape != (2,) or array.dtype.names is not None:
        raise ValueError(f"{what}: {_shown(array)} was given; {allowed}")
    return np.ascontiguousarray(array, dtype=np.float64)


def refuse_result(given, size, dtype):
    """Raises what is wrong with an array to write results into."""
    wanted = f"out is a writable, contiguous array of shape ({size},) and dtype {np.dtype(dtype)}"
    if not isinstance(given, np.ndarray):
        raise TypeError(f"out: a {type(given).__name__} was given; {wanted}")
    if not given.flags.writeable:
        raise ValueError(f"out: it is read-only; {wanted}")
    raise ValueError(f"out: {_shown(given)} was given; {wanted}")


def coordinates(*given):
    """The coordinates as arrays of float64 of one shape."""
    arrays = [_array(values, name, "coordinates are numbers or arrays of numbers")
              for values, name in zip(given, "xyz")]
    return np.broadcast_arrays(*(array.astype(np.float64) for array in arrays))
