#include "options.h"

#include <algorithm>
#include <set>
#include <sstream>
#include <stdexcept>

namespace bench {

std::optional<std::string> takeOption(int& argc, char** argv, const std::string& name)
{
    const std::string prefix = "--" + name + "=";
    std::optional<std::string> value;
    char** end = std::remove_if(argv + 1, argv + argc, [&](const char* argument) {
        const std::string text = argument;
        const bool taken = text.compare(0, prefix.size(), prefix) == 0;
        if (taken)
            value = text.substr(prefix.size());
        return taken;
    });
    argc = static_cast<int>(end - argv);
    return value;
}

namespace {

constexpr std::size_t MOST_RULES = 65536;

std::set<std::size_t> readSizes(const std::string& text)
{
    std::set<std::size_t> sizes;
    std::istringstream in(text);
    for (std::string number; std::getline(in, number, ',');) {
        std::size_t size = 0;
        std::istringstream digits(number);
        if (!(digits >> size) || !digits.eof() || size == 0 || size > MOST_RULES)
            throw std::runtime_error("--sizes takes numbers from 1 to 65536, not " + number);
        sizes.insert(size);
    }
    return sizes;
}

} // namespace

std::vector<Workload> takeWorkloads(int& argc, char** argv)
{
    std::set<std::size_t> sizes =
        readSizes(takeOption(argc, argv, "sizes").value_or("1000,10000,60000"));
    Rules all;
    if (const auto path = takeOption(argc, argv, "rules")) {
        all = readRules(*path);
        sizes.erase(sizes.lower_bound(all.size()), sizes.end());
        sizes.insert(all.size());
    } else if (!sizes.empty()) {
        all = generateRules(*sizes.rbegin());
    }
    std::vector<Workload> workloads;
    for (const std::size_t size : sizes)
        workloads.push_back(
            {size, Rules(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(size))});
    return workloads;
}

} // namespace bench
