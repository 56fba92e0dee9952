// Compiles Boost.JSON into this library, so that the library needs only Boost's headers.
#include <boost/json/src.hpp>
