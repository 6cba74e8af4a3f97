#include <limidmgr_decode.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <type_traits>

namespace {

static_assert(sizeof(limid_t) == 4 && alignof(limid_t) == 1);
static_assert(std::is_trivially_copyable_v<limid_t> && std::is_standard_layout_v<limid_t>);
static_assert(std::is_same_v<decltype(limid_t::octet), std::uint8_t[4]>);
static_assert(std::is_same_v<decltype(&limid_to_intfname), int (*)(limid_t, char*, std::size_t)>);

constexpr char UNTOUCHED = '#';

/** The result, and a buffer of @p size characters with more behind it. */
struct Outcome {
    int result;
    std::array<char, 128> buffer;

    std::string name() const { return buffer.data(); }

    /** Whether nothing was written behind the first @p size characters. */
    bool stayedWithin(std::size_t size) const
    {
        return std::all_of(buffer.begin() + static_cast<std::ptrdiff_t>(size), buffer.end(),
                           [](char c) { return c == UNTOUCHED; });
    }
};

Outcome decode(const limid_t& limId, std::size_t size)
{
    Outcome outcome;
    outcome.buffer.fill(UNTOUCHED);
    outcome.result = limid_to_intfname(limId, outcome.buffer.data(), size);
    return outcome;
}

struct Known {
    limid_t limId;
    const char* name;
};

const Known NAMES[] = {
    {{{0, 0, 0, 0}}, "eth0/0"},
    {{{0, 1, 0, 2}}, "eth1/2"},
    {{{0, 255, 255, 255}}, "eth255/65535"},
    {{{0, 1, 1, 0}}, "eth1/256"},
    {{{1, 0, 0, 0}}, "lag0"},
    {{{1, 7, 0, 12}}, "lag12"},
    {{{1, 0, 0x12, 0x34}}, "lag4660"},
    {{{2, 0, 0, 1}}, "vlan1"},
    {{{2, 9, 0x0F, 0xFE}}, "vlan4094"},
    {{{3, 0, 0, 0}}, "cpu0"},
    {{{3, 200, 1, 2}}, "cpu200"},
    {{{4, 0, 0, 0}}, "limid-04000000"},
    {{{0xAB, 0xCD, 0xEF, 0x01}}, "limid-abcdef01"},
    {{{255, 255, 255, 255}}, "limid-ffffffff"},
};

TEST(LimidToIntfname, NamesEveryKindOfInterface)
{
    for (const Known& known : NAMES) {
        const Outcome outcome = decode(known.limId, 100);
        EXPECT_EQ(outcome.result, 0);
        EXPECT_EQ(outcome.name(), known.name);
    }
}

TEST(LimidToIntfname, EveryOtherKindIsWrittenAsItsDigits)
{
    for (int kind = 4; kind < 256; ++kind) {
        const limid_t limId = {{static_cast<std::uint8_t>(kind), 0x0A, 0x00, 0xF0}};
        char expected[20];
        std::snprintf(expected, sizeof expected, "limid-%02x0a00f0", static_cast<unsigned>(kind));
        EXPECT_EQ(decode(limId, 100).name(), expected);
    }
}

TEST(LimidToIntfname, NameThatFitsExactlyIsWhole)
{
    for (const Known& known : NAMES) {
        const std::size_t size = std::string(known.name).size() + 1;
        const Outcome outcome = decode(known.limId, size);
        EXPECT_EQ(outcome.result, 0) << known.name;
        EXPECT_EQ(outcome.name(), known.name);
        EXPECT_TRUE(outcome.stayedWithin(size)) << known.name;
    }
}

TEST(LimidToIntfname, NameThatDoesNotFitIsCutAndTerminated)
{
    for (const Known& known : NAMES)
        for (std::size_t size = 1; size <= std::string(known.name).size(); ++size) {
            const Outcome outcome = decode(known.limId, size);
            EXPECT_EQ(outcome.result, -1) << known.name << " in " << size;
            EXPECT_EQ(outcome.name(), std::string(known.name, size - 1));
            EXPECT_TRUE(outcome.stayedWithin(size)) << known.name << " in " << size;
        }
}

TEST(LimidToIntfname, NothingIsWrittenIntoABufferOfNoSize)
{
    for (const Known& known : NAMES) {
        const Outcome outcome = decode(known.limId, 0);
        EXPECT_EQ(outcome.result, -1) << known.name;
        EXPECT_TRUE(outcome.stayedWithin(0)) << known.name;
        EXPECT_EQ(limid_to_intfname(known.limId, nullptr, 0), -1) << known.name;
    }
}

} // namespace
