/**
 * Whole files. The name "-" stands for standard input or standard output. What goes wrong is
 * raised as a std::runtime_error with the name and the reason.
 */
#ifndef FILTER_COMMON_TOOLS_FILES_H
#define FILTER_COMMON_TOOLS_FILES_H

#include <string>
#include <string_view>

namespace filterctl {

std::string readFile(const std::string& name);

/**
 * A regular file is replaced in one step or left as it was; it keeps its permissions, and a
 * symbolic link keeps pointing to it. Anything else, a pipe or a device, is written to.
 */
void writeFile(const std::string& name, std::string_view bytes);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_FILES_H
