#pragma once

#include <functional>
#include <map>
#include <string>

// What one window, or the application, does on menu commands, by item name. A handler returns true for a command that
// it has taken as handled. Main thread.
class MenuHandlers {
public:
    using Handler = std::function<bool()>;

    void Add(const std::string& itemName, Handler handler) { handlers_[itemName] = std::move(handler); }
    // The same for a method of an object, which must live as long as this does.
    template <class Owner>
    void Add(const std::string& itemName, Owner* owner, bool (Owner::*action)()) {
        Add(itemName, [owner, action] { return (owner->*action)(); });
    }
    bool Has(const std::string& itemName) const { return handlers_.count(itemName) > 0; }
    // Runs the handler of that name; false if there is none, or if it did not take the command.
    bool Run(const std::string& itemName) const {
        const auto found = handlers_.find(itemName);
        return found != handlers_.end() && Handler(found->second)();
    }

private:
    std::map<std::string, Handler> handlers_;
};
