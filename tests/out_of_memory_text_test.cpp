/**
 * Text dumps into streams that fail: for lack of memory, because the buffer takes no more, or
 * because it raises an exception. The stream says so in its own way, the object stays as it was.
 * And rule text without memory.
 */
#include "filter_rule_text.h"
#include "named_entries.h"
#include "out_of_memory.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <ios>
#include <new>
#include <ostream>
#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;

using Print = std::function<void(std::ostream&)>;

/**
 * Calls @p function with the output operator of every named match, action, entry and group, and of
 * a counter, and checks that the object stays as it was.
 */
template <class Function>
void withEachSample(Function function)
{
    const auto callFor = [&](const auto& object) {
        const std::decay_t<decltype(object)> before(object);
        using ::operator<<;
        function(Print([&](std::ostream& out) { out << object; }));
        expectSame(object, before);
    };
    const auto callForKinds = [&](const auto& samples) {
        for (const auto& sample : samples) {
            SCOPED_TRACE(sample.name);
            function(Print([&](std::ostream& out) { sample.print(out); }));
            function(Print([&](std::ostream& out) { out << *sample.object; }));
            EXPECT_TRUE(*sample.object == *sample.copy());
        }
    };
    callForKinds(matchSamples());
    callForKinds(actionSamples());
    callFor(Counter(7, COUNTER_TYPE_PACKETS));
    for (const auto& sample : entrySamples()) {
        SCOPED_TRACE(sample.name);
        callFor(*sample.object);
    }
    for (const auto& sample : groupSamples()) {
        SCOPED_TRACE(sample.name);
        callFor(*sample.object);
    }
}

std::string textOf(const Print& print)
{
    std::ostringstream out;
    print(out);
    return out.str();
}

bool isBeginning(const std::string& text, const std::string& whole)
{
    return whole.compare(0, text.size(), text) == 0;
}

// ----------------------------------------------------------------------------------------- memory

TEST(OutOfMemory, DumpingRaisesBadAllocWhereTheStreamIsToRaise)
{
    withEachSample([](const Print& print) {
        const auto dumpIt = [&] {
            std::ostringstream out;
            out.exceptions(std::ios::badbit);
            print(out);
        };
        expectBadAlloc(dumpIt);
    });
}

TEST(OutOfMemory, DumpingSetsBadbitWhereTheStreamIsNotToRaise)
{
    withEachSample([](const Print& print) {
        const std::string whole = textOf(print);
        for (const Failing failing : FAILINGS) {
            bool failed = true;
            for (std::size_t n = 1; failed; ++n) {
                std::ostringstream out;
                failAllocation(n, failing);
                EXPECT_NO_THROW(print(out));
                failed = stopFailing();
                EXPECT_EQ(out.bad(), failed);
                EXPECT_TRUE(isBeginning(out.str(), whole));
                EXPECT_TRUE(failed || n > 1) << "no allocation";
            }
        }
    });
}

TEST(OutOfMemory, DumpingNeedsNoMemoryButTheStream)
{
    withEachSample([](const Print& print) {
        char room[100];
        class Reused : public std::streambuf {
        public:
            Reused(char* begin, char* end) : begin_(begin), end_(end) { setp(begin, end); }

        private:
            int_type overflow(int_type c) override
            {
                setp(begin_, end_);
                return sputc(traits_type::to_char_type(c));
            }

            char* begin_;
            char* end_;
        } buffer(room, room + sizeof room);
        std::ostream out(&buffer);
        expectNoAllocation([&] { print(out); });
        EXPECT_TRUE(out.good());
    });
}

// -------------------------------------------------------------------------------------- rule text

TEST(OutOfMemory, WritingAndReadingRuleTextRaisesBadAlloc)
{
    for (const auto& sample : groupSamples()) {
        SCOPED_TRACE(sample.name);
        const std::string text = toRuleText(*sample.object);
        const std::size_t entries = sample.object->getEntriesRef().size();
        expectBadAlloc([&] { toRuleText(*sample.object); });
        expectBadAlloc([&] { groupFromRuleText(text); }, entries);
    }
}

TEST(OutOfMemory, ReadingWrongRuleTextRaisesBadAlloc)
{
    const std::string text = "group 70000\n"
                             "1 src_ipv4=10.0.0.1 dst_ipv6=::1 src_ipv4=10.0.0.2 then premit\n"
                             "1 vlan=5 policer=\x01\n";
    std::vector<RuleTextError> expected;
    groupFromRuleText(text, &expected);
    ASSERT_GE(expected.size(), 6u);
    expectBadAlloc(
        [&] {
            std::vector<RuleTextError> errors;
            groupFromRuleText(text, &errors);
            EXPECT_EQ(errors.size(), expected.size());
        },
        expected.size());
}

// ---------------------------------------------------------------------------------------- buffers

/** What a buffer raises. */
struct Full {};

/** Takes so many characters and flushes, counted together; then refuses, or raises Full. */
class LimitedBuffer : public std::streambuf {
public:
    LimitedBuffer(std::size_t limit, bool raises) : limit_(limit), raises_(raises) {}

    const std::string& text() const { return text_; }

private:
    bool isFull()
    {
        if (limit_ != 0) {
            --limit_;
            return false;
        }
        if (raises_)
            throw Full();
        return true;
    }

    int_type overflow(int_type c) override
    {
        if (isFull())
            return traits_type::eof();
        text_ += traits_type::to_char_type(c);
        return c;
    }

    int sync() override { return isFull() ? -1 : 0; }

    std::size_t limit_;
    bool raises_;
    std::string text_;
};

/** How far a dump got, and what became of the stream and of an exception. */
struct Outcome {
    std::string text;
    bool bad;
    std::string raised;
};

Outcome printTo(LimitedBuffer& buffer, std::ios::iostate exceptions, const Print& print)
{
    std::ostream out(&buffer);
    out.exceptions(exceptions);
    std::string raised;
    try {
        print(out);
    } catch (const Full&) {
        raised = "Full";
    } catch (const std::ios::failure&) {
        raised = "failure";
    }
    return {buffer.text(), out.bad(), raised};
}

TEST(FailingStream, EndsADumpAfterAnyCharacterAndAnyFlush)
{
    withEachSample([](const Print& print) {
        const std::string whole = textOf(print);
        for (const bool raises : {false, true}) {
            bool failed = true;
            for (std::size_t limit = 0; failed; ++limit) {
                LimitedBuffer quiet(limit, raises);
                const Outcome ended = printTo(quiet, std::ios::goodbit, print);
                failed = ended.bad;
                ASSERT_EQ(ended.raised, "");
                ASSERT_TRUE(failed ? isBeginning(ended.text, whole) : ended.text == whole);
                ASSERT_TRUE(failed || limit >= whole.size());

                LimitedBuffer loud(limit, raises);
                const Outcome raised = printTo(loud, std::ios::badbit, print);
                ASSERT_EQ(raised.bad, failed);
                ASSERT_EQ(raised.raised, !failed ? "" : raises ? "Full" : "failure");
                ASSERT_EQ(raised.text, ended.text);
            }
        }
    });
}

} // namespace
