#include "scan.h"

#include "byte_io.h"
#include "filter_actions_rows.h"
#include "filter_groups_rows.h"
#include "filter_matches_rows.h"
#include "kinds.h"

#include <algorithm>
#include <array>
#include <optional>

namespace FiltersCommon {

namespace {

constexpr std::size_t FIELD_NUMBERS = 27; ///< of any message, from 0

template <class... Message>
constexpr bool haveRoom()
{
    bool have = true;
    const auto hasRoom = [&](const MessageSchema& schema) {
        for (const FieldSchema& field : schema)
            have = have && field.number < FIELD_NUMBERS;
    };
    (hasRoom(SCHEMA_OF<Message>), ...);
    return have;
}
static_assert(haveRoom<FiltersGroupPB, FiltersEntryPB, MatchPB, ActionPB, CounterPB>());

/** What was read last from a field. */
struct Value {
    bool seen = false;
    std::uint64_t number = 0;
    std::string_view bytes;
};
using Values = std::array<Value, FIELD_NUMBERS>;

/** A message that is being scanned. */
struct Part {
    const MessageSchema& schema;
    Values values = {};
    /** Of the message that is in a field of its own, whose occurrences are merged. */
    Values merged = {};
};

/** Whether an object of the kind reads the field; one of an unknown kind is not read at all. */
template <class Kinds, class Rows>
bool reads(std::uint64_t kind, std::uint32_t field)
{
    return Kinds::dispatch(static_cast<typename Kinds::Code>(kind), true, [&](auto known) {
        using Class = ClassOf<decltype(known)>;
        return Rows::of(static_cast<const Class*>(nullptr)).have(field);
    });
}

/** The number that the parser makes of 64 bits. */
std::uint64_t narrowed(FieldSchema::Form form, std::uint64_t wide)
{
    if (form == FieldSchema::TRUTH)
        return wide != 0 ? 1 : 0;
    const auto number = static_cast<std::uint32_t>(wide);
    if (form == FieldSchema::SIGNED_NUMBER)
        return static_cast<std::uint64_t>(std::int64_t{static_cast<std::int32_t>(number)});
    return number;
}

class Scan {
public:
    Scan(std::string_view bytes, Losses& losses) : bytes_(bytes), losses_(losses) {}

    void whole(const MessageSchema& schema, bool toTheEnd)
    {
        part(schema, bytes_.size(), DEEPEST);
        if (stop_.has_value())
            losses_.addNotParsed(stop_);
        else if (!toTheEnd && !terminated_)
            losses_.addNotParsed({});
    }

private:
    /** How deep the parser follows messages and groups. */
    static constexpr int DEEPEST = 100;

    enum OtherWireType : std::uint32_t { FIXED64 = 1, GROUP = 3, END_OF_GROUP = 4, FIXED32 = 5 };

    struct Tag {
        std::uint32_t number;
        std::uint32_t type;
    };

    // ------------------------------------------------------------------------------------- bytes

    bool isStopped() const { return stop_.has_value() || terminated_; }

    void stop(std::size_t offset)
    {
        if (!isStopped())
            stop_ = offset;
    }

    std::optional<std::uint64_t> varint(std::size_t end, unsigned most = MAX_VARINT)
    {
        std::uint64_t number = 0;
        for (unsigned shift = 0; shift < 7 * most && next_ < end; shift += 7) {
            const auto byte = static_cast<unsigned char>(bytes_[next_++]);
            number |= std::uint64_t{byte & 0x7FU} << shift;
            if (byte < 0x80)
                return number;
        }
        return {};
    }

    std::optional<Tag> tag(std::size_t end)
    {
        const auto bits = varint(end, 5);
        if (!bits.has_value())
            return {};
        const auto tag = static_cast<std::uint32_t>(*bits);
        return Tag{tag >> 3, tag & 7};
    }

    std::optional<std::uint64_t> length(std::size_t end)
    {
        const auto length = varint(end, 5);
        return length.has_value() && *length <= MAX_MESSAGE ? length : std::nullopt;
    }

    bool skipBytes(std::uint64_t count, std::size_t end)
    {
        if (count > end - next_)
            return false;
        next_ += static_cast<std::size_t>(count);
        return true;
    }

