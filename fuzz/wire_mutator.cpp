#include "wire_mutator.h"

#include "kind_codes.h"
#include "wire_tree.h"

#include "filter_groups.pb.h"

#include <policer_common.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

namespace FiltersCommon::fuzz {

namespace {

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

// ---------------------------------------------------------------------------------------- choices

/** The same choices from the same seed, on every host. */
class Choices {
public:
    explicit Choices(std::uint64_t seed) : state_(seed) {}

    std::uint64_t number()
    {
        state_ += 0x9E3779B97F4A7C15;
        std::uint64_t mixed = state_;
        mixed = (mixed ^ mixed >> 30) * 0xBF58476D1CE4E5B9;
        mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EB;
        return mixed ^ mixed >> 31;
    }

    std::size_t below(std::size_t bound) { return static_cast<std::size_t>(number() % bound); }
    bool oneIn(std::size_t count) { return below(count) == 0; }

    template <class Container>
    auto& oneOf(Container& container)
    {
        return container[below(std::size(container))];
    }

    /** A number that means something to the model, or one at the limit of a width. */
    std::uint64_t value()
    {
        constexpr std::uint64_t ENDS[] = {0x7F,       0x80,       0xFF,        0x100,
                                          0xFFFF,     0x10000,    0x0FFFFFFF,  0x7FFFFFFF,
                                          0x80000000, 0xFFFFFFFF, 0x100000000, 0x7FFFFFFFFFFFFFFF,
                                          1ull << 63, ~0ull,      ~0ull - 127, 0x0123456789ABCDEF};
        return oneIn(4) ? oneOf(ENDS) : below(test::MATCH_KINDS + 2);
    }

