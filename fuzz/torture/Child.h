#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace Torture {

using Words = std::vector<std::string>;
using Variables = std::map<std::string, std::string>;

// A sanitizer slows all that is under torture.
#ifdef OMBRIVEL_SLOWED
constexpr int kSlowness = 6;
#else
constexpr int kSlowness = 1;
#endif
constexpr std::chrono::seconds kPatience{20 * kSlowness};

// A process with lines to it and from it. Killed with this object.
class Child {
public:
    // Its standard error is added to the log.
    Child(const Words& command, const Variables& variables, const std::string& log);
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    pid_t Id() const { return id_; }
    void Signal(int signal);
    void Tell(const std::string& line);
    // The next line, parted at its tabs. None at the end of the process, or when it takes too long.
    std::optional<Words> Hear();
    // 128 and the number of a signal; nothing if it does not end in time.
    std::optional<int> End(std::chrono::milliseconds limit = kPatience);

private:
    pid_t id_ = -1;
    int toIt_ = -1, fromIt_ = -1;
    std::string heard_;
    std::optional<int> code_;
};

} // namespace Torture
