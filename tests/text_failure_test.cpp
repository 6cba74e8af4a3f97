#include "named_samples.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

// This program replaces the system's conversions of addresses and interfaces into text, so that it
// can watch them and make them fail.

namespace {

struct Conversion {
    std::string function;
    std::size_t room;   // in the buffer, where the function is told
    std::string before; // the old contents of the buffer, if it may be read
};

bool operator==(const Conversion& a, const Conversion& b)
{
    return a.function == b.function && a.room == b.room && a.before == b.before;
}

void PrintTo(const Conversion& conversion, std::ostream* out)
{
    *out << conversion.function << " with room for " << conversion.room << " over \""
         << conversion.before << "\"";
}

struct {
    std::vector<Conversion> conversions;
    /** Whether the conversion with this number, from 0, succeeds. */
    std::function<bool(std::size_t)> succeeds;
    std::string interfaceName;
    int interfaceResult;
} system_;

/** Writes "text" and the number of the conversion, or fails. */
char* convert(const Conversion& conversion, char* buffer)
{
    const std::size_t number = system_.conversions.size();
    system_.conversions.push_back(conversion);
    if (!system_.succeeds(number))
        return nullptr;
    std::strcpy(buffer, ("text" + std::to_string(number)).c_str());
    return buffer;
}

} // namespace

extern "C" {

char* ether_ntoa_r(const ether_addr*,
                   char* buffer) noexcept(noexcept(ether_ntoa_r(nullptr, nullptr)))
{
    return convert({"ether_ntoa_r", 0, buffer}, buffer);
}

const char* inet_ntop(int family, const void*, char* buffer,
                      socklen_t size) noexcept(noexcept(inet_ntop(0, nullptr, nullptr, 0)))
{
    return convert({family == AF_INET ? "inet_ntop IPv4" : "inet_ntop IPv6", size, ""}, buffer);
}

int limid_to_intfname(limid_t, char* name, std::size_t size)
{
    system_.conversions.push_back({"limid_to_intfname", size, ""});
    std::snprintf(name, size, "%s", system_.interfaceName.c_str());
    return system_.interfaceResult;
}

} // extern "C"

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;

class Conversions : public testing::Test {
protected:
    Conversions()
    {
        system_ = {{}, [](std::size_t) { return true; }, "port", 0};
    }

    static void fail(std::size_t which)
    {
        system_.conversions.clear();
        system_.succeeds = [which](std::size_t number) { return number != which; };
    }
};

using TextFailure = Conversions;

/** A sample with a failing conversion, and the last line of its dump. */
struct Failing {
    std::string sample;
    std::size_t conversion;
    std::string lastLine;
};

const Failing FAILURES_OF_MATCHES[] = {
    {"MatchDstMac", 0, "      MAC: "},   {"MatchDstMac", 1, "      Mask: "},
    {"MatchSrcMac", 0, "      MAC: "},   {"MatchSrcMac", 1, "      Mask: "},
    {"MatchSrcIPv4", 0, "      IP: "},   {"MatchSrcIPv4", 1, "      Mask: "},
    {"MatchDstIPv4", 0, "      IP: "},   {"MatchDstIPv4", 1, "      Mask: "},
    {"MatchSrcIPv6", 0, "      IPv6: "}, {"MatchSrcIPv6", 1, "      Mask: "},
    {"MatchDstIPv6", 0, "      IPv6: "}, {"MatchDstIPv6", 1, "      Mask: "},
};

const Failing FAILURES_OF_ACTIONS[] = {
    {"ActionReplaceDstMac", 0, "      Replace MAC: "},
    {"ActionReplaceSrcMac", 0, "      Replace MAC: "},
};

template <class Base>
void expectFailbit(const std::vector<Sample<Base>>& samples, const Failing& failing)
{
    SCOPED_TRACE(failing.sample);
    std::ostringstream out;
    EXPECT_NO_THROW(out << *sampleOf(samples, failing.sample).object);
    EXPECT_EQ(out.rdstate(), std::ios::failbit);
    const std::string text = out.str();
    EXPECT_EQ(text.substr(text.rfind('\n') + 1), failing.lastLine);
}

TEST_F(TextFailure, OfAnAddressSetsFailbitInThePlaceOfTheText)
{
    for (const Failing& failing : FAILURES_OF_MATCHES) {
        fail(failing.conversion);
        expectFailbit(matchSamples(), failing);
        EXPECT_EQ(system_.conversions.size(), 2u) << "the mask is converted all the same";
    }
    for (const Failing& failing : FAILURES_OF_ACTIONS) {
        fail(failing.conversion);
        expectFailbit(actionSamples(), failing);
    }
}

FiltersEntry entryWithAddresses()
{
    FiltersEntry entry(7);
    entry.setMatch(MatchDstMac(mac("1:2:3:4:5:6")));
    entry.setMatch(MatchSrcIPv4(ipv4("192.0.2.1")));
    entry.setAction(ActionReplaceDstMac(mac("1:2:3:4:5:6")));
    entry.setAction(ActionBlackHole());
    return entry;
}

