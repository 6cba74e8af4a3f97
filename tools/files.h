/**
 * Reading and writing whole files. The name "-" means standard input or standard output. Errors are
 * thrown as std::runtime_error with the name and the reason.
 */
#ifndef FILTER_COMMON_TOOLS_FILES_H
#define FILTER_COMMON_TOOLS_FILES_H

#include <functional>
#include <string>
#include <string_view>

namespace filterctl {

std::string readFile(const std::string& name);

/** Whether both names lead to one regular file, which exists. */
bool areSameFile(const std::string& a, const std::string& b);

/**
 * A regular file is replaced in one step or left unchanged; it keeps its permissions, and a
 * symbolic link to it remains a link. Anything else (a pipe, a device) is written to directly.
 */
void writeFile(const std::string& name, std::string_view bytes);

/** Takes the next piece of what is written. */
using Sink = std::function<void(std::string_view piece)>;

/** The same for what @p write passes to its argument, piece by piece. */
void writeFile(const std::string& name, const std::function<void(const Sink& sink)>& write);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_FILES_H
