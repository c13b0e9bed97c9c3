#pragma once

#include "fuzz/torture/Ground.h"
#include "fuzz/torture/Session.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace Torture {

// What was done, by all together.
struct Tally {
    std::atomic<uint64_t> histories{0}, sessions{0}, programs{0}, operations{0}, kills{0};
    std::atomic<uint64_t> faults[kCalls][2]{};
};

// Where histories take place one after the other, with a home and file systems of its own.
class Stage {
public:
    explicit Stage(const std::string& folder);
    ~Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    const std::vector<std::string>& Grounds() const { return grounds_.Names(); }
    bool HasProgram() const { return bus_ != nullptr; }

    // Plays the plan. Gives what was found, nothing if all held.
    std::optional<std::string> Play(const Plan& plan, Tally& tally);

private:
    struct Bus;

    std::string Prepare(const Plan& plan) const;
    std::unique_ptr<Actor> Start(const Session& session, const World& world) const;
    std::vector<std::string> PlaySession(const Plan& plan, const Session& session, World& world, Tally& tally);
    void Count(const Session& session, const Facts& facts, Tally& tally) const;

    const std::string folder_;
    Torture::Grounds grounds_;
    FaultControl* control_;
    std::unique_ptr<Bus> bus_;
};

} // namespace Torture
