// Boost.JSON compiled into this library, so that the library needs Boost's headers only.
#include <boost/json/src.hpp>
