#include "named_entries.h"

#include "filter_actions.pb.h"
#include "filter_matches.pb.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

// The golden files hold what the library writes, for people to review: of each match and action the
// bytes on the wire, of entries and groups the bytes in NAME.hex and the dump in NAME.txt.
// scripts/regenerate-golden rewrites them.

namespace {

namespace fs = std::filesystem;

using namespace FiltersCommon;
using namespace FiltersCommon::test;

// ------------------------------------------------------------------------------------ hexadecimal

/** Lines of so many bytes; with 0, all bytes are on one line. */
std::string toHex(const std::string& bytes, std::size_t width = 16)
{
    constexpr char DIGITS[] = "0123456789abcdef";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        text += DIGITS[byte >> 4];
        text += DIGITS[byte & 15];
        const bool endsLine = i + 1 == bytes.size() || (width != 0 && (i + 1) % width == 0);
        text += endsLine ? '\n' : ' ';
    }
    return text;
}

std::string fromHex(const std::string& text)
{
    std::istringstream in(text);
    std::string bytes;
    for (int byte; in >> std::hex >> byte;)
        bytes += static_cast<char>(byte);
    return bytes;
}

TEST(Hexadecimal, IsWrittenInLinesAndReadBack)
{
    EXPECT_EQ(toHex(""), "");
    EXPECT_EQ(toHex("abc", 2), "61 62\n63\n");
    EXPECT_EQ(toHex(std::string(17, 'a'), 0),
              "61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61\n");
    EXPECT_EQ(toHex(std::string("\x00\x7f\xff", 3)), "00 7f ff\n");
    EXPECT_EQ(toHex(std::string(16, 'a')), "61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61\n");
    EXPECT_EQ(toHex(std::string(17, 'a')), "61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61\n61\n");
    EXPECT_EQ(fromHex(toHex(std::string("\x00\xff", 2) + std::string(20, 'a'))),
              std::string("\x00\xff", 2) + std::string(20, 'a'));
}

// ------------------------------------------------------------------------------------------ files

/** Contents by file names. */
using Files = std::map<std::string, std::string>;

void convert(const Match& match, MatchPB* pb) { match.convertToMatchPB(pb); }
void convert(const Action& action, ActionPB* pb) { action.convertToActionPB(pb); }

/** A line for each sample: its name and the bytes of its message. */
template <class Message, class Base>
std::string linesOf(const std::vector<Sample<Base>>& samples)
{
    std::string lines;
    for (const Sample<Base>& sample : samples) {
        Message pb;
        convert(*sample.object, &pb);
        lines += sample.name + ' ' + toHex(pb.SerializeAsString(), 0);
    }
    return lines;
}

/** Of entries and of groups. */
template <class T>
Files filesOf(const std::vector<Named<T>>& samples)
{
    Files files;
    for (const auto& sample : samples) {
        std::string bytes;
        sample.object->serialize(&bytes);
        files[sample.name + ".hex"] = toHex(bytes);
        files[sample.name + ".txt"] = dump(*sample.object);
    }
    return files;
}

std::string readFile(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void writeFile(const fs::path& path, const std::string& contents)
{
    std::ofstream out(path, std::ios::binary);
    out << contents << std::flush;
    if (!out)
        throw std::runtime_error("cannot write " + path.string());
}

Files readFolder(const fs::path& folder)
{
    Files files;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder))
        files[entry.path().filename().string()] = readFile(entry.path());
    return files;
}

void writeFolder(const fs::path& folder, const Files& files)
{
    fs::remove_all(folder);
    fs::create_directories(folder);
    for (const auto& [name, contents] : files)
        writeFile(folder / name, contents);
}

/** On request, the test writes the files instead of comparing them. */
bool isToBeRewritten() { return std::getenv("FILTER_COMMON_REWRITE_GOLDEN") != nullptr; }

void expectGolden(const char* name, const std::string& expected)
{
    const fs::path path = fs::path(GOLDEN_FOLDER) / name;
    if (isToBeRewritten())
        writeFile(path, expected);
    EXPECT_EQ(readFile(path), expected) << path << ", which scripts/regenerate-golden rewrites";
}

void expectGolden(const char* name, const Files& expected)
{
    const fs::path folder = fs::path(GOLDEN_FOLDER) / name;
    if (isToBeRewritten())
        writeFolder(folder, expected);
    const Files golden = readFolder(folder);
    for (const auto& [file, contents] : expected) {
        const auto found = golden.find(file);
        if (found == golden.end())
            ADD_FAILURE() << (folder / file) << " is missing";
        else
            EXPECT_EQ(found->second, contents) << (folder / file);
    }
    for (const auto& [file, contents] : golden)
        EXPECT_EQ(expected.count(file), 1u) << (folder / file) << " belongs to no sample";
}

TEST(GoldenFiles, OfMatches) { expectGolden("matches.hex", linesOf<MatchPB>(matchSamples())); }
TEST(GoldenFiles, OfActions) { expectGolden("actions.hex", linesOf<ActionPB>(actionSamples())); }
TEST(GoldenFiles, OfEntries) { expectGolden("entries", filesOf(entrySamples())); }
TEST(GoldenFiles, OfGroups) { expectGolden("groups", filesOf(groupSamples())); }

// -------------------------------------------------------------------------------------- read back

/** Golden bytes must stay readable. */
template <class T>
void expectReadable(const char* name, const std::vector<Named<T>>& samples)
{
    const Files golden = readFolder(fs::path(GOLDEN_FOLDER) / name);
    for (const auto& sample : samples) {
        const T built(fromHex(golden.at(sample.name + ".hex")));
        EXPECT_TRUE(built == *sample.object) << sample.name;
        EXPECT_EQ(dump(built), golden.at(sample.name + ".txt")) << sample.name;
    }
}

TEST(GoldenFiles, OfEntriesAreReadBack) { expectReadable("entries", entrySamples()); }
TEST(GoldenFiles, OfGroupsAreReadBack) { expectReadable("groups", groupSamples()); }

} // namespace
