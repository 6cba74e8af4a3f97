/**
 * What is measured: operations on a set of rules, by subject. A subject is a way to hold rules: the
 * library, bare messages, another library, plain structs, or for text the stream by itself.
 *
 * Operations of different subjects that have the same name do the same.
 */
#ifndef FILTER_COMMON_BENCH_OPERATIONS_H
#define FILTER_COMMON_BENCH_OPERATIONS_H

#include "rules.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace bench {

/**
 * Only run is measured; prepare is called before each run and clear after it. What a run makes is
 * destroyed in clear.
 */
struct Operation {
    std::size_t rules; /**< how many rules a run goes through */
    std::function<void()> run;
    std::function<void()> prepare = [] {};
    std::function<void()> clear = [] {};
};

struct Description {
    const char* subject;
    const char* name;
    Operation (*make)(const Rules&);

    std::string title() const { return std::string(subject) + "/" + name; }
};

using Descriptions = std::vector<Description>;

Descriptions filtersOperations();
Descriptions filtersEntryOperations();
Descriptions messagesOperations();
Descriptions nftnlOperations(); /**< only if libnftnl is available */
Descriptions structOperations();
Descriptions streamOperations();
/** The operations of all subjects. */
Descriptions allOperations();

/** Raises std::logic_error unless the subjects write the same bytes and texts for the rules. */
void checkThatSubjectsAgree(const Rules& rules);

/** An operation that makes something, which clear frees. */
template <class Make>
Operation making(std::size_t rules, Make make)
{
    auto made = std::make_shared<std::optional<decltype(make())>>();
    Operation operation;
    operation.rules = rules;
    operation.run = [made, make = std::move(make)] { made->emplace(make()); };
    operation.clear = [made] { made->reset(); };
    return operation;
}

/** An operation that frees what @p make makes. */
template <class Make>
Operation freeing(std::size_t rules, Make make)
{
    auto made = std::make_shared<std::optional<decltype(make())>>();
    Operation operation;
    operation.rules = rules;
    operation.prepare = [made, make = std::move(make)] { made->emplace(make()); };
    operation.run = [made] { made->reset(); };
    return operation;
}

/** An operation that has to return true. */
template <class Ask>
Operation asking(std::size_t rules, Ask ask)
{
    auto answer = std::make_shared<bool>(false);
    Operation operation;
    operation.rules = rules;
    operation.run = [answer, ask = std::move(ask)] { *answer = ask(); };
    operation.clear = [answer] {
        if (!std::exchange(*answer, false))
            throw std::logic_error("an operation that is measured failed");
    };
    return operation;
}

} // namespace bench

#endif // FILTER_COMMON_BENCH_OPERATIONS_H
