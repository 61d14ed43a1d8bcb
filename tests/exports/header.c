#include <dfdl/dfdl.h>

_Static_assert(sizeof(DFDLChar) == 2 && sizeof(DFDLWORD) == 8 && sizeof(DFDLBoolean) == 4,
               "the sizes that host programs were compiled for");

DFDLCalendar* makeCalendarInC(void);
DFDLCalendar* makeCalendarInC(void) { return new_DFDLCalendar(); }
