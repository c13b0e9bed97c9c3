#pragma once

#include "framework/base/Ref.h"

#include <memory>
#include <string>
#include <vector>

class MenuBar;
struct NativeMenuItem; // Qt's side, known to the framework's sources only

// A menu or a command in a menu. What a command does is bound by its name: it is enabled while the window in front, or
// the application, holds a handler of that name. Main thread.
class MenuItem : public Object {
public:
    // What the framework itself does with an item. A platform with an application menu places the last three there; the
    // others but Plain act on the focused text field, and Quit ends the program.
    enum class Role { Plain, Cut, Copy, Paste, Clear, SelectAll, Quit, Preferences, About };

    // A text of "-" makes a separator.
    MenuItem(std::string name, const std::string& text, const std::string& keyboardShortcut = "",
             Role role = Role::Plain);
    ~MenuItem() override;

    const std::string& Name() const { return name_; }
    const std::string& Text() const { return text_; }
    void SetText(const std::string& text);
    // As "Cmd+Shift+O", where Cmd is the platform's command key; empty for none.
    const std::string& KeyboardShortcut() const { return keyboardShortcut_; }
    bool IsSeparator() const;
    void SetVisible(bool visible);
    // As of the last look at the window in front.
    bool Enabled() const;

    void Append(const Ref<MenuItem>& item);
    const std::vector<Ref<MenuItem>>& Items() const { return items_; }
    // The item of that name here or below, or nil.
    Ref<MenuItem> Find(const std::string& name);

    // For the framework's sources.
    bool Is(Role role) const { return role_ == role; }
    NativeMenuItem& Native() const { return *native_; }
    // Enables the item and those below by what can be reached now.
    void UpdateEnabled();

private:
    friend class MenuBar;
    std::string name_;
    std::string text_;
    std::string keyboardShortcut_;
    Role role_;
    std::vector<Ref<MenuItem>> items_;
    std::unique_ptr<NativeMenuItem> native_;
    MenuBar* bar_ = nullptr; // that shows it as one of its menus, and outlives it
};

// Items that a platform with an application menu places there; elsewhere they stand where the tree has them.
class QuitMenuItem : public MenuItem {
public:
    QuitMenuItem(const std::string& name, const std::string& text, const std::string& keyboardShortcut)
        : MenuItem(name, text, keyboardShortcut, Role::Quit) {}
};

class PrefsMenuItem : public MenuItem {
public:
    PrefsMenuItem(const std::string& name, const std::string& text) : MenuItem(name, text, "", Role::Preferences) {}
};

class AppleMenuItem : public MenuItem {
public:
    AppleMenuItem(const std::string& name, const std::string& text) : MenuItem(name, text, "", Role::About) {}
};
