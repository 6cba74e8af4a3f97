/**
 * The rules as libnftnl holds them: a chain of rules, each with the expressions that the packet
 * filter of the kernel evaluates. An address or a port is loaded (payload), masked where its mask
 * is not full (bitwise), and compared (cmp); the action is a verdict (immediate).
 */
#include "operations.h"
#include "peers.h"

#include <libmnl/libmnl.h>
#include <libnftnl/chain.h>
#include <libnftnl/expr.h>
#include <libnftnl/rule.h>
#include <linux/netfilter.h>
#include <linux/netfilter/nf_tables.h>

#include <arpa/inet.h>

#include <algorithm>
#include <cstring>

namespace bench {

namespace {

struct FreeChain {
    void operator()(nftnl_chain* chain) const { nftnl_chain_free(chain); }
};
using Chain = std::unique_ptr<nftnl_chain, FreeChain>;

// ------------------------------------------------------------------------------------ expressions

nftnl_expr* addExpression(nftnl_rule* rule, const char* name)
{
    nftnl_expr* expression = nftnl_expr_alloc(name);
    nftnl_rule_add_expr(rule, expression);
    return expression;
}

void addPayload(nftnl_rule* rule, std::uint32_t base, std::uint32_t offset, std::uint32_t size)
{
    nftnl_expr* payload = addExpression(rule, "payload");
    nftnl_expr_set_u32(payload, NFTNL_EXPR_PAYLOAD_BASE, base);
    nftnl_expr_set_u32(payload, NFTNL_EXPR_PAYLOAD_DREG, NFT_REG_1);
    nftnl_expr_set_u32(payload, NFTNL_EXPR_PAYLOAD_OFFSET, offset);
    nftnl_expr_set_u32(payload, NFTNL_EXPR_PAYLOAD_LEN, size);
}

template <class T>
void addMask(nftnl_rule* rule, const T& mask)
{
    const T zero{};
    nftnl_expr* bitwise = addExpression(rule, "bitwise");
    nftnl_expr_set_u32(bitwise, NFTNL_EXPR_BITWISE_SREG, NFT_REG_1);
    nftnl_expr_set_u32(bitwise, NFTNL_EXPR_BITWISE_DREG, NFT_REG_1);
    nftnl_expr_set_u32(bitwise, NFTNL_EXPR_BITWISE_LEN, sizeof mask);
    nftnl_expr_set(bitwise, NFTNL_EXPR_BITWISE_MASK, &mask, sizeof mask);
    nftnl_expr_set(bitwise, NFTNL_EXPR_BITWISE_XOR, &zero, sizeof zero);
}

template <class T>
void addComparison(nftnl_rule* rule, const T& value)
{
    nftnl_expr* cmp = addExpression(rule, "cmp");
    nftnl_expr_set_u32(cmp, NFTNL_EXPR_CMP_SREG, NFT_REG_1);
    nftnl_expr_set_u32(cmp, NFTNL_EXPR_CMP_OP, NFT_CMP_EQ);
    nftnl_expr_set(cmp, NFTNL_EXPR_CMP_DATA, &value, sizeof value);
}

/** A condition on a field of a header; value and mask in network byte order. */
template <class T>
void addField(nftnl_rule* rule, std::uint32_t base, std::uint32_t offset, const T& value,
              const T& mask)
{
    if (mask == 0)
        return;
    addPayload(rule, base, offset, sizeof value);
    if (mask != static_cast<T>(-1))
        addMask(rule, mask);
    addComparison(rule, value);
}

nftnl_rule* ruleOf(const Rule& from)
{
    nftnl_rule* rule = nftnl_rule_alloc();
    nftnl_rule_set_u32(rule, NFTNL_RULE_FAMILY, NFPROTO_IPV4);
    nftnl_rule_set_str(rule, NFTNL_RULE_TABLE, "filter");
    nftnl_rule_set_str(rule, NFTNL_RULE_CHAIN, "input");
    constexpr std::uint32_t NETWORK = NFT_PAYLOAD_NETWORK_HEADER;
    constexpr std::uint32_t TRANSPORT = NFT_PAYLOAD_TRANSPORT_HEADER;
    addField(rule, NETWORK, 12, from.source.value.s_addr, from.source.mask.s_addr);
    addField(rule, NETWORK, 16, from.destination.value.s_addr, from.destination.mask.s_addr);
    if (from.protocol)
        addField<std::uint8_t>(rule, NETWORK, 9, *from.protocol, 0xFF);
    addField(rule, TRANSPORT, 0, htons(from.sourcePort.value), htons(from.sourcePort.mask));
    addField(rule, TRANSPORT, 2, htons(from.destinationPort.value),
             htons(from.destinationPort.mask));
    nftnl_expr* verdict = addExpression(rule, "immediate");
    nftnl_expr_set_u32(verdict, NFTNL_EXPR_IMM_DREG, NFT_REG_VERDICT);
    nftnl_expr_set_u32(verdict, NFTNL_EXPR_IMM_VERDICT, from.deny ? NF_DROP : NF_ACCEPT);
    return rule;
}

Chain chainOf(const Rules& rules)
{
    Chain chain(nftnl_chain_alloc());
    for (const Rule& rule : rules)
        nftnl_chain_rule_add_tail(ruleOf(rule), chain.get());
    return chain;
}

// ---------------------------------------------------------------------------------------- messages

/** A netlink message for each rule, one after the other. */
std::string bytesOf(nftnl_chain* chain)
{
    constexpr std::size_t LARGEST = 4096;
    // Zeroed, because libmnl does not write the padding of attributes.
    alignas(nlmsghdr) char message[LARGEST] = {};
    std::string bytes;
    nftnl_rule_iter* rules = nftnl_rule_iter_create(chain);
    std::uint32_t sequence = 0;
    while (nftnl_rule* rule = nftnl_rule_iter_next(rules)) {
        nlmsghdr* header = nftnl_nlmsg_build_hdr(message, NFT_MSG_NEWRULE, NFPROTO_IPV4,
                                                 NLM_F_CREATE | NLM_F_APPEND, sequence++);
        nftnl_rule_nlmsg_build_payload(header, rule);
        bytes.append(message, header->nlmsg_len);
    }
    nftnl_rule_iter_destroy(rules);
    return bytes;
}

Chain chainOf(const std::string& bytes)
{
    Chain chain(nftnl_chain_alloc());
    int left = static_cast<int>(bytes.size());
    const auto* header = reinterpret_cast<const nlmsghdr*>(bytes.data());
    for (; mnl_nlmsg_ok(header, left); header = mnl_nlmsg_next(header, &left)) {
        nftnl_rule* rule = nftnl_rule_alloc();
        nftnl_rule_nlmsg_parse(header, rule);
        nftnl_chain_rule_add_tail(rule, chain.get());
    }
    return chain;
}

std::string textOf(nftnl_chain* chain)
{
    constexpr std::size_t LARGEST = 4096;
    char line[LARGEST];
    std::string text;
    nftnl_rule_iter* rules = nftnl_rule_iter_create(chain);
    while (nftnl_rule* rule = nftnl_rule_iter_next(rules)) {
        const int size = nftnl_rule_snprintf(line, sizeof line, rule, NFTNL_OUTPUT_DEFAULT, 0);
        text.append(line, static_cast<std::size_t>(size));
    }
    nftnl_rule_iter_destroy(rules);
    return text;
}

// -------------------------------------------------------------------------------------- operations

using SharedChain = std::shared_ptr<nftnl_chain>;

SharedChain sharedChainOf(const Rules& rules) { return chainOf(rules); }

Operation build(const Rules& rules)
{
    return making(rules.size(), [rules] { return chainOf(rules); });
}

Operation toBytes(const Rules& rules)
{
    return making(rules.size(), [chain = sharedChainOf(rules)] { return bytesOf(chain.get()); });
}

Operation fromBytes(const Rules& rules)
{
    return making(rules.size(), [bytes = bytesOf(chainOf(rules).get())] { return chainOf(bytes); });
}

/** Rules can only be copied through the messages. */
Operation copy(const Rules& rules)
{
    return making(rules.size(),
                  [chain = sharedChainOf(rules)] { return chainOf(bytesOf(chain.get())); });
}

/** Likewise, rules can only be compared through the messages. */
Operation equality(const Rules& rules)
{
    return asking(rules.size(), [one = sharedChainOf(rules), other = sharedChainOf(rules)] {
        return bytesOf(one.get()) == bytesOf(other.get());
    });
}

Operation text(const Rules& rules)
{
    return making(rules.size(), [chain = sharedChainOf(rules)] { return textOf(chain.get()); });
}

Operation destroy(const Rules& rules)
{
    return freeing(rules.size(), [rules] { return chainOf(rules); });
}

} // namespace

Descriptions nftnlOperations()
{
    return {
        {"nftnl", "build", build},          {"nftnl", "to_bytes", toBytes},
        {"nftnl", "from_bytes", fromBytes}, {"nftnl", "copy", copy},
        {"nftnl", "equality", equality},    {"nftnl", "text", text},
        {"nftnl", "destroy", destroy},
    };
}

std::size_t nftnlRulesReadBack(const Rules& rules)
{
    const Chain chain = chainOf(rules);
    const Chain read = chainOf(bytesOf(chain.get()));
    if (textOf(read.get()) != textOf(chain.get()))
        return 0;
    std::size_t count = 0;
    nftnl_rule_foreach(
        read.get(),
        [](nftnl_rule*, void* counted) {
            ++*static_cast<std::size_t*>(counted);
            return 0;
        },
        &count);
    return count;
}

} // namespace bench
