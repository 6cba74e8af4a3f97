/**
 * Builds messages from text and compares them field by field.
 */
#ifndef FILTER_COMMON_TESTS_WIRE_SUPPORT_H
#define FILTER_COMMON_TESTS_WIRE_SUPPORT_H

#include "named_samples.h"
#include "support.h"

#include "filter_groups.pb.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace FiltersCommon::test {

inline MatchPB written(const Match& match)
{
    MatchPB pb;
    match.convertToMatchPB(&pb);
    return pb;
}

inline ActionPB written(const Action& action)
{
    ActionPB pb;
    action.convertToActionPB(&pb);
    return pb;
}

inline CounterPB written(const Counter& counter)
{
    CounterPB pb;
    counter.Serialize(&pb);
    return pb;
}

inline FiltersEntryPB written(const FiltersEntry& entry)
{
    FiltersEntryPB pb;
    entry.convertToFiltersEntryPB(&pb);
    return pb;
}

inline FiltersGroupPB written(const FiltersGroup& group) { return group.convertToFiltersGroupPB(); }

void parseText(const std::string& text, google::protobuf::Message* pb);

/** The message with these fields; required ones may be missing. */
template <class Message>
Message message(const std::string& text)
{
    Message pb;
    parseText(text, &pb);
    return pb;
}

/** Whether exactly the same fields are present, with the same values in the same order. */
testing::AssertionResult isMessage(const google::protobuf::Message& actual,
                                   const google::protobuf::Message& expected);
testing::AssertionResult isMessage(const google::protobuf::Message& actual,
                                   const std::string& expectedText);

/** What a copy of a sample reads, and the message that it must write afterwards. */
struct Reading {
    std::string sample;
    std::string read;
    std::string expected;
};

inline void fill(Match& match, const MatchPB& pb) { match.convertFromMatchPB(&pb); }
inline void fill(Action& action, const ActionPB& pb) { action.convertFromActionPB(&pb); }

template <class Base>
void expectReadings(const std::vector<Sample<Base>>& samples, const std::vector<Reading>& readings)
{
    for (const Reading& reading : readings) {
        const std::unique_ptr<Base> object = sampleOf(samples, reading.sample).copy();
        fill(*object, message<decltype(written(*object))>(reading.read));
        EXPECT_TRUE(isMessage(written(*object), reading.expected)) << reading.sample;
    }
}

/** Reads each sample into each sample of its class, except for the classes that @p append. */
template <class Base>
void expectOverwritten(const std::vector<Sample<Base>>& samples,
                       const std::set<std::string>& append)
{
    for (const Sample<Base>& target : samples) {
        for (const Sample<Base>& source : samples) {
            const std::string name = target.className();
            if (name != source.className() || append.count(name) != 0)
                continue;
            const std::unique_ptr<Base> object = target.copy();
            fill(*object, written(*source.object));
            EXPECT_TRUE(*object == *source.object) << source.name << " into " << target.name;
        }
    }
}

/** The bytes of a message, which may lack required fields. */
inline std::string bytesOf(const google::protobuf::Message& pb)
{
    return pb.SerializePartialAsString();
}

template <class T>
std::string serialized(const T& object)
{
    std::string bytes;
    object.serialize(&bytes);
    return bytes;
}

/** What the parser leaves in a message, even if it stops before the end of the bytes. */
template <class Message>
Message parsed(const std::string& bytes)
{
    Message pb;
    static_cast<void>(pb.ParsePartialFromString(bytes));
    return pb;
}

/** An entry or a group built from the bytes of @p object, as another process would. */
template <class T>
T rebuilt(const T& object)
{
    return T(serialized(object));
}

/** Silences the messages runtime, which logs every fault in the bytes. */
class QuietParser {
public:
    QuietParser() {}

private:
#if GOOGLE_PROTOBUF_VERSION < 4022000
    google::protobuf::LogSilencer silencer_;
#endif
};

/** Random bytes, the same in every run. */
class RandomBytes {
public:
    std::string any(std::size_t maximum)
    {
        std::string bytes(below(maximum + 1), '\0');
        for (char& byte : bytes)
            byte = anyByte();
        return bytes;
    }

    /** The given bytes with one to four changes. */
    std::string mutated(std::string bytes)
    {
        for (std::size_t changes = 1 + below(4); changes != 0; --changes)
            bytes[below(bytes.size())] = anyByte();
        return bytes;
    }

private:
    std::size_t below(std::size_t bound) { return generator_() % bound; }
    char anyByte() { return static_cast<char>(generator_() & 0xFF); }

    std::mt19937 generator_{20240229};
};

} // namespace FiltersCommon::test

#endif // FILTER_COMMON_TESTS_WIRE_SUPPORT_H
