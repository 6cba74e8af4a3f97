#include "properties.h"
#include "target.h"

// The input is read as an entry and as a group, both by the constructors and through the messages.
// Both must give the same objects. What was read is written both ways.

namespace {

using namespace FiltersCommon;

template <class T>
void checkBothWays(const std::string& bytes)
{
    const T object = fuzz::checkReading<T>(bytes);
    fuzz::checkForms(object);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    checkBothWays<FiltersEntry>(bytes);
    checkBothWays<FiltersGroup>(bytes);
    return 0;
}
