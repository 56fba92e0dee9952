// Boost.JSON compiled into the command; the copy inside the settings library is hidden there.
#include <boost/json/src.hpp>
