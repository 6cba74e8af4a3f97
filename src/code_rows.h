/**
 * Tables with a row for each code of an enumeration, which stands in the row's member "code".
 */
#ifndef FILTER_COMMON_SRC_CODE_ROWS_H
#define FILTER_COMMON_SRC_CODE_ROWS_H

#include <cstddef>
#include <cstdint>

namespace FiltersCommon {

/** The row of the code, or null. Codes are compared as unsigned numbers. */
template <class Row, std::size_t N, class Code>
constexpr const Row* findRow(const Row (&rows)[N], Code code)
{
    for (const Row& row : rows)
        if (row.code == static_cast<std::uint32_t>(code))
            return &row;
    return nullptr;
}

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_CODE_ROWS_H
