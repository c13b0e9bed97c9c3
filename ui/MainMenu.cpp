#include "ui/MainMenu.h"

#include "framework/app/Application.h"

namespace {

void AddSeparator(const Ref<MenuItem>& menu, const std::string& name) {
    menu->Append(New<MenuItem>(name, "-"));
}

} // namespace

Ref<MainMenu> MainMenu::Instance() {
    static const Ref<MainMenu> instance = New<MainMenu>();
    return instance;
}

MainMenu::MainMenu() {
    AddFileMenu();
    AddEditMenu();
    AddHelpMenu();
}

void MainMenu::AddFileMenu() {
    const auto menu = New<MenuItem>("FileMenu", "");
    menu->Append(New<MenuItem>("FileCloseWindow", "Close Window", "Cmd+W"));
    AddSeparator(menu, "UntitledSeparator4");
    menu->Append(New<MenuItem>("FileGlueFiles", "Glue Files...", "Cmd+O"));
    menu->Append(New<MenuItem>("FileCutFile", "Cut Files Up...", "Cmd+Shift+O"));
    AddSeparator(menu, "UntitledSeparator2");
    menu->Append(New<QuitMenuItem>("FileQuit", "Beenden", "Cmd+Q"));
    Append(menu);
}

void MainMenu::AddEditMenu() {
    const auto menu = New<MenuItem>("EditMenu", "");
    menu->Append(New<MenuItem>("EditCut", "Ausschneiden", "Cmd+X"));
    menu->Append(New<MenuItem>("EditCopy", "Kopieren", "Cmd+C"));
    menu->Append(New<MenuItem>("EditPaste", "Einfügen", "Cmd+V"));
    menu->Append(New<MenuItem>("EditClear", "Löschen"));
    AddSeparator(menu, "UntitledSeparator");
    menu->Append(New<MenuItem>("EditSelectAll", "Alles auswählen", "Cmd+A"));
    AddSeparator(menu, "UntitledSeparator1");
    menu->Append(New<PrefsMenuItem>("EditPreferences", "Einstellungen"));
    Append(menu);
}

void MainMenu::AddHelpMenu() {
    const auto menu = New<MenuItem>("Help", "");
    menu->Append(New<MenuItem>("HelpHelp", "Ombrivel Hilfe", "Cmd+?"));
    menu->Append(New<MenuItem>("HelpSearchForUpdates", "Check For Updates"));
    AddSeparator(menu, "UntitledSeparator0");
    menu->Append(New<AppleMenuItem>("HelpAbout", "Über Ombrivel"));
    menu->Append(New<AppleMenuItem>("UntitledSeparator5", "-")); // goes along with the item before it
    Append(menu);
}

Ref<MenuItem> FileMenu() {
    return Application::MenuBar()->Find("FileMenu");
}

Ref<MenuItem> FileCloseWindow() {
    return Application::MenuBar()->Find("FileCloseWindow");
}

Ref<MenuItem> FileGlueFiles() {
    return Application::MenuBar()->Find("FileGlueFiles");
}

Ref<MenuItem> FileCutFile() {
    return Application::MenuBar()->Find("FileCutFile");
}

Ref<MenuItem> FileQuit() {
    return Application::MenuBar()->Find("FileQuit");
}

Ref<MenuItem> EditMenu() {
    return Application::MenuBar()->Find("EditMenu");
}

Ref<MenuItem> EditCut() {
    return Application::MenuBar()->Find("EditCut");
}

Ref<MenuItem> EditCopy() {
    return Application::MenuBar()->Find("EditCopy");
}

Ref<MenuItem> EditPaste() {
    return Application::MenuBar()->Find("EditPaste");
}

Ref<MenuItem> EditClear() {
    return Application::MenuBar()->Find("EditClear");
}

Ref<MenuItem> EditSelectAll() {
    return Application::MenuBar()->Find("EditSelectAll");
}

Ref<MenuItem> EditPreferences() {
    return Application::MenuBar()->Find("EditPreferences");
}

Ref<MenuItem> Help() {
    return Application::MenuBar()->Find("Help");
}

Ref<MenuItem> HelpHelp() {
    return Application::MenuBar()->Find("HelpHelp");
}

Ref<MenuItem> HelpSearchForUpdates() {
    return Application::MenuBar()->Find("HelpSearchForUpdates");
}

Ref<MenuItem> HelpAbout() {
    return Application::MenuBar()->Find("HelpAbout");
}
