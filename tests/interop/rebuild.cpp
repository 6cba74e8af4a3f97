/**
 * What the library makes of the bytes of an entry or a group on standard input: the bytes that it
 * writes for it, or its text dump.
 */
#include "filter_groups.h"

#include <cstdlib>
#include <iostream>
#include <iterator>
#include <string>

namespace {

template <class T>
void rebuild(const std::string& bytes, bool asText)
{
    const T object(bytes);
    std::string written;
    object.serialize(&written);
    if (asText)
        std::cout << object;
    else
        std::cout << written;
}

} // namespace

int main(int argc, char** argv)
{
    const std::string what = argc == 3 ? argv[1] : "";
    const std::string form = argc == 3 ? argv[2] : "";
    if ((what != "entry" && what != "group") || (form != "bytes" && form != "text")) {
        std::cerr << "usage: interop_rebuild entry|group bytes|text\n";
        return EXIT_FAILURE;
    }
    const std::string bytes{std::istreambuf_iterator<char>(std::cin), {}};
    if (what == "entry")
        rebuild<FiltersCommon::FiltersEntry>(bytes, form == "text");
    else
        rebuild<FiltersCommon::FiltersGroup>(bytes, form == "text");
    return std::cout.flush() ? EXIT_SUCCESS : EXIT_FAILURE;
}