    std::string bytes()
    {
        constexpr std::size_t SIZES[] = {0, 1, 3, 4, 5, 6, 7, 15, 16, 17, 40};
        std::string bytes(oneOf(SIZES), '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(number() & 0xFF);
        return bytes;
    }

    std::string policer()
    {
        const auto stage = static_cast<policer::Stage>(below(4));
        std::set<policer::Action> actions;
        for (std::size_t count = below(3); count != 0; --count) {
            const auto color = static_cast<policer::Action::Color>(below(4));
            const auto type = static_cast<policer::Action::Type>(below(4));
            actions.emplace(color, type, static_cast<std::uint8_t>(below(256)));
        }
        const policer::Mode mode(static_cast<policer::Mode::Type>(below(6)), {});
        return policer::Policer(static_cast<std::uint32_t>(value()), stage, mode, actions)
            .Serialize();
    }

private:
    std::uint64_t state_;
};

// ------------------------------------------------------------------------------------- generation

WireMessage anyMessage(Choices& choices, const Descriptor& descriptor);

/** A field that conforms to the schema. */
WireField anyField(Choices& choices, const FieldDescriptor& descriptor)
{
    WireField field;
    field.number = static_cast<std::uint64_t>(descriptor.number());
    if (descriptor.type() == FieldDescriptor::TYPE_MESSAGE) {
        field.wireType = WIRE_LENGTH;
        field.isMessage = true;
        field.message = anyMessage(choices, *descriptor.message_type());
    } else if (descriptor.type() == FieldDescriptor::TYPE_BYTES) {
        field.wireType = WIRE_LENGTH;
        field.bytes = descriptor.name() == "policer_" ? choices.policer() : choices.bytes();
    } else {
        field.value = choices.value();
    }
    return field;
}

/** A message with most required fields and some of the others. */
WireMessage anyMessage(Choices& choices, const Descriptor& descriptor)
{
    WireMessage message;
    for (int i = 0; i < descriptor.field_count(); ++i) {
        const FieldDescriptor& field = *descriptor.field(i);
        const bool isWanted = field.is_required() ? !choices.oneIn(16) : choices.oneIn(3);
        for (std::size_t count = !isWanted             ? 0
                                 : field.is_repeated() ? 1 + choices.below(3)
                                                       : 1;
             count != 0; --count)
            message.fields.push_back(anyField(choices, field));
    }
    return message;
}

WireField anyUnknownField(Choices& choices)
{
    WireField field;
    field.number = choices.oneIn(4) ? choices.value() : 1 + choices.below(40);
    field.wireType = static_cast<unsigned>(choices.below(choices.oneIn(8) ? 8 : 6));
    field.value = choices.value();
    field.bytes = choices.bytes();
    if (field.wireType == WIRE_GROUP && !choices.oneIn(3))
        field.message.fields.push_back(anyUnknownField(choices));
    return field;
}

// ------------------------------------------------------------------------------------------ edits

/** A message in the tree, with its descriptor: null if the schema does not know it. */
struct Node {
    WireMessage* message;
    const Descriptor* descriptor;
};

void collect(std::vector<Node>& nodes, WireMessage& message, const Descriptor* descriptor)
{
    nodes.push_back({&message, descriptor});
    for (WireField& field : message.fields)
        if (field.isMessage || field.wireType == WIRE_GROUP)
            collect(nodes, field.message,
                    field.isMessage ? messageIn(descriptor, field.number) : nullptr);
}

using Fields = std::vector<WireField>;

/** A place to insert a field, possibly the end. */
Fields::iterator anyPlace(Choices& choices, Fields& fields)
{
    return fields.begin() + static_cast<std::ptrdiff_t>(choices.below(fields.size() + 1));
}

void insert(Choices& choices, Fields& fields, WireField field)
{
    fields.insert(anyPlace(choices, fields), std::move(field));
}

Fields::iterator anyOf(Choices& choices, Fields& fields)
{
    return fields.begin() + static_cast<std::ptrdiff_t>(choices.below(fields.size()));
}

void add(Choices& choices, const Node& node)
{
    if (node.descriptor == nullptr)
        return;
    const auto index = choices.below(static_cast<std::size_t>(node.descriptor->field_count()));
    insert(choices, node.message->fields,
           anyField(choices, *node.descriptor->field(static_cast<int>(index))));
}

void addUnknown(Choices& choices, const Node& node)
{
    insert(choices, node.message->fields, anyUnknownField(choices));
}

void addTail(Choices& choices, const Node& node) { node.message->tail += choices.bytes(); }

// The edits below are for messages that are not empty.

void repeat(Choices& choices, const Node& node)
{
    insert(choices, node.message->fields, choices.oneOf(node.message->fields));
}

void drop(Choices& choices, const Node& node)
{
    node.message->fields.erase(anyOf(choices, node.message->fields));
}

void exchange(Choices& choices, const Node& node)
{
    Fields& fields = node.message->fields;
    std::iter_swap(anyOf(choices, fields), anyOf(choices, fields));
}

void changeValue(Choices& choices, const Node& node)
{
    WireField& field = choices.oneOf(node.message->fields);
    const bool isPolicer = node.descriptor == FiltersEntryPB::descriptor() &&
                           field.number == FiltersEntryPB::kPolicerFieldNumber;
    field.value = choices.value();
    if (!choices.oneIn(3))
        field.bytes = isPolicer ? choices.policer() : choices.bytes();
    else if (!field.bytes.empty())
        choices.oneOf(field.bytes) = static_cast<char>(choices.number() & 0xFF);
}

void changeNumber(Choices& choices, const Node& node)
{
    WireField& field = choices.oneOf(node.message->fields);
    field.number = choices.oneIn(8) ? choices.value() : choices.below(28);
}

/** A message becomes plain bytes if its field is no longer a message. */
void changeWireType(Choices& choices, const Node& node)
{
    WireField& field = choices.oneOf(node.message->fields);
    field.wireType = static_cast<unsigned>(choices.below(choices.oneIn(8) ? 8 : 6));
}

void pad(Choices& choices, const Node& node)
{
    WireField& field = choices.oneOf(node.message->fields);
    const auto padding = static_cast<unsigned>(choices.below(choices.oneIn(4) ? 11 : 5));
    (choices.oneIn(2) ? field.tagPadding : field.valuePadding) = padding;
}

void lieAboutLength(Choices& choices, const Node& node)
{
    WireField& field = choices.oneOf(node.message->fields);
    const std::uint64_t small = choices.below(20);
    field.lengthError = choices.oneIn(4) ? choices.value() : choices.oneIn(2) ? small : 0 - small;
}

void leaveOpen(Choices& choices, const Node& node)
{
    WireField& field = choices.oneOf(node.message->fields);
    field.isClosed = !field.isClosed;
}

/** Packs the numbers of a field behind one length, which readers must accept as well. */
void pack(Choices& choices, const Node& node)
{
    Fields& fields = node.message->fields;
    WireField packed = choices.oneOf(fields);
    if (packed.wireType != WIRE_VARINT)
        return;
    packed.wireType = WIRE_LENGTH;
    packed.bytes.clear();
    for (const WireField& field : fields)
        if (field.number == packed.number && field.wireType == WIRE_VARINT)
            packed.bytes += varint(field.value, field.valuePadding);
    if (choices.oneIn(4))
        packed.bytes += choices.oneIn(2) ? varint(choices.value()) : "\x80";
    if (choices.oneIn(2))
        fields.erase(std::remove_if(fields.begin(), fields.end(),
                                    [&](const WireField& field) {
                                        return field.number == packed.number &&
                                               field.wireType == WIRE_VARINT;
                                    }),
                     fields.end());
    insert(choices, fields, std::move(packed));
}

/** Splits a message in two: readers merge the parts, or take them for two elements. */
void split(Choices& choices, const Node& node)
{
    Fields& fields = node.message->fields;
    const auto first = anyOf(choices, fields);
    if (!first->isMessage)
        return;
    WireField second = *first;
    Fields& parts = first->message.fields;
    const auto middle = anyPlace(choices, parts) - parts.begin();
    parts.erase(parts.begin() + middle, parts.end());
    second.message.fields.erase(second.message.fields.begin(),
                                second.message.fields.begin() + middle);
    insert(choices, fields, std::move(second));
}

/** Nests groups, up to about as deep as the messages runtime follows them. */
void nest(Choices& choices, const Node& node)
{
    WireField field = anyUnknownField(choices);
    for (std::size_t depth = choices.oneIn(4) ? 96 + choices.below(8) : 1 + choices.below(3);
         depth != 0; --depth) {
        WireField outer;
        outer.number = 1 + choices.below(9);
        outer.wireType = WIRE_GROUP;
        outer.message.fields.push_back(std::move(field));
        field = std::move(outer);
    }
    insert(choices, node.message->fields, std::move(field));
}

using Edit = void (*)(Choices&, const Node&);

/** All but the first three need a field. Some are repeated to make them more frequent. */
constexpr Edit EDITS[] = {add,         addUnknown,   addTail,        add,         repeat,
                          drop,        exchange,     repeat,         changeValue, changeValue,
                          changeValue, changeNumber, changeWireType, pad,         lieAboutLength,
                          leaveOpen,   pack,         split,          nest};
constexpr std::size_t EDITS_OF_EMPTY = 3;

void edit(Choices& choices, WireMessage& root, const Descriptor* descriptor)
{
    std::vector<Node> nodes;
    collect(nodes, root, descriptor);
    const Node& node = choices.oneOf(nodes);
    const bool isEmpty = node.message->fields.empty();
    EDITS[choices.below(isEmpty ? EDITS_OF_EMPTY : std::size(EDITS))](choices, node);
}

/** Tells them apart mostly by fields with bytes or messages where a group has numbers. */
const Descriptor* guessRoot(Choices& choices, const std::string& bytes)
{
    const WireMessage message = readWire(bytes, nullptr);
    const bool isEntry =
        std::any_of(message.fields.begin(), message.fields.end(), [](const WireField& field) {
            return field.wireType == WIRE_LENGTH && field.number != 5;
        });
    return isEntry != choices.oneIn(8) ? FiltersEntryPB::descriptor()
                                       : FiltersGroupPB::descriptor();
}

} // namespace

std::string mutateWire(const std::string& bytes, std::uint64_t seed)
{
    Choices choices(seed);
    const Descriptor* const descriptor = guessRoot(choices, bytes);
    WireMessage message = readWire(bytes, descriptor);
    for (std::size_t edits = 1 + choices.below(3); edits != 0; --edits)
        edit(choices, message, descriptor);
    std::string mutated = writeWire(message);
    if (choices.oneIn(16))
        mutated.resize(choices.below(mutated.size() + 1));
    return mutated;
}

std::string crossWires(const std::string& a, const std::string& b, std::uint64_t seed)
{
    Choices choices(seed);
    WireMessage crossed;
    for (const std::string& bytes : {a, b})
        for (WireField& field : readWire(bytes, guessRoot(choices, bytes)).fields)
            if (!choices.oneIn(4))
                crossed.fields.push_back(std::move(field));
    return writeWire(crossed);
}

} // namespace FiltersCommon::fuzz
