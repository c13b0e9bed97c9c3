#include "framework/windows/MenuBar.h"

#include "framework/windows/Native.h"
#include "framework/windows/NativeMenu.h"

namespace {

// A letter with a key of its own: not of a script that is typed by way of others, as its signs have no case, and
// without an accent, for which many keyboards have no key.
bool IsOnAKey(QChar letter) {
    return letter.toUpper() != letter.toLower() && letter.decomposition().isEmpty();
}

QString WithMnemonic(QString caption, QString& taken) {
    for (qsizetype i = 0; i < caption.size(); ++i) {
        const QChar letter = caption[i].toUpper();
        if (IsOnAKey(letter) && !taken.contains(letter)) {
            taken += letter;
            return caption.insert(i, QLatin1Char('&'));
        }
    }
    return caption;
}

} // namespace

void MenuBar::Append(const Ref<MenuItem>& menu) {
    menus_.push_back(menu);
    menu->bar_ = this;
    UpdateTitles();
}

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

void MenuBar::UpdateTitles() const {
    QString taken;
    for (const Ref<MenuItem>& menu : menus_) {
        if (menu->Native().menu)
            menu->Native().menu->setTitle(WithMnemonic(ToCaption(menu->Text()), taken));
    }
}