TEST_F(TextFailure, LetsTheDumpGoOn)
{
    // The caller's stream is good again from the third conversion on.
    std::ostringstream out;
    system_.succeeds = [&](std::size_t number) {
        if (number == 2)
            out.clear();
        return number != 0;
    };
    out << entryWithAddresses();
    EXPECT_EQ(out.str(), "  =FiltersEntry=\n"
                         "    ID: 7\n"
                         "    Priority: 0\n"
                         "    =MatchDstMac=\n"
                         "      Match Type ID: 4\n"
                         "      MAC: text2\n"
                         "      Mask: text3\n"
                         "    =ActionReplaceDstMac=\n"
                         "      Action Type ID: 12\n"
                         "      Replace MAC: text4\n"
                         "    =ActionBlackHole=\n"
                         "      Action Type ID: 16\n"
                         "      <no parameters>\n");
}

TEST_F(TextFailure, OfAllConversionsStillTriesEachOfThem)
{
    system_.succeeds = [](std::size_t) { return false; };
    std::ostringstream out;
    EXPECT_NO_THROW(out << entryWithAddresses());
    EXPECT_EQ(system_.conversions.size(), 5u);
}

TEST_F(Conversions, GiveTheTextsOfTheDump)
{
    std::ostringstream out;
    out << MatchDstMac(mac("1:2:3:4:5:6")) << MatchSrcIPv4(ipv4("192.0.2.1"))
        << MatchSrcIPv6(ipv6("2001:db8::1"));
    EXPECT_TRUE(out.good());
    EXPECT_EQ(out.str(), "    =MatchDstMac=\n"
                         "      Match Type ID: 4\n"
                         "      MAC: text0\n"
                         "      Mask: text1\n"
                         "    =MatchSrcIPv4=\n"
                         "      Match Type ID: 9\n"
                         "      IP: text2\n"
                         "      Mask: text3\n"
                         "    =MatchSrcIPv6=\n"
                         "      Match Type ID: 14\n"
                         "      IPv6: text4\n"
                         "      Mask: text5\n");
}

// ---------------------------------------------------------------------------------------- buffers

TEST_F(Conversions, GiveAMacABufferThatHoldsAnAddress)
{
    std::ostringstream out;
    out << MatchDstMac(mac("1:2:3:4:5:6")) << ActionReplaceSrcMac(mac("1:2:3:4:5:6"));
    ASSERT_EQ(system_.conversions.size(), 3u);
    const Conversion fresh = {"ether_ntoa_r", 0, "00:00:00:00:00:00"};
    EXPECT_EQ(system_.conversions.front(), fresh);
    EXPECT_EQ(system_.conversions.back(), fresh);
}

TEST_F(Conversions, GiveAnIPv4AddressRoomFor16Characters)
{
    std::ostringstream out;
    out << MatchSrcIPv4(ipv4("192.0.2.1"));
    EXPECT_EQ(system_.conversions, (std::vector<Conversion>(2, {"inet_ntop IPv4", 16, ""})));
}

TEST_F(Conversions, GiveAnIPv6AddressRoomFor46Characters)
{
    std::ostringstream out;
    out << MatchSrcIPv6(ipv6("2001:db8::1"));
    EXPECT_EQ(system_.conversions, (std::vector<Conversion>(2, {"inet_ntop IPv6", 46, ""})));
}

// -------------------------------------------------------------------------------- interface names

TEST_F(Conversions, GiveAnInterfaceNameRoomFor100Characters)
{
    std::ostringstream out;
    out << MatchSrcPort(limId(0, 0, 0, 1)) << MatchEgressPorts({limId(0, 0, 0, 1)})
        << ActionRedirect(limId(0, 0, 0, 1)) << ActionBlockEgressPorts({limId(0, 0, 0, 1)});
    EXPECT_EQ(system_.conversions, (std::vector<Conversion>(4, {"limid_to_intfname", 100, ""})));
}

TEST_F(Conversions, TakeAnInterfaceNameWhateverTheResult)
{
    system_.interfaceName = std::string(99, 'x');
    system_.interfaceResult = -1;
    std::ostringstream out;
    out << MatchVirtualPort(limId(0, 0, 0, 1)) << ActionRedirect(limId(0, 0, 0, 1));
    EXPECT_TRUE(out.good());
    EXPECT_EQ(out.str(), "    =MatchVirtualPort=\n"
                         "      Match Type ID: 21\n"
                         "      LIMID: " +
                             system_.interfaceName +
                             "\n"
                             "    =ActionRedirect=\n"
                             "      Action Type ID: 11\n"
                             "      \"" +
                             system_.interfaceName + "\" \n");
}

} // namespace
