/**
 * The receiving side: rebuilds a group from a file of bytes, and writes the bytes of the group it
 * now holds to another file. The two files are the same when the two groups are.
 */
#include "filter_groups.h"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::cerr << "usage: rebuild_group BYTES REBUILT\n";
        return EXIT_FAILURE;
    }
    std::ifstream in(argv[1], std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(in), {}};
    if (!in) {
        std::cerr << "rebuild_group: cannot read " << argv[1] << "\n";
        return EXIT_FAILURE;
    }

    const FiltersCommon::FiltersGroup group(bytes);
    std::string rebuilt;
    group.serialize(&rebuilt);
    std::cout << group.getEntriesRef().size() << " entries, " << rebuilt.size() << " bytes\n";

    std::ofstream out(argv[2], std::ios::binary);
    out << rebuilt << std::flush;
    if (!out) {
        std::cerr << "rebuild_group: cannot write " << argv[2] << "\n";
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
