#include <dfdl/dfdl.h>

#include <type_traits>

static_assert(std::is_same_v<decltype(&new_DFDLCalendar), DFDLCalendar* (*)()>);
