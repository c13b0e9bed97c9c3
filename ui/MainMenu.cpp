#include "ui/MainMenu.h"

#include "framework/app/Application.h"
#include "framework/base/Immortal.h"

namespace {

void AddSeparator(const Ref<MenuItem>& menu, const std::string& name) {
    menu->Append(New<MenuItem>(name, "-"));
}

// Nil if the bar in use has no item of that name and kind.
template <class Kind>
Ref<Kind> Item(const std::string& name) {
    return Ref<Kind>(std::dynamic_pointer_cast<Kind>(Application::MenuBar()->Find(name).Shared()));
}

} // namespace

Ref<MainMenu> MainMenu::Instance() {
    static const Immortal<Ref<MainMenu>> instance(New<MainMenu>());
    return *instance;
}

MainMenu::MainMenu() {
    Untitled0();
    Untitled1();
    Untitled2();
}

void MainMenu::Untitled0() {
    const auto menu = New<MenuItem>("FileMenu", "");
    menu->Append(New<MenuItem>("FileCloseWindow", "Close Window", "Cmd+W"));
    AddSeparator(menu, "UntitledSeparator4");
    menu->Append(New<MenuItem>("FileGlueFiles", "Glue Files...", "Cmd+O"));
    menu->Append(New<MenuItem>("FileCutFile", "Cut Files Up...", "Cmd+Shift+O"));
    AddSeparator(menu, "UntitledSeparator2");
    menu->Append(New<QuitMenuItem>("FileQuit", "Beenden", "Cmd+Q"));
    Append(menu);
}

void MainMenu::Untitled1() {
    const auto menu = New<MenuItem>("EditMenu", "");
    menu->Append(New<MenuItem>("EditCut", "Ausschneiden", "Cmd+X", MenuItem::Role::Cut));
    menu->Append(New<MenuItem>("EditCopy", "Kopieren", "Cmd+C", MenuItem::Role::Copy));
    menu->Append(New<MenuItem>("EditPaste", "Einfügen", "Cmd+V", MenuItem::Role::Paste));
    menu->Append(New<MenuItem>("EditClear", "Löschen", "", MenuItem::Role::Clear));
    AddSeparator(menu, "UntitledSeparator");
    menu->Append(New<MenuItem>("EditSelectAll", "Alles auswählen", "Cmd+A", MenuItem::Role::SelectAll));
    AddSeparator(menu, "UntitledSeparator1");
    menu->Append(New<PrefsMenuItem>("EditPreferences", "Einstellungen"));
    Append(menu);
}

void MainMenu::Untitled2() {
    const auto menu = New<MenuItem>("Help", "");
    menu->Append(New<MenuItem>("HelpHelp", "Ombrivel Hilfe", "Cmd+?"));
    menu->Append(New<MenuItem>("HelpSearchForUpdates", "Check For Updates"));
    AddSeparator(menu, "UntitledSeparator0");
    menu->Append(New<AppleMenuItem>("HelpAbout", "Über Ombrivel"));
    menu->Append(New<AppleMenuItem>("UntitledSeparator5", "-")); // goes along with the item before it
    Append(menu);
}

Ref<MenuItem> FileMenu() {
    return Item<MenuItem>("FileMenu");
}

Ref<MenuItem> FileCloseWindow() {
    return Item<MenuItem>("FileCloseWindow");
}

Ref<MenuItem> FileGlueFiles() {
    return Item<MenuItem>("FileGlueFiles");
}

Ref<MenuItem> FileCutFile() {
    return Item<MenuItem>("FileCutFile");
}

Ref<QuitMenuItem> FileQuit() {
    return Item<QuitMenuItem>("FileQuit");
}

Ref<MenuItem> EditMenu() {
    return Item<MenuItem>("EditMenu");
}

Ref<MenuItem> EditCut() {
    return Item<MenuItem>("EditCut");
}

Ref<MenuItem> EditCopy() {
    return Item<MenuItem>("EditCopy");
}

Ref<MenuItem> EditPaste() {
    return Item<MenuItem>("EditPaste");
}

Ref<MenuItem> EditClear() {
    return Item<MenuItem>("EditClear");
}

Ref<MenuItem> EditSelectAll() {
    return Item<MenuItem>("EditSelectAll");
}

Ref<PrefsMenuItem> EditPreferences() {
    return Item<PrefsMenuItem>("EditPreferences");
}

Ref<MenuItem> Help() {
    return Item<MenuItem>("Help");
}

Ref<MenuItem> HelpHelp() {
    return Item<MenuItem>("HelpHelp");
}

Ref<MenuItem> HelpSearchForUpdates() {
    return Item<MenuItem>("HelpSearchForUpdates");
}

Ref<AppleMenuItem> HelpAbout() {
    return Item<AppleMenuItem>("HelpAbout");
}
