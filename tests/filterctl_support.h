/**
 * What the tests of filterctl need: a folder to run it in, and the group of a known access list.
 */
#ifndef FILTER_COMMON_TESTS_FILTERCTL_SUPPORT_H
#define FILTER_COMMON_TESTS_FILTERCTL_SUPPORT_H

#include "support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <sys/wait.h>

namespace FiltersCommon::test {

namespace fs = std::filesystem;

constexpr char GOOD_LINE[] = "@10.1.0.9/16  192.168.7.0/24  0 : 65535  1024 : 2047  0x06/0xFF\n";

/** The good line with another range of ports. */
constexpr char CHANGED_LINE[] = "@10.1.0.9/16  192.168.7.0/24  0 : 65535  1024 : 1024  0x06/0xFF\n";

/** The only entry that the good line gives. */
inline FiltersEntry goodEntry()
{
    FiltersEntry entry(0);
    entry.setPriority(1);
    entry.setMatch(MatchSrcIPv4(ipv4("10.1.0.9"), ipv4("255.255.0.0")));
    entry.setMatch(MatchDstIPv4(ipv4("192.168.7.0"), ipv4("255.255.255.0")));
    entry.setMatch(MatchDstL4Port(1024, 0xFC00));
    entry.setMatch(MatchIpProtocol(6));
    entry.setAction(ActionPermit());
    return entry;
}

inline FiltersGroup goodGroup()
{
    FiltersGroup group(0);
    group.setType(GROUP_TYPE_3);
    group.insertEntry(goodEntry());
    return group;
}

struct Outcome {
    int status;
    std::string out;
    std::string err;
};

/** Runs the program in a folder of its own that holds the file "good" with one rule. */
class Filterctl : public testing::Test {
protected:
    Filterctl()
    {
        std::string path = testing::TempDir() + "filterctl.XXXXXX";
        if (::mkdtemp(path.data()) == nullptr)
            throw std::runtime_error("no temporary folder");
        folder_ = path;
        fs::create_directory(folder_ / "files");
        write("good", GOOD_LINE);
    }
    ~Filterctl() override { fs::remove_all(folder_); }

    fs::path file(const std::string& name) const { return folder_ / "files" / name; }

    void write(const std::string& name, const std::string& bytes) const
    {
        std::ofstream(file(name), std::ios::binary) << bytes;
    }

    std::string read(const std::string& name) const
    {
        std::ostringstream bytes;
        bytes << std::ifstream(file(name), std::ios::binary).rdbuf();
        return bytes.str();
    }

    std::vector<std::string> names() const
    {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder_ / "files"))
            names.push_back(entry.path().filename());
        std::sort(names.begin(), names.end());
        return names;
    }

    /** The arguments may redirect; @p before is run in the same shell. */
    Outcome run(const std::string& arguments, const std::string& before = "") const
    {
        const std::string command = "cd '" + file("").string() + "' && (" + before +
                                    FILTERCTL_COMMAND " " + arguments + ") >../out 2>../err";
        const int status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, read("../out"), read("../err")};
    }

    void expectDone(const std::string& arguments, const std::string& out = "",
                    const std::string& before = "") const
    {
        const Outcome outcome = run(arguments, before);
        EXPECT_EQ(outcome.status, 0) << arguments;
        EXPECT_EQ(outcome.out, out) << arguments;
        EXPECT_EQ(outcome.err, "") << arguments;
    }

    void expectRefused(const std::string& arguments, const std::string& why,
                       const std::string& before = "", int status = 1) const
    {
        const auto namesBefore = names();
        const Outcome outcome = run(arguments, before);
        EXPECT_EQ(outcome.status, status) << arguments;
        EXPECT_EQ(outcome.out, "") << arguments;
        EXPECT_EQ(outcome.err, "filterctl: " + why + "\n") << arguments;
        EXPECT_EQ(names(), namesBefore) << arguments;
    }

    /** The usage of the command is shown, or that of filterctl if it is empty. */
    void expectWrongUsage(const std::string& command, const std::string& arguments,
                          const std::string& why) const
    {
        const std::string begin = "filterctl: " + why + "\nusage: filterctl " +
                                  (command.empty() ? "COMMAND" : command) + " ";
        const std::string end =
            "\nTry 'filterctl " + command + (command.empty() ? "" : " ") + "--help'.\n";
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, 2) << arguments;
        EXPECT_EQ(outcome.out, "") << arguments;
        EXPECT_EQ(outcome.err.substr(0, begin.size()), begin) << arguments;
        EXPECT_EQ(outcome.err.substr(std::min(outcome.err.find("\nTry"), outcome.err.size())), end)
            << arguments;
    }

private:
    fs::path folder_;
};

inline std::string bytesOf(const FiltersGroup& group)
{
    std::string bytes;
    group.serialize(&bytes);
    return bytes;
}

} // namespace FiltersCommon::test

#endif // FILTER_COMMON_TESTS_FILTERCTL_SUPPORT_H
