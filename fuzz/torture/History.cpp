#include "fuzz/torture/History.h"

#include "fuzz/torture/Session.h"
#include "tests/support/Bytes.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <initializer_list>
#include <stdexcept>

namespace fs = std::filesystem;

namespace Torture {

namespace {

constexpr const char* kPreferencesName = "Ombrivel " OMBRIVEL_LONG_VERSION " Preferences";

Variables VariablesFor(const std::string& home) {
    Variables variables;
    for (const char* const name : {"PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS"})
        if (const char* const value = std::getenv(name))
            variables[name] = value;
    variables.merge(Variables{{"HOME", home},
                              {"XDG_RUNTIME_DIR", home},
                              {"XDG_DATA_HOME", home + "/data"},
                              {"XDG_CONFIG_HOME", home + "/config"},
                              {"XDG_CACHE_HOME", home + "/cache"},
                              {"LC_ALL", "C.UTF-8"},
                              {"QT_QPA_PLATFORM", "offscreen"}});
    return variables;
}

// What the program reads at its start.
std::string PreferencesBytes(const std::string& letters) {
    std::string bytes;
    for (const std::string text : {"Ombrivel Preferences Version " OMBRIVEL_LONG_VERSION, "English"})
        bytes += static_cast<char>(text.size()) + text;
    const bool trashes = letters.find('t') != std::string::npos;
    for (const bool value : {true, false, trashes, false, false}) // quits by itself, and asks nothing of the desktop
        bytes += value ? '\1' : '\0';
    return bytes;
}

FaultControl* MapControl(const std::string& path) {
    const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    void* memory = MAP_FAILED;
    if (file >= 0 && ftruncate(file, sizeof(FaultControl)) == 0)
        memory = mmap(nullptr, sizeof(FaultControl), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (memory == MAP_FAILED)
        throw std::runtime_error("no memory for " + path);
    close(file);
    return static_cast<FaultControl*>(memory);
}

void Arm(FaultControl& control, const Session& session, uint64_t seed, const std::string& folder) {
    for (std::size_t call = 0; call < kCalls; ++call) {
        for (const Severity severity : {Hard, Soft}) {
            control.rates[call][severity] = session.rates[call][severity];
            control.hits[call][severity] = 0;
        }
    }
    control.random = seed;
    std::strncpy(control.folder, (folder + "/").c_str(), sizeof control.folder - 1);
    control.armed = 1;
}

bool HasFailed(const FaultControl& control, std::initializer_list<Call> calls) {
    return std::any_of(calls.begin(), calls.end(),
                       [&control](Call call) { return control.hits[static_cast<std::size_t>(call)][Hard] > 0; });
}

} // namespace

// A session bus, for second starts.
struct Stage::Bus {
    explicit Bus(const std::string& home)
        : daemon({"setpriv", "--pdeathsig", "TERM", "dbus-daemon", "--nofork", "--print-address=1",
                  std::string("--config-file=") + OMBRIVEL_BUS_SETTINGS},
                 VariablesFor(home), home + "/bus.log") {
        if (const auto line = daemon.Hear())
            address = line->at(0);
    }
    Child daemon;
    std::string address;
};

Stage::Stage(const std::string& folder)
    : folder_(folder), grounds_(folder + "/grounds"), control_(MapControl(folder + "/faults")) {
#ifndef OMBRIVEL_WITHOUT_BUS
    const std::string home = folder_ + "/bus";
    fs::create_directories(home);
    try {
        bus_ = std::make_unique<Bus>(home);
    } catch (const std::runtime_error&) { // there is no such program
    }
    if (bus_ != nullptr && bus_->address.empty())
        bus_ = nullptr;
#endif
}

Stage::~Stage() {
    munmap(control_, sizeof(FaultControl));
}

std::string Stage::Prepare(const Plan& plan) const {
    for (const char* const own : {"home", "log"})
        fs::remove_all(folder_ + "/" + own);
    fs::create_directories(folder_ + "/home/config");
    fs::permissions(folder_ + "/home", fs::perms::owner_all);
    return grounds_.Clear(plan.ground);
}

std::optional<std::string> Stage::Play(const Plan& plan, Tally& tally) {
    const std::string top = Prepare(plan);
    World world(top, plan);
    grounds_.Fill(plan.ground, plan.room);
    ++tally.histories;
    for (std::size_t i = 0; i < plan.sessions.size(); ++i) {
        std::vector<std::string> findings;
        try {
            findings = PlaySession(plan, plan.sessions[i], world, tally);
        } catch (const Finding& finding) {
            findings.emplace_back(finding.what());
        }
        control_->armed = 0;
        std::string all;
        for (const std::string& finding : findings)
            all += "session " + std::to_string(i + 1) + ": " + finding + "\n";
        if (!all.empty())
            return all + ReadFile(folder_ + "/log");
    }
    return {};
}

std::unique_ptr<Actor> Stage::Start(const Session& session, const World& world) const {
    Place place{VariablesFor(folder_ + "/home"), folder_ + "/log", world.Folder()};
    place.variables["LD_PRELOAD"] = OMBRIVEL_FAULTS_LIBRARY;
    place.variables[kControlVariable] = folder_ + "/faults";
    if (!session.wholeProgram)
        return StartEngine(place, session.preferences);
    place.variables["DBUS_SESSION_BUS_ADDRESS"] = bus_->address;
    WriteFile(folder_ + "/home/config/" + kPreferencesName, PreferencesBytes(session.preferences));
    return StartProgram(place);
}

std::vector<std::string> Stage::PlaySession(const Plan& plan, const Session& session, World& world, Tally& tally) {
    const std::vector<std::string> trashes{folder_ + "/home/data/Trash",
                                           Torture::Grounds::TrashOn(fs::path(world.Folder()).parent_path())};
    for (const std::string& trash : trashes)
        fs::remove_all(trash);
    fs::remove(folder_ + "/home/asked");
    world.BeginSession(session);
    const std::unique_ptr<Actor> actor = Start(session, world);
    Arm(*control_, session, plan.seed, world.Folder());
    std::set<std::pair<std::string, uint32_t>> cuts;
    std::set<std::string> glued;
    bool isOver = false;
    for (const Step& step : session.steps) {
        const std::string source = world.SourceOf(step), part = world.PartOf(step);
        isOver = step.verb == Verb::Quit || step.verb == Verb::Kill;
        if (step.verb == Verb::Cut && !source.empty()) {
            cuts.emplace(fs::path(source).filename(), step.amount);
            actor->Cut(source, step.amount);
        } else if (step.verb == Verb::Glue && !part.empty()) {
            glued.insert(fs::path(part).stem());
            actor->Glue(part);
        } else if (step.verb == Verb::Stop) {
            actor->Stop(step.which);
        } else if (step.verb == Verb::Quit) {
            actor->Quit();
        } else if (step.verb == Verb::Kill) {
            actor->Kill();
        } else {
            world.Do(step);
        }
        if (isOver)
            break;
    }
    const bool mayBeFull = plan.ground == Torture::Grounds::kSmall;
    const auto mayStand = [&] {
        return mayBeFull || world.IsShaken() ||
               HasFailed(*control_, {Call::Open, Call::Read, Call::Write, Call::Rename, Call::Stat});
    };
    if (!isOver) {
        if (session.completes)
            world.FinishAllDownloads();
        actor->Settle(world.HasDownloads() || world.HasGivenUp(), mayStand);
    }
    control_->armed = 0;
    Facts facts = actor->Seen();
    facts.cuts = cuts;
    facts.trashesParts = session.preferences.find('t') != std::string::npos;
    const bool isCalm = !facts.brokenOff && !mayStand();
    if (!facts.seesRows && isCalm && glued.size() == 1) // of several, one may keep another from being glued
        facts.glued = glued;
    const bool isServed = plan.ground == Torture::Grounds::kServed;
    facts.lostBytes = mayBeFull || (isServed && world.IsShaken()) ||
                      HasFailed(*control_, {Call::Open, Call::Read, Call::Write, Call::Stat});
    facts.asked = ReadFile(folder_ + "/home/asked");
    facts.trashes = trashes;
    Count(session, facts, tally);
    return Judge(world, facts);
}

void Stage::Count(const Session& session, const Facts& facts, Tally& tally) const {
    ++tally.sessions;
    tally.programs += session.wholeProgram ? 1 : 0;
    tally.operations += facts.rows.size();
    for (const Step& step : session.steps)
        tally.kills += step.verb == Verb::Kill ? 1 : 0;
    for (std::size_t call = 0; call < kCalls; ++call)
        for (const Severity severity : {Hard, Soft})
            tally.faults[call][severity] += control_->hits[call][severity];
}

} // namespace Torture
