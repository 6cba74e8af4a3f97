/**
 * What tests of the C interface need: handles that are freed through it, and the reports of its
 * broken contracts.
 */
#ifndef FILTER_COMMON_TESTS_C_SUPPORT_H
#define FILTER_COMMON_TESTS_C_SUPPORT_H

#include "filter_actions_c.h"
#include "filter_entries_c.h"
#include "filter_groups_c.h"
#include "filter_matches_c.h"
#include "support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <list>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <typeinfo>

namespace FiltersCommon::test {

// ---------------------------------------------------------------------------------------- handles

/** Frees an object as a C caller does. */
struct FreedInC {
    void operator()(Match* m) const { deleteMatch(m); }
    void operator()(Action* a) const { deleteAction(a); }
    void operator()(FiltersEntry* e) const { deleteFiltersEntry(e); }
    void operator()(FiltersGroup* g) const { deleteFiltersGroup(g); }
};

template <class T>
using Handle = std::unique_ptr<T, FreedInC>;

/** An object of a kind with one number that counts its destruction. */
template <class T>
class Witness : public T {
public:
    explicit Witness(int& destroyed) : T(0), destroyed_(destroyed) {}
    ~Witness() override { ++destroyed_; }

private:
    int& destroyed_;
};

/** The object of an untyped handle, if it is exactly a T. The result owns it. */
template <class T>
Handle<T> made(void* handle)
{
    using Base = std::conditional_t<std::is_base_of_v<Match, T>, Match, Action>;
    Handle<Base> object(static_cast<Base*>(handle));
    const Base& reference = *object;
    if (typeid(reference) != typeid(T))
        throw std::logic_error(std::string("made a ") + typeid(reference).name());
    return Handle<T>(static_cast<T*>(object.release()));
}

/** A constructor of the C interface, and what it must make. */
struct Constructor {
    const char* name;
    int kind;
    const std::type_info& type;
    void* (*create)();
};

inline void PrintTo(const Constructor& constructor, std::ostream* out) { *out << constructor.name; }

/** Whether two values of a small type have the same bytes. */
template <class T>
bool same(const T& a, const T& b)
{
    static_assert(std::is_trivially_copyable_v<T>);
    return std::memcmp(&a, &b, sizeof(T)) == 0;
}

/** Whether the list holds the @p count ports in the order of the array. */
inline bool same(const std::list<limid_t>& list, const limid_t* ports, std::size_t count)
{
    return std::equal(list.begin(), list.end(), ports, ports + count,
                      [](limid_t a, limid_t b) { return same(a, b); });
}

// ------------------------------------------------------------------------------- broken contracts

constexpr unsigned ANY_LINE = 0;

/** A call that is reported as a failed assertion. */
struct BrokenContract {
    const char* name;
    unsigned line;
    const char* expression;
    const char* function;
    void (*call)();
};

inline void PrintTo(const BrokenContract& broken, std::ostream* out) { *out << broken.name; }

/** For INSTANTIATE_TEST_SUITE_P: names each test after its row. */
template <class Row>
std::string nameOf(const testing::TestParamInfo<Row>& row)
{
    return row.param.name;
}

/** A regular expression that matches exactly this text. */
inline std::string quoted(const std::string& text)
{
    std::string expression;
    for (const char c : text) {
        if (std::string("\\^$.|?*+()[]{}").find(c) != std::string::npos)
            expression += '\\';
        expression += c;
    }
    return expression;
}

/** What an emulator adds when a signal ends the process that it runs. */
#ifdef FILTER_COMMON_EMULATED
constexpr char EMULATOR_REPORT[] = "(qemu: [^\n]*\n)?";
#else
constexpr char EMULATOR_REPORT[] = "";
#endif

class ContractDeathTest : public testing::TestWithParam<BrokenContract> {
protected:
    ContractDeathTest() { GTEST_FLAG_SET(death_test_style, DEATH_TEST_STYLE); }

    /** The call aborts, and the process writes only the report to standard error. */
    static void expectReport(const char* file)
    {
        const BrokenContract& broken = GetParam();
        const std::string line =
            broken.line == ANY_LINE ? "[1-9][0-9]*" : std::to_string(broken.line);
        const std::string report =
            quoted(std::string(program_invocation_short_name) + ": " + file + ":") + line +
            quoted(std::string(": ") + broken.function + ": Assertion `" + broken.expression +
                   "' failed.\n") +
            EMULATOR_REPORT;
        EXPECT_EXIT(broken.call(), testing::KilledBySignal(SIGABRT), testing::MatchesRegex(report));
    }
};

} // namespace FiltersCommon::test

#endif // FILTER_COMMON_TESTS_C_SUPPORT_H
