/**
 * JSON as text: written value by value, and read as a sequence of events. Neither builds a tree nor
 * calls itself, so any text can be read, however deeply nested.
 */
#ifndef FILTER_COMMON_TOOLS_JSON_TEXT_H
#define FILTER_COMMON_TOOLS_JSON_TEXT_H

#include "files.h"
#include "problems.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace filterctl {

/** The text as a string of JSON. Bytes that are not UTF-8 become the replacement character. */
std::string quoted(std::string_view text);

/** Writes JSON, on one line or with each member and each element on a line of its own. */
class JsonWriter {
public:
    /** The text goes to @p sink, the last of it with end(). */
    JsonWriter(const Sink& sink, bool compact)
        : sink_(sink), compact_(compact), separator_(compact ? "," : ",\n")
    {}

    void startObject() { start("{"); }
    void endObject() { end("}"); }
    void startList() { start("["); }
    void endList() { end("]"); }
    /** @p name has no character that a string of JSON would escape. */
    void key(std::string_view name);
    void number(std::int64_t value);
    void truth(bool value);
    void text(std::string_view value);
    /** Ends the text with a newline. */
    void end();

private:
    std::string_view separation();
    void start(std::string_view bracket);
    void end(std::string_view bracket);
    template <class... Piece>
    void append(Piece... pieces);
    void flush();

    const Sink& sink_;
    const bool compact_;
    std::string separator_; /**< what stands between two elements: a comma, and the next line */
    std::size_t depth_ = 0;
    bool isFirst_ = true;   /**< whether the innermost object or list has no element yet */
    bool isMember_ = false; /**< whether a name was written that has no value yet */
    std::array<char, 65536> unwritten_; /**< pieces are many and short, so they are collected */
    std::size_t unwrittenSize_ = 0;
};

/**
 * A value that is neither an object nor a list; null is the monostate. Whole numbers that need more
 * than 63 bits are among the others.
 */
using JsonScalar = std::variant<std::monostate, bool, std::int64_t, double, std::string_view>;

/** Thrown to end the reading of a text; without a place, it is that of the current event. */
struct JsonRefusal {
    std::string sentence;
    std::optional<std::size_t> place = std::nullopt;
};

/** Is told what a text holds. A place is an offset into the text. */
class JsonEvents {
public:
    virtual void key(std::string_view name) = 0;
    virtual void value(const JsonScalar& value) = 0;
    virtual void startObject(std::size_t place) = 0;
    virtual void endObject() = 0;
    virtual void startList(std::size_t place) = 0;
    virtual void endList() = 0;

protected:
    ~JsonEvents() = default;
};

/** Passes the contents of the text to @p events. @return what is wrong with it, if anything is */
std::optional<Problem> readJson(std::string_view text, JsonEvents& events);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_JSON_TEXT_H
