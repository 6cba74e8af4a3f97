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

// The golden files hold what the library writes, for people to review: NAME.hex the bytes on the
// wire, NAME.txt the dump. scripts/regenerate-golden writes them anew.

namespace {

namespace fs = std::filesystem;

using namespace FiltersCommon;
using namespace FiltersCommon::test;

// ------------------------------------------------------------------------------------ hexadecimal

/** Lines of 16 bytes. */
std::string toHex(const std::string& bytes)
{
    constexpr char DIGITS[] = "0123456789abcdef";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        text += DIGITS[byte >> 4];
        text += DIGITS[byte & 15];
        text += i % 16 == 15 || i + 1 == bytes.size() ? '\n' : ' ';
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

TEST(Hexadecimal, IsWrittenInLinesOf16BytesAndReadBack)
{
    EXPECT_EQ(toHex(""), "");
    EXPECT_EQ(toHex(std::string("\x00\x7f\xff", 3)), "00 7f ff\n");
    EXPECT_EQ(toHex(std::string(16, 'a')), "61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61\n");
    EXPECT_EQ(toHex(std::string(17, 'a')), "61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61\n61\n");
    EXPECT_EQ(fromHex(toHex(std::string("\x00\xff", 2) + std::string(20, 'a'))),
              std::string("\x00\xff", 2) + std::string(20, 'a'));
}

// ------------------------------------------------------------------------------------------ files

/** Contents by file names. */
using Files = std::map<std::string, std::string>;

void add(Files& files, const std::string& name, const std::string& bytes, const std::string& dump)
{
    files[name + ".hex"] = toHex(bytes);
    files[name + ".txt"] = dump;
}

template <class Base>
std::string ownDump(const Sample<Base>& sample)
{
    std::ostringstream out;
    sample.print(out);
    return out.str();
}

Files filesOfMatches()
{
    Files files;
    for (const auto& sample : matchSamples()) {
        MatchPB pb;
        sample.object->convertToMatchPB(&pb);
        add(files, sample.name, pb.SerializeAsString(), ownDump(sample));
    }
    return files;
}

Files filesOfActions()
{
    Files files;
    for (const auto& sample : actionSamples()) {
        ActionPB pb;
        sample.object->convertToActionPB(&pb);
        add(files, sample.name, pb.SerializeAsString(), ownDump(sample));
    }
    return files;
}

/** Of entries and of groups. */
template <class T>
Files filesOf(const std::vector<Named<T>>& samples)
{
    Files files;
    for (const auto& sample : samples) {
        std::string bytes;
        sample.object->serialize(&bytes);
        add(files, sample.name, bytes, dump(*sample.object));
    }
    return files;
}

Files readFolder(const fs::path& folder)
{
    Files files;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        std::ifstream in(entry.path(), std::ios::binary);
        files[entry.path().filename().string()].assign(std::istreambuf_iterator<char>(in), {});
    }
    return files;
}

void writeFolder(const fs::path& folder, const Files& files)
{
    fs::remove_all(folder);
    fs::create_directories(folder);
    for (const auto& [name, contents] : files) {
        std::ofstream out(folder / name, std::ios::binary);
        out << contents << std::flush;
        if (!out)
            throw std::runtime_error("cannot write " + (folder / name).string());
    }
}

/** Where asked to, the test writes the files instead of looking at them. */
bool isToBeRewritten() { return std::getenv("FILTER_COMMON_REWRITE_GOLDEN") != nullptr; }

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

TEST(GoldenFiles, OfMatches) { expectGolden("matches", filesOfMatches()); }
TEST(GoldenFiles, OfActions) { expectGolden("actions", filesOfActions()); }
TEST(GoldenFiles, OfEntries) { expectGolden("entries", filesOf(entrySamples())); }
TEST(GoldenFiles, OfGroups) { expectGolden("groups", filesOf(groupSamples())); }

// -------------------------------------------------------------------------------------- read back

/** Builds a T from the golden bytes of each sample: they must stay readable. */
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
