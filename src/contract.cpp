#include "contract.h"

#undef NDEBUG // without it <cassert> does not declare the function that reports
#include <cassert>

namespace FiltersCommon {

void contractBroken(const char* expression, const ContractPlace& place)
{
    __assert_fail(expression, place.file, place.line, place.function);
}

} // namespace FiltersCommon
