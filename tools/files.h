/**
 * Reading and writing whole files. The name "-" means standard input or standard output. Errors are
 * thrown as std::runtime_error with the name and the reason.
 */
#ifndef FILTER_COMMON_TOOLS_FILES_H
#define FILTER_COMMON_TOOLS_FILES_H

#include <string>
#include <string_view>

namespace filterctl {

std::string readFile(const std::string& name);

/**
 * A regular file is replaced in one step or left unchanged; it keeps its permissions, and a
 * symbolic link to it remains a link. Anything else (a pipe, a device) is written to directly.
 */
void writeFile(const std::string& name, std::string_view bytes);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_FILES_H
