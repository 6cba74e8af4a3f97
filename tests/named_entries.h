/**
 * Named entries and groups: typical ones, extreme ones, and those whose dumps have a peculiarity.
 * The golden files have the same names.
 */
#ifndef FILTER_COMMON_TESTS_NAMED_ENTRIES_H
#define FILTER_COMMON_TESTS_NAMED_ENTRIES_H

#include "named_samples.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace FiltersCommon::test {

template <class T>
struct Named {
    std::string name;
    std::shared_ptr<const T> object;
};

template <class T>
void PrintTo(const Named<T>& sample, std::ostream* out)
{
    *out << sample.name;
}

/** A policer with an action of a different type for each color. */
policer::Policer policerOf(policer::Stage stage, policer::Mode::Type type);

void fillTypical(FiltersEntry& entry);
void fillIPv6(FiltersEntry& entry);

std::vector<Named<FiltersEntry>> entrySamples();

/** An entry for each sample of a match or an action. */
std::vector<Named<FiltersEntry>> entriesOfEachKind();

template <class Fill>
void insert(FiltersGroup& group, filtersEntryId_t id, Fill fill)
{
    FiltersEntry entry(id);
    fill(entry);
    if (group.insertEntry(entry) != FILTERS_OK)
        throw std::logic_error("a sample group refuses its own entry");
}

void fillAccessList(FiltersGroup& group);

std::vector<Named<FiltersGroup>> groupSamples();

} // namespace FiltersCommon::test

#endif // FILTER_COMMON_TESTS_NAMED_ENTRIES_H
