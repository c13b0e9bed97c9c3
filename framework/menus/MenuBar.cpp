#include "framework/menus/MenuBar.h"

Ref<MenuItem> MenuBar::Find(const std::string& name) const {
    for (const Ref<MenuItem>& menu : menus_) {
        const Ref<MenuItem> found = menu->Find(name);
        if (!found.IsNil())
            return found;
    }
    return nullptr;
}

void MenuBar::UpdateEnabled() const {
    for (const Ref<MenuItem>& menu : menus_)
        menu->UpdateEnabled();
}
