#pragma once

#include "tests/slowfs/SlowFileSystem.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Torture {

// Parts the mounts of this process from those of all others: they go with it, however it ends. To be called before any
// thread runs. False where that takes more rights.
bool KeepMountsToOneself();

// Folders on file systems of several kinds for one history at a time, below one folder. Mounted while this lives.
class Grounds {
public:
    explicit Grounds(const std::string& folder);
    ~Grounds();
    Grounds(const Grounds&) = delete;
    Grounds& operator=(const Grounds&) = delete;

    static constexpr const char* kSmall = "small"; // on which room is scarce
    // By a server, which can't read on what was removed meanwhile. Unmounts itself.
    static constexpr const char* kServed = "served/mounted";

    const std::vector<std::string>& Names() const { return names_; }
    // Emptied for the next history.
    std::string Clear(const std::string& name) const;
    // Takes away from a small one all but so much of its room.
    void Fill(const std::string& name, uint32_t room) const;
    // Where the desktop puts what lies on it.
    static std::string TrashOn(const std::string& top);

private:
    void Mount(const std::string& name, const std::string& command);

    void MountSlow();
    std::string TopOf(const std::string& name) const { return folder_ + "/" + name; }

    std::string folder_;
    std::vector<std::string> names_{"disk"};
    std::unique_ptr<SlowFileSystem> slow_;
};

} // namespace Torture
