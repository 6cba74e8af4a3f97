#include "group_json.h"

#include "json_text.h"
#include "message_json.h"
#include "readable_json.h"

#include "filter_groups.pb.h"

#include <filter_refusals.h>

#include <cstddef>
#include <stdexcept>
#include <utility>
#include <vector>

namespace filterctl {

using namespace FiltersCommon;

namespace {

constexpr char GROUP[] = "group";
constexpr char READABLE[] = "readable";

/** The group with these bytes; refuses them if it would not have all that they say. */
FiltersGroup groupOf(const std::string& bytes, std::size_t place)
{
    std::vector<FiltersRefusal> losses;
    FiltersGroup group = groupFromBytes(bytes, &losses);
    if (losses.empty())
        return group;
    std::string sentence = losses.front().sentence();
    if (losses.size() > 1)
        sentence += " (and " + std::to_string(losses.size() - 1) + " more)";
    throw JsonRefusal{sentence, place};
}

/** Takes any part of a document. */
class Skipped final : public JsonEvents {
public:
    void key(std::string_view) override {}
    void value(const JsonScalar&) override {}
    void startObject(std::size_t) override {}
    void endObject() override {}
    void startList(std::size_t) override {}
    void endList() override {}
};

/** Passes each part of a document to its reader. */
class DocumentReader final : public JsonEvents {
public:
    /** Sets @p group, or if it is set, passes over "group" and checks "readable" only. */
    explicit DocumentReader(std::optional<FiltersGroup>& group) : group_(group) {}

    /** Whether "readable" came before what it is to be compared with. */
    bool isUnchecked() const { return isUnchecked_; }

    void key(std::string_view name) override
    {
        if (depth_ == 1)
            part_ = &partFor(name);
        else
            part_->key(name);
    }
    void value(const JsonScalar& value) override { inObject().value(value); }
    void startObject(std::size_t place) override
    {
        if (depth_ == 1)
            place_ = place;
        if (depth_++ > 0)
            part_->startObject(place);
    }
    void endObject() override
    {
        if (--depth_ > 0)
            part_->endObject();
        else if (!group_)
            throw JsonRefusal{"this is JSON, but has no member \"group\"", 0};
        if (depth_ == 1 && part_ == &message_)
            group_.emplace(groupOf(message_.takeBytes(), place_));
    }
    void startList(std::size_t place) override
    {
        inObject().startList(place);
        ++depth_;
    }
    void endList() override
    {
        part_->endList();
        --depth_;
    }

private:
    JsonEvents& inObject() const
    {
        if (depth_ == 0)
            throw JsonRefusal{"this is JSON, but no object with the member \"group\""};
        return *part_;
    }

    JsonEvents& partFor(std::string_view name)
    {
        if (name != GROUP && name != READABLE)
            throw JsonRefusal{"this is JSON, but of something else than a group, which has the "
                              "members \"group\" and \"readable\""};
        bool& seen = name == GROUP ? hasGroup_ : hasReadable_;
        if (std::exchange(seen, true))
            throw JsonRefusal{"the member " + quoted(name) + " is given twice"};
        if (name == READABLE && group_)
            return check_.emplace(*group_);
        if (name == GROUP && !group_)
            return message_;
        isUnchecked_ = name == READABLE;
        return skipped_;
    }

    std::optional<FiltersGroup>& group_;
    FiltersGroupPB scratch_;
    MessageJsonReader message_{scratch_};
    std::optional<ReadableJsonCheck> check_;
    Skipped skipped_;
    JsonEvents* part_ = nullptr;
    std::size_t depth_ = 0; /**< how many objects and lists are open */
    std::size_t place_ = 0; /**< of the current part */
    bool hasGroup_ = false;
    bool hasReadable_ = false;
    bool isUnchecked_ = false;
};

} // namespace

void writeJson(const FiltersGroup& group, bool compact, const Sink& sink)
{
    std::string bytes;
    group.serialize(&bytes);
    if (bytes.empty())
        throw std::runtime_error("the group is too large to be sent, and so to be written as JSON");
    JsonWriter json(sink, compact);
    json.startObject();
    json.key(GROUP);
    writeMessage(json, *FiltersGroupPB::descriptor(), bytes);
    json.key(READABLE);
    writeReadable(json, group);
    json.endObject();
    json.end();
}

std::string jsonOf(const FiltersGroup& group, bool compact)
{
    std::string text;
    writeJson(group, compact, [&text](std::string_view piece) { text += piece; });
    return text;
}

std::optional<FiltersGroup> groupFromJson(std::string_view text, Problem& why)
{
    std::optional<FiltersGroup> group;
    DocumentReader reader(group);
    std::optional<Problem> problem = readJson(text, reader);
    if (!problem && reader.isUnchecked()) {
        DocumentReader checker(group);
        problem = readJson(text, checker);
    }
    if (problem) {
        why = std::move(*problem);
        group.reset();
    }
    return group;
}

} // namespace filterctl
