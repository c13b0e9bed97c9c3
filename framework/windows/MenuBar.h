#pragma once

#include "framework/windows/MenuItem.h"

// The top-level menus of the program. The bar shows in the window whose layout holds it; its shortcuts work in every
// window. Main thread.
class MenuBar : public Object {
public:
    void Append(const Ref<MenuItem>& menu);
    const std::vector<Ref<MenuItem>>& Menus() const { return menus_; }
    // The item of that name anywhere in the bar, or nil.
    Ref<MenuItem> Find(const std::string& name) const;

    // For the framework: enables every item by what can be reached now.
    void UpdateEnabled() const;
    // For the framework: shows the titles. The first letter of each that is still free opens the menu together with
    // Alt.
    void UpdateTitles() const;

private:
    std::vector<Ref<MenuItem>> menus_;
};