    bool skip(Tag tag, std::size_t end, int depth)
    {
        switch (tag.type) {
        case VARINT:
            return varint(end).has_value();
        case FIXED64:
            return skipBytes(8, end);
        case LENGTH_DELIMITED: {
            const auto count = length(end);
            return count.has_value() && skipBytes(*count, end);
        }
        case GROUP:
            return skipGroup(tag.number, end, depth - 1);
        case FIXED32:
            return skipBytes(4, end);
        default:
            return false;
        }
    }

    bool skipGroup(std::uint32_t number, std::size_t end, int depth)
    {
        if (depth < 0)
            return false;
        for (;;) {
            const auto inner = tag(end);
            if (!inner.has_value() || inner->number == 0)
                return false;
            if (inner->type == END_OF_GROUP)
                return inner->number == number;
            if (!skip(*inner, end, depth))
                return false;
        }
    }

    // ------------------------------------------------------------------------------------- parts

    void part(const MessageSchema& schema, std::size_t end, int depth)
    {
        Part part{schema};
        const Losses::Mark mark = losses_.begin(schema.part);
        fields(part, end, depth);
        reportMissing(schema, part.values);
        for (const FieldSchema& field : schema)
            if (field.form == FieldSchema::MESSAGE && part.values[field.number].seen &&
                field.label != REPEATED) {
                const Losses::Mark inner = losses_.begin(field.message->part);
                reportMissing(*field.message, part.merged);
                losses_.end(inner);
            }
        finish(part, mark);
    }

    void finish(const Part& part, Losses::Mark mark)
    {
        const auto numberOf = [&](auto field) { return part.values[field.NUMBER].number; };
        if (part.schema.part == PART_ENTRY) {
            losses_.end(mark, static_cast<filtersEntryId_t>(numberOf(entry_fields::id_())));
        } else if (part.schema.part == PART_MATCH) {
            const std::uint64_t kind = numberOf(match_fields::type_());
            reportForeign(part, [&](std::uint32_t field) {
                return field == match_fields::type_::NUMBER ||
                       reads<MatchKinds, MatchRows>(kind, field);
            });
            losses_.end(mark, static_cast<filtersMatch_t>(kind));
        } else if (part.schema.part == PART_ACTION) {
            const std::uint64_t kind = numberOf(action_fields::type_());
            reportForeign(part, [&](std::uint32_t field) {
                return field == action_fields::type_::NUMBER ||
                       reads<ActionKinds, ActionRows>(kind, field);
            });
            losses_.end(mark, static_cast<filtersAction_t>(kind));
        } else {
            losses_.end(mark);
        }
    }

    void fields(Part& part, std::size_t end, int depth)
    {
        if (depth < 0)
            stop(next_);
        while (!isStopped() && next_ < end)
            field(part, end, depth);
    }

    void field(Part& part, std::size_t end, int depth)
    {
        const std::size_t start = next_;
        const auto found = tag(end);
        if (!found.has_value() || found->number == 0 || found->type == END_OF_GROUP) {
            // The zero that ends an envelope is not missed.
            terminated_ = start + 1 == bytes_.size() && bytes_[start] == 0 && depth == DEEPEST;
            return stop(start);
        }
        const FieldSchema* schema = part.schema.find(found->number);
        if (schema != nullptr && found->type == wireTypeOf(*schema)) {
            value(part, *schema, start, end, depth);
        } else if (schema != nullptr && isPacked(*schema, found->type)) {
            packed(part, *schema, start, end);
        } else if (skip(*found, end, depth)) {
            losses_.addInField(REFUSAL_FIELD_UNKNOWN, found->number).offset = start;
        } else {
            stop(start);
        }
    }

    static bool isNumber(const FieldSchema& field)
    {
        return field.form != FieldSchema::BYTES && field.form != FieldSchema::MESSAGE;
    }

    static std::uint32_t wireTypeOf(const FieldSchema& field)
    {
        return isNumber(field) ? VARINT : LENGTH_DELIMITED;
    }

    static bool isPacked(const FieldSchema& field, std::uint32_t type)
    {
        return isNumber(field) && field.label == REPEATED && type == LENGTH_DELIMITED;
    }

