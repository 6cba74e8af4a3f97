/**
 * What filterctl writes to terminals, and nowhere else.
 */
#include "filterctl_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include <fcntl.h>
#include <sys/ioctl.h>
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

    void setWidth(unsigned short width) const
    {
        winsize size{};
        size.ws_col = width;
        ::ioctl(slave_, TIOCSWINSZ, &size);
    }

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

/** What the terminal gets of a run, without colours and carriage returns. */
class FilterctlPlainTerminal : public FilterctlTerminal {
protected:
    std::string textOf(const std::string& arguments) const
    {
        run(arguments, "export TERM=dumb; ");
        std::string text = terminal_.takeText();
        text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
        return text;
    }

    const std::string out_ = " > " + terminal_.name();
    const std::string err_ = " 2> " + terminal_.name();
};

TEST_F(FilterctlPlainTerminal, ListsInColumnsIfThereIsRoom)
{
    write("rules", "group 7 type=3\n"
                   "1 priority=10 src_ipv4=10.0.0.0/8 then deny\n"
                   "20 dst_l4_port=53 ip_protocol=udp then permit counter=1:packets\n"
                   "3 all then\n");
    const std::string columns =
        "group 7 priority=0 stage=0 type=3\n"
        "1  priority=10                    src_ipv4=10.0.0.0/8                 then        deny\n"
        "3              all                                                    then\n"
        "20                 dst_l4_port=53                     ip_protocol=udp then permit      "
        "counter=1:packets\n";
    EXPECT_EQ(textOf("list rules" + out_), columns);
    const std::string longest = columns.substr(columns.rfind("\n20 ") + 1);
    terminal_.setWidth(static_cast<unsigned short>(longest.size() - 1));
    EXPECT_EQ(textOf("list rules" + out_), columns);
    terminal_.setWidth(static_cast<unsigned short>(longest.size() - 2));
    EXPECT_EQ(textOf("list rules" + out_), run("list rules").out);
    terminal_.setWidth(0);
    EXPECT_EQ(textOf("list rules -o /dev/stdout" + out_), run("list rules").out);
    // What is in columns is rule text still.
    write("columns", columns);
    expectDone("diff rules columns");
}

TEST_F(FilterctlPlainTerminal, GetsNoBytes)
{
    const std::string why = "filterctl: the bytes of a group are nothing for a terminal; -o FILE "
                            "writes them to a file\n";
    for (const char* command : {"import good", "merge --renumber good good"}) {
        const Outcome outcome = run(command + out_);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.err, why);
        EXPECT_EQ(terminal_.takeText(), "");
    }
}

TEST_F(FilterctlPlainTerminal, MarksAreUnderTheWords)
{
    write("bad", "1 all then # \033[2J\n\t2 src_ip\033=\xC3\xA4 then\n\n");
    EXPECT_EQ(
        textOf("check bad" + err_),
        "filterctl: bad:1:1: entry 1: match kind MATCH_ALL is not admitted in a group of type "
        "GROUP_TYPE_0; none is admitted\n"
        "  1 all then # ?[2J\n"
        "  ^\n"
        "filterctl: bad:2:4: there is no match 'src_ip\\x1b'; did you mean 'src_ipv4'?\n"
        "   2 src_ip?=?? then\n"
        "     ^~~~~~~~~~\n");
    // A rule that a list's group does not admit is marked as a whole.
    EXPECT_NE(textOf("check --type 7 good" + err_)
                  .find("\n  @10.1.0.9/16  192.168.7.0/24  0 : 65535  1024 : 2047  0x06/0xFF\n  ^" +
                        std::string(62, '~') + "\n"),
              std::string::npos);
    // Of a long line there is only what is around the mark.
    write("bad", "1 then " + std::string(1000, 'x') + " permit permit " + std::string(1000, 'y'));
    EXPECT_NE(textOf("check bad" + err_)
                  .find("'permit' is given twice\n  " + std::string(32, 'x') + " permit permit " +
                        std::string(29, 'y') + "\n" + std::string(42, ' ') + "^~~~~~\n"),
              std::string::npos);
}

TEST_F(FilterctlPlainTerminal, ShowsThatLongWorkGoesOn)
{
    const std::string slowly = "(cat good; sleep 1.5; cat good) | ";
    const std::string arguments = "list -o list - ";
    expectDone(arguments, "", slowly);
    run(arguments + err_, slowly);
    const std::string text = terminal_.takeText();
    EXPECT_NE(text.find("\r\033[Kfilterctl: reading [#                "), std::string::npos)
        << text;
    EXPECT_EQ(text.substr(text.size() - 4), "\r\033[K");
    expectDone("list good -o list" + err_);
    EXPECT_EQ(terminal_.takeText(), "");
}

} // namespace
