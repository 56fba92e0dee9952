// Compiles Boost.JSON into the toolkit. The settings library has a copy of its own, whose symbols are hidden.
#include <boost/json/src.hpp>