    void value(Part& part, const FieldSchema& field, std::size_t start, std::size_t end, int depth)
    {
        if (isNumber(field)) {
            const auto wide = varint(end);
            return wide.has_value() ? number(part.values, field, *wide, start) : stop(start);
        }
        const auto count = length(end);
        if (!count.has_value())
            return stop(start);
        if (field.form == FieldSchema::MESSAGE)
            return message(part, field, *count, end, depth);
        const std::size_t content = next_;
        if (!skipBytes(*count, end))
            return stop(start);
        bytes(part.values[field.number], field, bytes_.substr(content, next_ - content), start);
    }

    /** Like the parser, enters a message that is longer than what is left. */
    void message(Part& part, const FieldSchema& field, std::uint64_t count, std::size_t end,
                 int depth)
    {
        const auto inner =
            next_ + static_cast<std::size_t>(std::min<std::uint64_t>(count, end - next_));
        const bool isWhole = count <= end - next_;
        part.values[field.number].seen = true;
        if (field.label == REPEATED) {
            if (field.message->part == PART_ENTRY)
                losses_.atEntry(entries_++);
            this->part(*field.message, inner, depth - 1);
            if (part.schema.part == PART_GROUP)
                losses_.atGroup();
        } else {
            Part merged{*field.message, part.merged};
            const Losses::Mark mark = losses_.begin(field.message->part);
            fields(merged, inner, depth - 1);
            losses_.end(mark);
            part.merged = merged.values;
        }
        if (!isWhole)
            stop(inner);
    }

    void packed(Part& part, const FieldSchema& field, std::size_t start, std::size_t end)
    {
        const auto count = length(end);
        if (!count.has_value() || *count > end - next_)
            return stop(start);
        const std::size_t inner = next_ + static_cast<std::size_t>(*count);
        while (next_ < inner) {
            const std::size_t place = next_;
            const auto wide = varint(inner);
            if (!wide.has_value())
                return stop(place);
            number(part.values, field, *wide, place);
        }
        part.values[field.number].seen = true;
    }

    // ------------------------------------------------------------------------------------ losses

    void number(Values& values, const FieldSchema& field, std::uint64_t wide, std::size_t start)
    {
        const std::uint64_t narrow = narrowed(field.form, wide);
        if (narrow != wide)
            losses_.addChange(REFUSAL_NUMBER_CUT, field.number, wide, narrow, start);
        Value& value = values[field.number];
        if (value.seen && value.number != narrow && field.label != REPEATED)
            losses_.addChange(REFUSAL_FIELD_REPLACED, field.number, value.number, narrow, start);
        value = {true, narrow, {}};
    }

    void bytes(Value& value, const FieldSchema& field, std::string_view bytes, std::size_t start)
    {
        if (value.seen && value.bytes != bytes)
            losses_.addInField(REFUSAL_FIELD_REPLACED, field.number).offset = start;
        value = {true, 0, bytes};
    }

    /** What stands behind the place where the parser stopped is not missing. */
    void reportMissing(const MessageSchema& schema, const Values& values)
    {
        for (const FieldSchema& field : schema)
            if (!stop_.has_value() && field.label == REQUIRED && !values[field.number].seen)
                losses_.addInField(REFUSAL_FIELD_MISSING, field.number);
    }

    template <class IsRead>
    void reportForeign(const Part& part, IsRead isRead)
    {
        for (const FieldSchema& field : part.schema)
            if (part.values[field.number].seen && !isRead(field.number))
                losses_.addInField(REFUSAL_FIELD_NOT_OF_KIND, field.number);
    }

    const std::string_view bytes_;
    Losses& losses_;
    std::size_t next_ = 0;
    std::optional<std::uint64_t> stop_; ///< where the bytes cannot be read any further
    bool terminated_ = false;           ///< by the zero of an envelope
    std::size_t entries_ = 0;           ///< that were scanned
};

} // namespace

void scan(const MessageSchema& schema, std::string_view bytes, bool toTheEnd, Losses& losses)
{
    if (bytes.size() > MAX_MESSAGE)
        losses.addNotParsed(0);
    else
        Scan(bytes, losses).whole(schema, toTheEnd);
}

} // namespace FiltersCommon
