/**
 * Groups in JSON as people and scripts read them: with names, addresses, numbers, truths and lists.
 */
#ifndef FILTER_COMMON_TOOLS_READABLE_JSON_H
#define FILTER_COMMON_TOOLS_READABLE_JSON_H

#include "json_text.h"

#include <filter_description.h>
#include <filter_groups.h>

#include <bitset>
#include <cstddef>
#include <string_view>
#include <vector>

namespace filterctl {

void writeReadable(JsonWriter& json, const FiltersCommon::FiltersGroup& group);

/** Refuses whatever differs from what is written for the group; members may be in any order. */
class ReadableJsonCheck final : public JsonEvents {
public:
    explicit ReadableJsonCheck(const FiltersCommon::FiltersGroup& group);

    void key(std::string_view name) override;
    void value(const JsonScalar& value) override;
    void startObject(std::size_t place) override;
    void endObject() override;
    void startList(std::size_t place) override;
    void endList() override;

private:
    /** What is expected of an object or a list whose end has not been read. */
    struct Level {
        const FiltersCommon::FiltersValue* expected;
        std::size_t place;
        std::size_t next = 0;         /**< the element, or the member whose name was read */
        std::bitset<64> members = {}; /**< those that were read */
    };

    bool isAmongEntries() const { return levels_.size() == 2; }
    const FiltersCommon::FiltersValue& next();

    const FiltersCommon::FiltersValue group_;
    FiltersCommon::FiltersValue entry_; /**< the one that is being read */
    FiltersCommon::FiltersGroup::EntryMap::const_iterator nextEntry_;
    FiltersCommon::FiltersGroup::EntryMap::const_iterator endOfEntries_;
    std::vector<Level> levels_;
};

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_READABLE_JSON_H
