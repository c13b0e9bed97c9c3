#pragma once

#include "fuzz/torture/Child.h"
#include "fuzz/torture/Judge.h"

#include <functional>
#include <list>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

namespace Torture {

// What must not be, thrown where it shows.
struct Finding : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The program as those of its users meet it who can't see it. Made by a start.
class Actor {
public:
    virtual ~Actor() = default;
    Actor() = default;
    Actor(const Actor&) = delete;
    Actor& operator=(const Actor&) = delete;

    virtual void Cut(const std::string& path, uint32_t partSize) = 0;
    virtual void Glue(const std::string& path) = 0;
    virtual void Stop(uint32_t row) = 0;
    virtual void Quit() = 0;
    virtual void Kill() = 0;
    // Waits until all that runs has come to its end. What waits for a download is stopped if that is not to come.
    // `mayStand`: workers may have met what ends them, and leave their rows.
    virtual void Settle(bool stopsWaiting, const std::function<bool()>& mayStand) = 0;
    // What it had to do with so far.
    virtual Facts Seen() const = 0;
};

struct Place {
    Variables variables; // of every process
    std::string log;     // what processes complain of
    std::string folder;  // of the history
};

std::unique_ptr<Actor> StartEngine(const Place& place, const std::string& preferences);
std::unique_ptr<Actor> StartProgram(const Place& place);

} // namespace Torture
