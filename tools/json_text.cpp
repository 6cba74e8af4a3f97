#include "json_text.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <limits>
#include <utility>

#include <nlohmann/json.hpp>

namespace filterctl {

using namespace std::string_view_literals;

// ---------------------------------------------------------------------------------------- writing

namespace {

bool isPlain(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return c >= ' ' && c <= '~' && c != '"' && c != '\\'; });
}

} // namespace

std::string quoted(std::string_view text)
{
    using nlohmann::json;
    return json(text).dump(-1, ' ', false, json::error_handler_t::replace);
}

void JsonWriter::key(std::string_view name)
{
    append(separation(), "\""sv, name, compact_ ? "\":"sv : "\": "sv);
    isMember_ = true;
}

void JsonWriter::number(std::int64_t value)
{
    char digits[std::numeric_limits<std::int64_t>::digits10 + 2];
    const char* end = std::to_chars(digits, std::end(digits), value).ptr;
    append(separation(), std::string_view(digits, static_cast<std::size_t>(end - digits)));
}

void JsonWriter::truth(bool value) { append(separation(), value ? "true"sv : "false"sv); }

void JsonWriter::text(std::string_view value)
{
    if (isPlain(value))
        append(separation(), "\""sv, value, "\""sv);
    else
        append(separation(), std::string_view(quoted(value)));
}

void JsonWriter::end()
{
    append("\n"sv);
    flush();
}

/** What is written before the next name, or before the next value if it has none. */
std::string_view JsonWriter::separation()
{
    if (std::exchange(isMember_, false) || depth_ == 0)
        return {};
    return std::string_view(separator_).substr(std::exchange(isFirst_, false) ? 1 : 0);
}

void JsonWriter::start(std::string_view bracket)
{
    append(separation(), bracket);
    if (!compact_)
        separator_ += ' ';
    ++depth_;
    isFirst_ = true;
}

void JsonWriter::end(std::string_view bracket)
{
    --depth_;
    if (!compact_)
        separator_.pop_back();
    append(std::string_view(separator_).substr(isFirst_ ? separator_.size() : 1), bracket);
    isFirst_ = false;
}

template <class... Piece>
void JsonWriter::append(Piece... pieces)
{
    const std::size_t size = (pieces.size() + ...);
    if (size > unwritten_.size() - unwrittenSize_)
        flush();
    if (size > unwritten_.size()) {
        (sink_(pieces), ...);
        return;
    }
    const auto copy = [this](std::string_view piece) {
        std::copy(piece.begin(), piece.end(), unwritten_.begin() + unwrittenSize_);
        unwrittenSize_ += piece.size();
    };
    (copy(pieces), ...);
}

void JsonWriter::flush()
{
    sink_({unwritten_.data(), unwrittenSize_});
    unwrittenSize_ = 0;
}

// ---------------------------------------------------------------------------------------- reading

namespace {

/** Walks through a text and tells how far it is. */
class Cursor {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    Cursor(const char* at, const char*& reached) : at_(at), reached_(&reached) {}

    reference operator*() const { return *at_; }
    Cursor& operator++()
    {
        *reached_ = ++at_;
        return *this;
    }
    bool operator==(const Cursor& other) const { return at_ == other.at_; }
    bool operator!=(const Cursor& other) const { return at_ != other.at_; }

private:
    const char* at_;
    const char** reached_;
};

/** Passes on the events of the parser, whose interface this is, and knows where they are. */
class ParserEvents {
public:
    using json = nlohmann::json;

    ParserEvents(std::string_view text, JsonEvents& events)
        : text_(text), events_(events), reached_(text.data()), begin_(text.data())
    {}

    std::optional<Problem> parse()
    {
        try {
            json::sax_parse(Cursor(text_.data(), reached_),
                            Cursor(text_.data() + text_.size(), reached_), this);
        } catch (const JsonRefusal& refusal) {
            return problemAt(refusal.place.value_or(place()), refusal.sentence);
        }
        return syntaxError_;
    }

    bool null() { return scalar(std::monostate()); }
    bool boolean(bool value) { return scalar(value); }
    bool number_integer(std::int64_t value) { return scalar(value); }
    bool number_unsigned(std::uint64_t value)
    {
        if (value > std::uint64_t{std::numeric_limits<std::int64_t>::max()})
            return scalar(static_cast<double>(value));
        return scalar(static_cast<std::int64_t>(value));
    }
    bool number_float(double value, const std::string&) { return scalar(value); }
    bool string(const std::string& value) { return scalar(std::string_view(value)); }
    bool binary(const json::binary_t&) { return false; } // JSON has none
    bool key(const std::string& name)
    {
        return pass([&] { events_.key(name); });
    }
    bool start_object(std::size_t)
    {
        return pass([&] { events_.startObject(place()); });
    }
    bool end_object()
    {
        return pass([&] { events_.endObject(); });
    }
    bool start_array(std::size_t)
    {
        return pass([&] { events_.startList(place()); });
    }
    bool end_array()
    {
        return pass([&] { events_.endList(); });
    }
    /** @p read counts the bytes up to where the error was found, and the end as one. */
    bool parse_error(std::size_t read, const std::string&, const json::exception& error)
    {
        constexpr int OUT_OF_RANGE = 406;
        if (error.id == OUT_OF_RANGE)
            syntaxError_ = problemAt(place(), "this number is too large");
        else if (read > text_.size())
            syntaxError_ = problemAt(text_.size(), "the JSON ends before it is complete");
        else
            syntaxError_ = problemAt(std::max<std::size_t>(read, 1) - 1, "this is no JSON here");
        return false;
    }

private:
    template <class Pass>
    bool pass(Pass&& pass)
    {
        pass();
        begin_ = reached_;
        return true;
    }

    bool scalar(const JsonScalar& value)
    {
        return pass([&] { events_.value(value); });
    }

    /** Where the current event begins: behind the one before, and what separates them. */
    std::size_t place() const
    {
        const auto begin = static_cast<std::size_t>(begin_ - text_.data());
        return std::min(text_.find_first_not_of(" \t\r\n,:", begin), text_.size());
    }

    Problem problemAt(std::size_t place, const std::string& sentence) const
    {
        const std::string_view before = text_.substr(0, place);
        const auto lines = std::count(before.begin(), before.end(), '\n');
        return {static_cast<std::size_t>(lines) + 1,
                before.size() - (before.rfind('\n') + 1) + 1, // none found is -1
                sentence};
    }

    std::string_view text_;
    JsonEvents& events_;
    const char* reached_;
    const char* begin_; /**< the end of the event before */
    std::optional<Problem> syntaxError_;
};

} // namespace

std::optional<Problem> readJson(std::string_view text, JsonEvents& events)
{
    return ParserEvents(text, events).parse();
}

} // namespace filterctl
