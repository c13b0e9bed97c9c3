#include "fuzz/torture/Plan.h"

#include <algorithm>
#include <initializer_list>
#include <ostream>
#include <random>

namespace Torture {

namespace {

constexpr uint32_t kKilobyte = 1024;
constexpr uint32_t kMegabyte = 1024 * kKilobyte;
constexpr const char* kVerbNames[] = {
    "cut",    "glue", "wait",   "stop",   "finish download", "grow download",  "give up download",
    "appear", "grow", "shrink", "vanish", "replace",         "put in the way", "quit",
    "kill"};

class Dice {
public:
    explicit Dice(uint64_t seed) : random_(seed) {}

    uint32_t Below(uint32_t end) { return static_cast<uint32_t>(random_() % end); }
    uint32_t Between(uint32_t low, uint32_t high) { return low + Below(high - low + 1); }
    bool Chance(uint32_t percent) { return Below(100) < percent; }
    template <class T>
    T Of(std::initializer_list<T> choices) {
        return choices.begin()[Below(static_cast<uint32_t>(choices.size()))];
    }

private:
    std::mt19937_64 random_;
};

uint32_t DrawSize(Dice& dice) {
    switch (dice.Below(10)) {
    case 0:
        return dice.Below(20);
    case 1:
    case 2:
        return 4 * kKilobyte * dice.Between(1, 300);
    case 3:
        return kMegabyte * dice.Between(1, 3) + dice.Below(3) - 1;
    case 4:
        return dice.Between(1, 8) * kMegabyte + dice.Below(5000);
    default:
        return dice.Between(1, 700 * kKilobyte);
    }
}

uint32_t DrawPartSize(Dice& dice, uint32_t whole) {
    const uint32_t least = std::max(whole / 40, 1U);
    const uint32_t size = std::max(dice.Between(least, std::max(whole, least) + 10), 1U);
    const uint32_t block = dice.Of({1U, 1U, 4 * kKilobyte, 64 * kKilobyte, kMegabyte});
    return (size + block - 1) / block * block;
}

Series DrawSeries(Dice& dice, const std::string& base) {
    Series series{.base = base};
    series.first = dice.Chance(15) ? 0 : 1;
    const uint32_t count = dice.Between(1, dice.Chance(10) ? 30 : 5);
    for (uint32_t i = 0; i < count; ++i)
        series.sizes.push_back(dice.Chance(4) ? 0 : DrawSize(dice) / (count > 5 ? 20 : 2) + 1);
    series.there = dice.Chance(20) ? dice.Between(1, count) : count;
    series.ending = dice.Of({".download", ".crdownload", ".opdownload", ".part", ".wkdownload", kSalted, kControlled});
    return series;
}

// Of the calls that know no other way, and of those that do.
constexpr Call kMayFail[] = {Call::Open, Call::Read,  Call::Write, Call::Rename,
                             Call::Sync, Call::Close, Call::Stat,  Call::Thread};
constexpr Call kMayDoLess[] = {Call::Open, Call::Read, Call::Write, Call::Allocate, Call::Clone, Call::KernelCopy};

void DrawFaults(Dice& dice, Session& session) {
    const uint32_t kind = dice.Below(10);
    if (kind < 4)
        return;
    for (const Call call : kMayDoLess)
        session.rates[static_cast<std::size_t>(call)][Soft] = dice.Chance(60) ? kOften / dice.Of({2U, 4U, 16U}) : 0;
    for (const Call call : {Call::Clone, Call::KernelCopy}) // else the bytes come by no other way
        if (dice.Chance(50))
            session.rates[static_cast<std::size_t>(call)][Soft] = kOften;
    for (const Call call : kMayFail) {
        const bool ofToolkit = session.wholeProgram && call == Call::Thread; // which does not start without
        if (kind >= 7 && dice.Chance(35) && !ofToolkit)
            session.rates[static_cast<std::size_t>(call)][Hard] = kOften / dice.Of({2U, 6U, 20U, 60U});
    }
}

// Beside the cuts and glues.
Step DrawStep(Dice& dice, const Plan& plan) {
    const auto series = static_cast<uint32_t>(plan.series.size()) + 1; // also what an earlier session has cut
    const auto which = dice.Below(std::max(series, static_cast<uint32_t>(plan.sources.size())));
    const uint32_t part = dice.Below(4);
    switch (dice.Below(20)) {
    case 0:
    case 1:
    case 2:
        return {Verb::Stop, dice.Below(3)};
    case 3:
    case 4:
        return {Verb::FinishDownload, which};
    case 5:
        return {dice.Of({Verb::GrowDownload, Verb::GrowDownload, Verb::GiveUpDownload}), which, 0, dice.Below(90000)};
    case 6:
        return {Verb::Appear, which, 0, DrawSize(dice) / 4};
    case 7:
        return {Verb::Grow, which, part, dice.Between(1, kMegabyte)};
    case 8:
        return {Verb::Shrink, which, part, dice.Between(1, kMegabyte)};
    case 9:
        return {dice.Of({Verb::Vanish, Verb::Replace}), which, part, dice.Below(kMegabyte)};
    case 10:
    case 11:
        return {Verb::PutInTheWay, which, dice.Below(6), dice.Below(5)};
    default:
        return {Verb::Wait, 0, 0, dice.Of({50U, 500U, 2000U, 10000U})};
    }
}

Step DrawOperation(Dice& dice, const Plan& plan, bool cuts) {
    const auto sources = static_cast<uint32_t>(plan.sources.size());
    if (cuts && sources > 0 && dice.Chance(50)) {
        const uint32_t which = dice.Below(sources);
        return {Verb::Cut, which, 0, DrawPartSize(dice, plan.sources[which].size)};
    }
    return {Verb::Glue, dice.Below(static_cast<uint32_t>(plan.series.size()) + 1), dice.Below(3)};
}

Session DrawSession(Dice& dice, const Plan& plan, bool hasProgram) {
    Session session;
    session.wholeProgram = hasProgram && dice.Chance(8);
    session.completes = dice.Chance(75);
    for (const char letter : {'t', 'l', 's'})
        if (dice.Chance(letter == 's' ? 10 : 60))
            session.preferences += letter;
    if (session.wholeProgram || dice.Chance(15))
        session.preferences += 'q';
    DrawFaults(dice, session);
    for (uint32_t operations = dice.Between(1, 4); operations > 0; --operations) {
        session.steps.push_back(DrawOperation(dice, plan, !session.wholeProgram));
        for (uint32_t others = dice.Below(4); others > 0; --others)
            session.steps.push_back(DrawStep(dice, plan));
    }
    if (dice.Chance(35)) {
        session.steps.push_back({Verb::Wait, 0, 0, dice.Below(dice.Of({300U, 3000U, 20000U}))});
        session.steps.push_back({dice.Chance(65) ? Verb::Kill : Verb::Quit});
    }
    return session;
}

// The next start works on the same folder.
Session DrawLastSession(Dice& dice, const Plan& plan) {
    Session session{.preferences = dice.Chance(50) ? "t" : ""};
    for (const bool cuts : {true, false})
        session.steps.push_back(DrawOperation(dice, plan, cuts));
    session.steps.push_back({Verb::Glue, static_cast<uint32_t>(plan.series.size()), 0});
    return session;
}

} // namespace

Plan Draw(uint64_t seed, const std::vector<std::string>& grounds, bool hasProgram) {
    Dice dice(seed);
    Plan plan{.seed = seed};
    plan.ground = grounds[dice.Below(static_cast<uint32_t>(grounds.size()))];
    plan.room = dice.Below(3 * kMegabyte);
    std::vector<std::string> names{"film.mov",  "my.film.mkv", "disk",
                                   "disk2.img", "archive.zip", "ein b\xC3\xA4r %20'.rar",
                                   ".hidden",   "a  b.c.d"};
    const auto takeName = [&] {
        const std::string name = names[dice.Below(static_cast<uint32_t>(names.size()))];
        std::erase(names, name);
        return name;
    };
    for (uint32_t count = dice.Between(0, 2); count > 0; --count)
        plan.sources.push_back({takeName(), dice.Chance(3) ? 0 : DrawSize(dice) + 1});
    for (uint32_t count = dice.Between(plan.sources.empty() ? 1 : 0, 2); count > 0; --count)
        plan.series.push_back(DrawSeries(dice, takeName()));
    for (uint32_t count = dice.Between(1, 2); count > 0; --count)
        plan.sessions.push_back(DrawSession(dice, plan, hasProgram));
    plan.sessions.push_back(DrawLastSession(dice, plan));
    return plan;
}

std::ostream& operator<<(std::ostream& out, const Plan& plan) {
    out << "seed " << plan.seed << ", on " << plan.ground << " (room " << plan.room << ")\n";
    for (const Source& source : plan.sources)
        out << "  source \"" << source.name << "\" of " << source.size << "\n";
    for (const Series& series : plan.series) {
        out << "  series \"" << series.base << "\" from " << series.first << ", the first " << series.there
            << " there, then " << series.ending << ":";
        for (const uint32_t size : series.sizes)
            out << " " << size;
        out << "\n";
    }
    for (const Session& session : plan.sessions) {
        out << (session.wholeProgram ? "  program" : "  engine") << ", preferences \"" << session.preferences << "\""
            << (session.completes ? "" : ", downloads stay") << "\n";
        for (std::size_t call = 0; call < kCalls; ++call)
            if (session.rates[call][Hard] + session.rates[call][Soft] > 0)
                out << "    faults of " << kCallNames[call] << ": " << session.rates[call][Hard] << " hard, "
                    << session.rates[call][Soft] << " soft of " << kOften << "\n";
        for (const Step& step : session.steps)
            out << "    " << kVerbNames[static_cast<std::size_t>(step.verb)] << " " << step.which << " " << step.part
                << " " << step.amount << "\n";
    }
    return out;
}

std::vector<Plan> Shorter(const Plan& plan) {
    std::vector<Plan> shorter;
    for (std::size_t i = 0; plan.sessions.size() > 1 && i < plan.sessions.size(); ++i) {
        Plan& without = shorter.emplace_back(plan);
        without.sessions.erase(without.sessions.begin() + static_cast<std::ptrdiff_t>(i));
    }
    for (std::size_t i = 0; i < plan.sessions.size(); ++i) {
        for (std::size_t k = 0; k < plan.sessions[i].steps.size(); ++k) {
            std::vector<Step>& steps = shorter.emplace_back(plan).sessions[i].steps;
            steps.erase(steps.begin() + static_cast<std::ptrdiff_t>(k));
        }
        for (std::size_t call = 0; call < kCalls; ++call)
            for (const Severity severity : {Hard, Soft})
                if (plan.sessions[i].rates[call][severity] > 0)
                    shorter.emplace_back(plan).sessions[i].rates[call][severity] = 0;
    }
    // Those behind keep their places.
    if (!plan.sources.empty())
        shorter.emplace_back(plan).sources.pop_back();
    if (!plan.series.empty())
        shorter.emplace_back(plan).series.pop_back();
    if (plan.ground != "disk")
        shorter.emplace_back(plan).ground = "disk";
    return shorter;
}

} // namespace Torture
