/**
 * How commands end.
 */
#ifndef FILTER_COMMON_TOOLS_STATUS_H
#define FILTER_COMMON_TOOLS_STATUS_H

namespace filterctl {

/** The exit status. Two commands use it to answer a question: check and diff. */
enum Status { DONE = 0, REFUSED = 1, WRONG_USAGE = 2 };

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_STATUS_H
