// Boost.JSON compiled into the toolkit; the copy inside the settings library is hidden there.
#include <boost/json/src.hpp>
