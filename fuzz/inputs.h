/**
 * Inputs of a target, in files.
 */
#ifndef FILTER_COMMON_FUZZ_INPUTS_H
#define FILTER_COMMON_FUZZ_INPUTS_H

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>

namespace FiltersCommon::fuzz {

inline std::string readInput(const std::filesystem::path& file)
{
    std::ifstream in(file, std::ios::binary);
    std::string bytes(std::istreambuf_iterator<char>(in), {});
    if (!in)
        throw std::runtime_error("cannot read " + file.string());
    return bytes;
}

/** A file, or all files of a folder in the order of their names: contents by name. */
inline std::map<std::string, std::string> readInputs(const std::filesystem::path& path)
{
    namespace fs = std::filesystem;
    std::map<std::string, std::string> inputs;
    if (!fs::is_directory(path))
        inputs[path.string()] = readInput(path);
    else
        for (const fs::directory_entry& file : fs::directory_iterator(path))
            inputs[file.path().string()] = readInput(file.path());
    return inputs;
}

} // namespace FiltersCommon::fuzz

#endif // FILTER_COMMON_FUZZ_INPUTS_H
