#include "programvalues.h"

namespace pg::distinta {

ProgramValues &programValues()
{
    static ProgramValues values;
    return values;
}

} // namespace pg::distinta
