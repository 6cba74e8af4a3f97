/**
 * Objects of every class in each of its forms, by names: what the tests of bytes and of text walk,
 * and what the golden files hold.
 *
 * A name is the class, and behind an underscore the form. It is also the name of the golden file.
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

/** A match or an action. */
template <class Base>
struct Sample {
    std::string name;
    std::shared_ptr<const Base> object;
    std::function<std::unique_ptr<Base>()> copy;
    /** Writes the object by the operator of its own class. */
    std::function<std::ostream&(std::ostream&)> print;

    std::string className() const { return name.substr(0, name.find('_')); }
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
std::unique_ptr<Base> copyOf(const std::vector<Sample<Base>>& samples, const std::string& name)
{
    for (const Sample<Base>& sample : samples)
        if (sample.name == name)
            return sample.copy();
    throw std::invalid_argument(name);
}

template <class Base>
std::set<std::string> classesOf(const std::vector<Sample<Base>>& samples)
{
    std::set<std::string> classes;
    for (const Sample<Base>& sample : samples)
        classes.insert(sample.className());
    return classes;
}

/** The names of all classes. */
std::set<std::string> matchClasses();
std::set<std::string> actionClasses();

std::vector<Sample<Match>> matchSamples();
std::vector<Sample<Action>> actionSamples();

/** A redirection to any number of ports, which only the wire can give. */
ActionRedirect redirectTo(const std::list<limid_t>& ports);

} // namespace FiltersCommon::test

#endif // FILTER_COMMON_TESTS_NAMED_SAMPLES_H
