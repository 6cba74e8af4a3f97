/**
 * What filterctl writes to terminals, and nowhere else.
 */
#include "filterctl_support.h"

#include <gtest/gtest.h>

#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;
using namespace std::string_literals;

/** A terminal that keeps what is written to it. */
class Terminal {
public:
    Terminal() : master_(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK))
    {
        if (master_ < 0 || ::grantpt(master_) != 0 || ::unlockpt(master_) != 0)
            return;
        name_ = ::ptsname(master_);
        // What was written is kept while somebody has the terminal open.
        slave_ = ::open(name_.c_str(), O_RDWR | O_NOCTTY);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    ~Terminal()
    {
        ::close(slave_);
        ::close(master_);
    }

    /** Not where the machine has no terminals to give, as in some containers. */
    bool isOpen() const { return slave_ >= 0; }

    const std::string& name() const { return name_; }

    std::string takeText() const
    {
        std::string text;
        char bytes[4096];
        for (ssize_t count; (count = ::read(master_, bytes, sizeof bytes)) > 0;)
            text.append(bytes, static_cast<std::size_t>(count));
        return text;
    }

private:
    int master_;
    int slave_ = -1;
    std::string name_;
};

class FilterctlTerminal : public Filterctl {
protected:
    FilterctlTerminal()
    {
        write("group", bytesOf(goodGroup()));
        write("changed", CHANGED_LINE);
        EXPECT_EQ(run("import changed -o other").status, 0);
    }

    void SetUp() override
    {
        if (!terminal_.isOpen())
            GTEST_SKIP() << "there is no terminal";
    }

    bool colors(const std::string& arguments, const std::string& environment) const
    {
        const Outcome outcome =
            run(arguments, "unset NO_COLOR; TERM=xterm; " + environment + " export TERM; ");
        return (terminal_.takeText() + outcome.out + outcome.err + read("text")).find('\033') !=
               std::string::npos;
    }

    const Terminal terminal_;
};

TEST_F(FilterctlTerminal, GetsColorsIfItWantsThem)
{
    write("text", "");
    const std::string terminal = terminal_.name();
    for (const std::string& arguments :
         {"diff group other > " + terminal, "check --type 0 good 2> " + terminal,
          "list group > " + terminal}) {
        EXPECT_TRUE(colors(arguments, ""));
        EXPECT_TRUE(colors(arguments, "export NO_COLOR=;"));
        EXPECT_FALSE(colors(arguments, "export NO_COLOR=1;"));
        EXPECT_FALSE(colors(arguments, "export NO_COLOR=0;"));
        EXPECT_FALSE(colors(arguments, "TERM=dumb;"));
        EXPECT_FALSE(colors(arguments, "TERM=;"));
        EXPECT_FALSE(colors(arguments, "unset TERM;"));
    }
}

TEST_F(FilterctlTerminal, NothingElseGetsColors)
{
    const std::string terminal = terminal_.name();
    EXPECT_FALSE(colors("diff group other", ""));
    EXPECT_FALSE(colors("diff group other 2> " + terminal, ""));
    EXPECT_FALSE(colors("diff group other -o text > " + terminal, ""));
    EXPECT_FALSE(colors("check --type 0 good", ""));
    EXPECT_FALSE(colors("check --type 0 good > " + terminal, ""));
    for (const char* command : {"show group", "json group", "stats group", "--help"})
        EXPECT_FALSE(colors(command + (" > " + terminal), ""));
}

TEST_F(FilterctlTerminal, GetsColorsInTheirPlaces)
{
    const std::string before = "unset NO_COLOR; export TERM=xterm; ";
    EXPECT_EQ(run("diff group other > " + terminal_.name(), before).status, 1);
    EXPECT_EQ(terminal_.takeText(),
              "\033[1m--- group\033[0m\r\n"
              "\033[1m+++ other\033[0m\r\n"
              "  entry 0 differs\r\n"
              "\033[31m-   MATCH_DST_L4_PORT Port: 1024, Mask: 64512\033[0m\r\n"
              "\033[32m+   MATCH_DST_L4_PORT Port: 1024, Mask: 65535\033[0m\r\n"
              "entries: 0 the same, 1 differing, 0 only in group, 0 only in other\r\n");
    write("bad", "1\tsrc_ip=1 then\n\n2 then\n2 then");
    EXPECT_EQ(run("check bad 2> " + terminal_.name(), before).status, 1);
    EXPECT_EQ(terminal_.takeText(),
              "filterctl: \033[1mbad:1:3:\033[0m there is no match 'src_ip'; did you mean "
              "'src_ipv4'?\r\n"
              "  1 src_ip=1 then\r\n"
              "    \033[32m^~~~~~~~\033[0m\r\n"
              "filterctl: \033[1mbad:4:1:\033[0m identifier 2 is taken by an entry in front of "
              "this one\r\n"
              "  2 then\r\n"
              "  \033[32m^\033[0m\r\n");
}

} // namespace
