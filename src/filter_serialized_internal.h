/**
 * The bytes in an envelope, for reading.
 */
#ifndef FILTER_COMMON_SRC_FILTER_SERIALIZED_INTERNAL_H
#define FILTER_COMMON_SRC_FILTER_SERIALIZED_INTERNAL_H

#include <string_view>

namespace FiltersCommon {

class FiltersSerialized;

/**
 * All size() bytes, including the terminating zero: the parser reads it as a field tag of 0, stops
 * there and keeps what came before. Valid as long as the envelope's data.
 */
std::string_view bytesOf(const FiltersSerialized& s);

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_FILTER_SERIALIZED_INTERNAL_H
