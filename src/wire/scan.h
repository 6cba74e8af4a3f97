/**
 * What the runtime's parser loses of bytes that are not as the library writes them. It is found in
 * the bytes themselves, as the message that the parser makes of them does not show it.
 */
#ifndef FILTER_COMMON_SRC_WIRE_SCAN_H
#define FILTER_COMMON_SRC_WIRE_SCAN_H

#include "losses.h"
#include "message_fields.h"

#include <string_view>

namespace FiltersCommon {

/**
 * Reports what parsing loses of the bytes of an entry or a group, and the fields of matches and
 * actions that their kinds do not use. @p toTheEnd says whether the parser reached the end.
 */
void scan(const MessageSchema& schema, std::string_view bytes, bool toTheEnd, Losses& losses);

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_WIRE_SCAN_H
