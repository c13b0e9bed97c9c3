#include "fuzz/torture/Session.h"

#include <csignal>
#include <cstdio>
#include <map>
#include <thread>
#include <unistd.h>

namespace Torture {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

// What libraries open at their first use and keep.
constexpr int kDescriptorsOfLibraries = 4;

struct State {
    int workers = 0, pending = 0, rows = 0, waiting = 0;
};

struct Left {
    int below = 0, descriptors = 0, threads = 0, helpers = 0;
};

class Engine : public Actor {
public:
    Engine(const Place& place, const std::string& preferences)
        : folder_(place.folder), child_({OMBRIVEL_TORTURE_ENGINE}, place.variables, place.log) {
        const auto ready = child_.Hear();
        if (!ready || ready->at(0) != "ready")
            Fail("does not start");
        quits_ = preferences.find('q') != std::string::npos;
        AskOk("prefer\t" + preferences + "-");
        before_ = AskLeft();
    }

    void Cut(const std::string& path, uint32_t partSize) override {
        std::string megabytes(40, '\0');
        megabytes.resize(static_cast<std::size_t>(
            std::snprintf(megabytes.data(), megabytes.size(), "%.17g", double(partSize) / 1048576.0)));
        AskOk("cut\t" + path + "\t" + megabytes);
    }
    void Glue(const std::string& path) override { AskOk("open\t" + path); }
    void Stop(uint32_t row) override { AskOk("stop\t" + std::to_string(row)); }

    void Quit() override {
        for (auto& [number, row] : rows_)
            row.stopped = true;
        facts_.brokenOff = true;
        Ask("quit");
        AwaitEnd("did not quit");
    }

    void Kill() override {
        facts_.brokenOff = true;
        child_.Signal(SIGKILL);
        while (Listen()) {
        }
        child_.End();
        hasEnded_ = true;
    }

    void Settle(bool stopsWaiting, const std::function<bool()>& mayStand) override {
        const auto end = Clock::now() + kPatience;
        State state = AskState();
        for (; !hasEnded_ && (state.workers > 0 || state.pending > 0); state = AskState()) {
            if (Clock::now() > end)
                Fail("stands still: " + Describe(state));
            if (stopsWaiting && state.waiting > 0)
                for (int row = 0; row < state.rows && !hasEnded_; ++row)
                    Ask("stop\t" + std::to_string(row));
            std::this_thread::sleep_for(2ms);
        }
        if (hasEnded_) {
            AwaitEnd("did not end");
            return;
        }
        if (state.rows > 0 && !mayStand())
            Fail("rows stand without a worker: " + Describe(state));
        LookWhatIsLeft(state.rows);
        Ask("end");
        AwaitEnd("did not end");
    }

    Facts Seen() const override {
        Facts facts = facts_;
        for (const auto& [number, row] : rows_)
            facts.rows.push_back(row);
        return facts;
    }

private:
    [[noreturn]] static void Fail(const std::string& what) { throw Finding("the engine " + what); }

    // Takes one line in. False when it was the last.
    bool Listen() {
        const std::optional<Words> words = child_.Hear();
        if (!words)
            return false;
        if (words->at(0) == "row")
            rows_[words->at(1)] = {.cuts = words->at(2) == "cut",
                                   .name = words->at(3),
                                   .base = words->at(4),
                                   .partSize = std::stoll(words->at(5))};
        else if (words->at(0) == "end")
            rows_[words->at(1)].ended = true;
        else if (words->at(0) == "stopped")
            rows_[words->at(1)].stopped = true;
        else
            answer_ = *words;
        return true;
    }

    // Empty if the process has ended, as it may by itself.
    Words Ask(const std::string& line) {
        answer_.clear();
        if (!hasEnded_)
            child_.Tell(line);
        while (!hasEnded_ && answer_.empty()) {
            if (Listen())
                continue;
            hasEnded_ = child_.End(100ms).has_value();
            if (!hasEnded_)
                Fail("does not answer to " + line);
        }
        return answer_;
    }

    // "failed" is what an exception leaves, which may be due to a fault.
    void AskOk(const std::string& line) { Ask(line); }

    State AskState() {
        const Words words = Ask("state");
        if (words.empty())
            return {};
        return {std::stoi(words.at(1)), std::stoi(words.at(2)), std::stoi(words.at(3)), std::stoi(words.at(4))};
    }

    Left AskLeft() {
        const Words words = Ask("left\t" + folder_);
        if (words.empty())
            return {};
        return {std::stoi(words.at(1)), std::stoi(words.at(2)), std::stoi(words.at(3)), std::stoi(words.at(4))};
    }

    // By itself only if the preferences say so and no row is left.
    void AwaitEnd(const std::string& inVain) {
        while (Listen()) {
        }
        const std::optional<int> code = child_.End();
        hasEnded_ = true;
        if (!code)
            Fail(inVain);
        if (*code != 0)
            Fail("ended with " + std::to_string(*code));
        for (const auto& [number, row] : rows_)
            if (quits_ && !facts_.brokenOff && !row.ended && !endsByOrder_)
                Fail("quit while \"" + row.name + "\" had its row");
    }

    // Threads end a little after what they do, and so do helpers.
    void LookWhatIsLeft(int rows) {
        const auto end = Clock::now() + kPatience;
        endsByOrder_ = true;
        while (!hasEnded_) {
            const Left now = AskLeft();
            const bool clean = now.helpers == 0 && now.below <= 2 * rows && now.threads <= before_.threads &&
                               now.descriptors <= before_.descriptors + kDescriptorsOfLibraries + 2 * rows;
            if (clean || hasEnded_)
                return;
            if (Clock::now() > end)
                Fail("leaves descriptors " + std::to_string(now.below) + " below the folder, in all " +
                     std::to_string(now.descriptors) + " after " + std::to_string(before_.descriptors) + ", threads " +
                     std::to_string(now.threads) + " after " + std::to_string(before_.threads) + ", helpers " +
                     std::to_string(now.helpers));
            std::this_thread::sleep_for(2ms);
        }
    }

    std::string Describe(const State& state) const {
        std::string text = "workers " + std::to_string(state.workers) + ", rows " + std::to_string(state.rows) +
                           ", waiting " + std::to_string(state.waiting);
        for (const auto& [number, row] : rows_)
            if (!row.ended)
                text += ", \"" + row.name + "\"" + (row.stopped ? " (stopped)" : "");
        return text;
    }

    const std::string folder_;
    Child child_;
    Facts facts_;
    std::map<std::string, Row> rows_; // by the number that the child has for them
    Words answer_;
    Left before_;
    bool quits_ = false, hasEnded_ = false, endsByOrder_ = false;
};

} // namespace

std::unique_ptr<Actor> StartEngine(const Place& place, const std::string& preferences) {
    return std::make_unique<Engine>(place, preferences);
}

} // namespace Torture
