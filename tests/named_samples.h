/**
 * Objects of every class in each of its forms, with what is expected of them on the wire, in dumps
 * and in descriptions.
 *
 * A sample is named after its class; an underscore and a word tell further forms apart.
 */
#ifndef FILTER_COMMON_TESTS_NAMED_SAMPLES_H
#define FILTER_COMMON_TESTS_NAMED_SAMPLES_H

#include "support.h"

#include <functional>
#include <list>
#include <memory>
#include <ostream>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace FiltersCommon::test {

/** What is expected of a sample, written by hand. */
struct Expected {
    int code;
    std::string fields;      /**< of its message besides the type, as text */
    std::string valueLines;  /**< of the dump by its own class, after the line of the type */
    std::string description; /**< on one line */
};

/** A match or an action. */
template <class Base>
struct Sample {
    std::string name;
    Expected expected;
    std::shared_ptr<const Base> object;
    std::function<std::unique_ptr<Base>()> copy;
    /** Writes the object by the operator of its own class. */
    std::function<std::ostream&(std::ostream&)> print;

    std::string className() const { return name.substr(0, name.find('_')); }

    /** The message that is expected, as text. */
    std::string message() const
    {
        return "type_: " + std::to_string(expected.code) + " " + expected.fields;
    }
};

/** For messages of the test framework. */
template <class Base>
void PrintTo(const Sample<Base>& sample, std::ostream* out)
{
    *out << sample.name;
}

/** Names each test of a suite after its sample. */
constexpr auto BY_NAME = [](const auto& info) { return info.param.name; };

template <class Base>
const Sample<Base>& sampleOf(const std::vector<Sample<Base>>& samples, const std::string& name)
{
    for (const Sample<Base>& sample : samples)
        if (sample.name == name)
            return sample;
    throw std::invalid_argument("no sample is named " + name);
}

template <class Base>
std::set<std::string> classesOf(const std::vector<Sample<Base>>& samples)
{
    std::set<std::string> classes;
    for (const Sample<Base>& sample : samples)
        classes.insert(sample.className());
    return classes;
}

/** The names of all classes, from the lists of kinds. */
std::set<std::string> matchClasses();
std::set<std::string> actionClasses();

std::vector<Sample<Match>> matchSamples();
std::vector<Sample<Action>> actionSamples();

/** A redirection to any number of ports, which can only be read from the wire. */
ActionRedirect redirectTo(const std::list<limid_t>& ports);

} // namespace FiltersCommon::test

#endif // FILTER_COMMON_TESTS_NAMED_SAMPLES_H
