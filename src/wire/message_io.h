/**
 * Writing to and reading from the generated messages.
 */
#ifndef FILTER_COMMON_SRC_WIRE_MESSAGE_IO_H
#define FILTER_COMMON_SRC_WIRE_MESSAGE_IO_H

#include "losses.h"
#include "message_fields.h"

#include <cstdint>
#include <string_view>

namespace FiltersCommon {

template <class Message>
class MessageWriter {
public:
    explicit MessageWriter(Message* message) : message_(message) {}

    template <class Field>
    void number(Field, std::uint32_t number)
    {
        Field::set(message_, static_cast<typename Field::Type>(number));
    }

    template <class Field>
    void bytes(Field, std::string_view bytes)
    {
        Field::set(message_, bytes.data(), bytes.size());
    }

    /** Appends to a repeated field. */
    template <class Field>
    void addNumber(Field, std::uint32_t number)
    {
        Field::change(message_)->Add(number);
    }

    /** Empties a repeated field. */
    template <class Field>
    void clear(Field)
    {
        Field::change(message_)->Clear();
    }

    /** Calls @p fill to write the message in the field. */
    template <class Field, class Fill>
    void message(Field, Fill fill)
    {
        MessageWriter<typename Field::Type> part(Field::change(message_));
        fill(part);
    }

    /** Appends an element to the field for each of @p objects, and calls @p fill to write it. */
    template <class Field, class Container, class Fill>
    void elements(Field, const Container& objects, Fill fill)
    {
        auto* field = Field::change(message_);
        // Reserve first: a field that cannot grow loses the element it was about to append.
        field->Reserve(field->size() + static_cast<int>(objects.size()));
        for (const auto& object : objects) {
            MessageWriter<typename Field::Type::value_type> element(field->Add());
            fill(element, object);
        }
    }

private:
    Message* message_;
};

/** Reads from a message; an absent field reads as 0 or empty. */
template <class Message, class Report = Silent>
class MessageReader : public Report {
public:
    explicit MessageReader(const Message& message, Report report = {})
        : Report(report), message_(message)
    {}

    template <class Field>
    std::uint32_t number(Field)
    {
        return static_cast<std::uint32_t>(Field::get(message_));
    }

    /** The result is valid as long as the message is. */
    template <class Field>
    std::string_view bytes(Field)
    {
        return Field::get(message_);
    }

    template <class Field>
    bool has(Field) const
    {
        return Field::has(message_);
    }

    /** Calls @p use with each number of a repeated field. */
    template <class Field, class Use>
    void numbers(Field, Use use)
    {
        for (const std::uint32_t number : Field::get(message_))
            use(number);
    }

    /** Calls @p use to read the message in the field. */
    template <class Field, class Use>
    void message(Field, Use use)
    {
        MessageReader<typename Field::Type, Report> part(Field::get(message_), *this);
        use(part);
    }

    /** Calls @p use to read each element of a repeated field. */
    template <class Field, class Use>
    void elements(Field, Use use)
    {
        for (const auto& element : Field::get(message_)) {
            MessageReader<typename Field::Type::value_type, Report> part(element, *this);
            use(part);
        }
    }

    /** A message is already parsed, so it is always understood. */
    static constexpr bool MAY_GIVE_UP = false;
    bool understood() const { return true; }

private:
    const Message& message_;
};

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_WIRE_MESSAGE_IO_H
