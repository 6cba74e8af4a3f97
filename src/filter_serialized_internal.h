#ifndef FILTER_COMMON_SRC_FILTER_SERIALIZED_INTERNAL_H
#define FILTER_COMMON_SRC_FILTER_SERIALIZED_INTERNAL_H

#include <string_view>

namespace FiltersCommon {

class FiltersSerialized;

/**
 * As many bytes as size() says, the terminating zero included: it reads as a field tag of 0, at
 * which the parser stops with all that came before it. Valid as long as the envelope's data.
 */
std::string_view bytesOf(const FiltersSerialized& s);

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_FILTER_SERIALIZED_INTERNAL_H
