/**
 * The rules as bare messages of the library's own schema, as in a program that uses the generated
 * classes as its data model. "messages" are on the heap, "arena" on an arena each.
 */
#include "operations.h"
#include "peers.h"

#include "filter_groups.pb.h"

#include <filter_counter.h>
#include <policer_common.h>

#include <google/protobuf/arena.h>

#include <cstdint>

namespace bench {

using namespace FiltersCommon;
using google::protobuf::Arena;

namespace {

MatchPB* addMatch(FiltersEntryPB* entry, filtersMatch_t kind)
{
    MatchPB* match = entry->add_matches_();
    match->set_type_(static_cast<std::uint32_t>(kind));
    return match;
}

void addPort(FiltersEntryPB* entry, filtersMatch_t kind, const Port& port)
{
    if (port.mask == 0)
        return;
    MatchPB* match = addMatch(entry, kind);
    match->set_l4port_(port.value);
    match->set_l4port_mask_(port.mask);
}

void addAddress(FiltersEntryPB* entry, filtersMatch_t kind, const Address& address)
{
    if (address.mask.s_addr == 0)
        return;
    MatchPB* match = addMatch(entry, kind);
    match->set_ipv4_(&address.value, sizeof address.value);
    match->set_ipv4_mask_(&address.mask, sizeof address.mask);
}

void fillEntry(FiltersEntryPB* entry, std::size_t id, const Rule& rule, const std::string& policer)
{
    entry->set_id_(static_cast<std::uint32_t>(id));
    entry->set_priority_(rule.priority);
    entry->set_policer_(policer);
    addPort(entry, MATCH_DST_L4_PORT, rule.destinationPort);
    addPort(entry, MATCH_SRC_L4_PORT, rule.sourcePort);
    addAddress(entry, MATCH_SRC_IPV4, rule.source);
    addAddress(entry, MATCH_DST_IPV4, rule.destination);
    if (rule.protocol)
        addMatch(entry, MATCH_IP_PROTOCOL)->set_ipprotocol_(*rule.protocol);
    if (entry->matches__size() == 0)
        addMatch(entry, MATCH_ALL);
    const filtersAction_t action = rule.deny ? ACTION_DENY : ACTION_PERMIT;
    entry->add_actions_()->set_type_(static_cast<std::uint32_t>(action));
    CounterPB* counter = entry->mutable_counter_();
    counter->set_id(Counter().GetId());
    counter->set_type(Counter().GetType());
}

void fillGroup(FiltersGroupPB* group, const Rules& rules)
{
    group->set_id_(1);
    group->set_priority_(0);
    group->set_stage_(GROUP_STAGE_0);
    group->set_type_(GROUP_TYPE_3);
    // Like the library's rules, each has its own policer.
    const std::string policer = policer::Policer().Serialize();
    group->mutable_entries_()->Reserve(static_cast<int>(rules.size()));
    for (std::size_t id = 0; id < rules.size(); ++id)
        fillEntry(group->add_entries_(), id, rules[id], policer);
}

/** A message on the heap. */
class OnHeap {
public:
    FiltersGroupPB& operator*() const { return *message_; }
    FiltersGroupPB* operator->() const { return message_.get(); }

private:
    std::unique_ptr<FiltersGroupPB> message_ = std::make_unique<FiltersGroupPB>();
};

/** A message on an arena of its own. */
class OnArena {
public:
    FiltersGroupPB& operator*() const { return *message_; }
    FiltersGroupPB* operator->() const { return message_; }

private:
    std::unique_ptr<Arena> arena_ = std::make_unique<Arena>();
    FiltersGroupPB* message_ = Arena::CreateMessage<FiltersGroupPB>(arena_.get());
};

template <class Tree>
Tree treeOf(const Rules& rules)
{
    Tree tree;
    fillGroup(&*tree, rules);
    return tree;
}

template <class Tree>
std::shared_ptr<Tree> sharedTreeOf(const Rules& rules)
{
    return std::make_shared<Tree>(treeOf<Tree>(rules));
}

template <class Tree>
std::string bytesOf(const Tree& tree)
{
    std::string bytes;
    tree->SerializeToString(&bytes);
    return bytes;
}

template <class Tree>
Operation build(const Rules& rules)
{
    return making(rules.size(), [rules] { return treeOf<Tree>(rules); });
}

template <class Tree>
Operation toBytes(const Rules& rules)
{
    return making(rules.size(), [tree = sharedTreeOf<Tree>(rules)] { return bytesOf(*tree); });
}

/**
 * Builds the messages only to serialize them, as if they were not the data model. They are in the
 * way afterwards, so freeing them belongs to it.
 */
template <class Tree>
Operation treeToBytes(const Rules& rules)
{
    return making(rules.size(), [rules] { return bytesOf(treeOf<Tree>(rules)); });
}

template <class Tree>
Operation fromBytes(const Rules& rules)
{
    return making(rules.size(), [bytes = bytesOf(treeOf<Tree>(rules))] {
        Tree tree;
        tree->ParseFromString(bytes);
        return tree;
    });
}

template <class Tree>
Operation copy(const Rules& rules)
{
    return making(rules.size(), [tree = sharedTreeOf<Tree>(rules)] {
        Tree other;
        other->CopyFrom(**tree);
        return other;
    });
}

/** By their bytes: comparing message by message takes ten times as long. */
template <class Tree>
Operation equality(const Rules& rules)
{
    return asking(rules.size(),
                  [one = sharedTreeOf<Tree>(rules), other = sharedTreeOf<Tree>(rules)] {
                      return bytesOf(*one) == bytesOf(*other);
                  });
}

template <class Tree>
Operation text(const Rules& rules)
{
    return making(rules.size(),
                  [tree = sharedTreeOf<Tree>(rules)] { return (*tree)->DebugString(); });
}

template <class Tree>
Operation destroy(const Rules& rules)
{
    return freeing(rules.size(), [rules] { return treeOf<Tree>(rules); });
}

template <class Tree>
void addOperations(Descriptions& to, const char* subject)
{
    to.insert(to.end(), {
                            {subject, "build", build<Tree>},
                            {subject, "to_bytes", toBytes<Tree>},
                            {subject, "tree_to_bytes", treeToBytes<Tree>},
                            {subject, "from_bytes", fromBytes<Tree>},
                            {subject, "copy", copy<Tree>},
                            {subject, "equality", equality<Tree>},
                            {subject, "text", text<Tree>},
                            {subject, "destroy", destroy<Tree>},
                        });
}

} // namespace

Descriptions messagesOperations()
{
    Descriptions operations;
    addOperations<OnHeap>(operations, "messages");
    addOperations<OnArena>(operations, "arena");
    return operations;
}

std::string messageBytesOf(const Rules& rules) { return bytesOf(treeOf<OnHeap>(rules)); }

} // namespace bench
