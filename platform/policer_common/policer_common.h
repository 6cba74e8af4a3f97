/**
 * Policers: the rate limiters that a packet-filter rule may carry.
 */
#ifndef POLICER_COMMON_H
#define POLICER_COMMON_H

#include <cstdint>
#include <set>
#include <string>

namespace policer {

/** Where in the packet path a policer works. Any 32-bit value may be held. */
enum Stage : std::uint32_t { STAGE_INGRESS = 0, STAGE_EGRESS = 1, STAGE_NONE = 2 };

/** How packets are metered, and at which rates. */
class Mode {
public:
    /** The metering algorithm. Any 32-bit value may be held. */
    enum Type : std::uint32_t { SR_TCM = 0, TR_TCM = 1, TR_TCM_DS = 2, FLOW = 3, NONE = 4 };

    /** Rates (cir, eir, pir) in kbit/s, burst sizes (cbs, ebs, pbs) in bytes. */
    struct Rates {
        std::uint32_t cir = 0, cbs = 0, ebs = 0, eir = 0, pbs = 0, pir = 0;
    };

    /** No metering, all rates 0. */
    Mode();
    Mode(Type type, const Rates& rates);

    Type GetType() const { return type_; }
    std::uint32_t GetCir() const { return rates_.cir; }
    std::uint32_t GetCbs() const { return rates_.cbs; }
    std::uint32_t GetEbs() const { return rates_.ebs; }
    std::uint32_t GetEir() const { return rates_.eir; }
    std::uint32_t GetPbs() const { return rates_.pbs; }
    std::uint32_t GetPir() const { return rates_.pir; }

    /** Compares the type and all six rates, including those that the type does not use. */
    bool operator==(const Mode& other) const;
    bool operator!=(const Mode& other) const { return !(*this == other); }

private:
    Type type_;
    Rates rates_;
};

/** What happens to packets of one color. */
class Action {
public:
    enum Type : std::uint32_t { DROP = 0, SET_PCP = 1, SET_DSCP = 2 };
    enum Color : std::uint32_t { RED = 0, YELLOW = 1, GREEN = 2 };

    /** @p value is the PCP or the DSCP to set. */
    Action(Color color, Type type, std::uint8_t value = 0);

    Type GetType() const { return type_; }
    Color GetColor() const { return color_; }
    /** The PCP to set; 0 unless the type is SET_PCP. */
    std::uint8_t GetPcp() const { return type_ == SET_PCP ? value_ : std::uint8_t{0}; }
    /** The DSCP to set; 0 unless the type is SET_DSCP. */
    std::uint8_t GetDscp() const { return type_ == SET_DSCP ? value_ : std::uint8_t{0}; }

    bool operator==(const Action& other) const;
    bool operator!=(const Action& other) const { return !(*this == other); }
    /** Orders by color, then type, then value. */
    bool operator<(const Action& other) const;

private:
    friend class Policer;

    Color color_;
    Type type_;
    std::uint8_t value_;
};

/** A rate limiter: an identifier, a stage, a mode, and what to do with packets of each color. */
class Policer {
public:
    static constexpr std::uint32_t INVALID_ID = 0xFFFFFFFF;

    /** INVALID_ID, STAGE_NONE, no metering and no actions. */
    Policer();

    /** Rebuilds a policer from its bytes. Bytes that do not parse, or none, give Policer(). */
    explicit Policer(const std::string& bytes);

    Policer(std::uint32_t id, Stage stage, const Mode& mode, const std::set<Action>& actions);

    /** Bytes from which an equal policer can be rebuilt. Equal policers give equal bytes. */
    std::string Serialize() const;

    std::uint32_t GetId() const { return id_; }
    Stage GetStage() const { return stage_; }
    const Mode& GetMode() const { return mode_; }
    const std::set<Action>& GetActions() const { return actions_; }

private:
    std::uint32_t id_;
    Stage stage_;
    Mode mode_;
    std::set<Action> actions_;
};

} // namespace policer

#endif // POLICER_COMMON_H
