/**
 * What the equality of match classes and of action classes has in common. A Base is Match or
 * Action; a Row is one of samples.h.
 */
#ifndef FILTER_COMMON_TESTS_CLASS_EQUALITY_H
#define FILTER_COMMON_TESTS_CLASS_EQUALITY_H

#include "samples.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <type_traits>

namespace FiltersCommon::test {

/** Compares both as objects of the base class. */
template <class Base>
bool equalAs(const Base& a, const Base& b)
{
    return a == b;
}

template <class Base, class Row>
void expectDifferentWhenOneFieldDiffers()
{
    const auto variants = Row::variants();
    EXPECT_EQ(variants.size() > 1, Row::HAS_VALUES);
    for (const auto& a : variants)
        for (const auto& b : variants) {
            EXPECT_EQ(a == b, &a == &b);
            EXPECT_EQ(equalAs<Base>(a, b), &a == &b);
        }
}

/** @p read joins what the getters of an object return. */
template <class Row, class Read>
void expectDifferentByItsGetters(Read read)
{
    const auto variants = Row::variants();
    for (const auto& a : variants)
        for (const auto& b : variants)
            EXPECT_EQ(read(a) == read(b), &a == &b);
}

template <class Base, class Row, class Rows>
void expectEqualToItsOwnKindOnly()
{
    const auto mine = Row::sample();
    Rows::forEach([&](auto row) {
        const auto theirs = row.sample();
        const Base& asItsBase = theirs;
        constexpr bool SAME = std::is_same_v<decltype(mine), decltype(theirs)>;
        for (const bool answer : {mine == theirs, mine == asItsBase, equalAs<Base>(mine, theirs)})
            EXPECT_EQ(answer, SAME) << row.CODE;
    });
}

/** An object of the base itself has a code and no values. */
template <class Base, class Row>
void expectDifferentFromABareObject()
{
    const auto object = Row::sample();
    using Kind = decltype(object.getType());
    constexpr bool IS_MATCH = std::is_same_v<Base, Match>;
    for (const std::uint32_t code : knownAndUnknownCodes(IS_MATCH ? MATCH_KINDS : ACTION_KINDS)) {
        const Base bare(static_cast<Kind>(code));
        const bool same = code == Row::CODE && !Row::HAS_VALUES;
        EXPECT_EQ(object == bare, same) << code;
        EXPECT_EQ(bare == object, same) << code;
    }
}

/** A caller's class whose own equality always gives the same answer. */
template <class T>
class Answering : public T {
public:
    Answering(const T& values, bool answer) : T(values), answer_(answer) {}
    using T::operator==;
    bool operator==(const T&) const { return answer_; }

private:
    bool answer_;
};

} // namespace FiltersCommon::test

#endif // FILTER_COMMON_TESTS_CLASS_EQUALITY_H
