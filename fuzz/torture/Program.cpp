#include "fuzz/torture/Session.h"

#include <algorithm>
#include <csignal>

namespace Torture {

namespace {

constexpr std::chrono::seconds kTimeToEnd{2};

// The real binary, which the first glue starts, and further ones start again. It ends by itself.
class Program : public Actor {
public:
    explicit Program(const Place& place) : place_(place) {}

    void Cut(const std::string&, uint32_t) override {} // its question takes a user who sees
    void Stop(uint32_t) override {}

    void Glue(const std::string& path) override {
        starts_.emplace_back(Words{"setpriv", "--pdeathsig", "KILL", OMBRIVEL_TORTURE_PROGRAM, path}, place_.variables,
                             place_.log);
    }

    void Quit() override { EndAll(SIGTERM); }
    void Kill() override { EndAll(SIGKILL); }

    void Settle(bool stopsWaiting, const std::function<bool()>& mayStand) override {
        const auto ends = [](Child& start) { return start.End(kTimeToEnd).has_value(); };
        if (!std::all_of(starts_.begin(), starts_.end(), ends) && (stopsWaiting || mayStand())) // nobody would end it
            EndAll(SIGTERM);
        for (Child& start : starts_)
            ExpectEnd(start, 0);
    }

    Facts Seen() const override {
        Facts facts;
        facts.seesRows = false;
        facts.brokenOff = brokenOff_;
        return facts;
    }

private:
    // One that has not come to listen to signals is ended by them.
    void EndAll(int signal) {
        brokenOff_ = true;
        for (Child& start : starts_)
            start.Signal(signal);
        for (Child& start : starts_)
            ExpectEnd(start, 128 + signal);
    }

    static void ExpectEnd(Child& start, int otherCode) {
        const std::optional<int> code = start.End();
        if (!code)
            throw Finding("the program does not end");
        if (*code != 0 && *code != otherCode)
            throw Finding("the program ended with " + std::to_string(*code));
    }

    const Place place_;
    std::list<Child> starts_;
    bool brokenOff_ = false;
};

} // namespace

std::unique_ptr<Actor> StartProgram(const Place& place) {
    return std::make_unique<Program>(place);
}

} // namespace Torture
