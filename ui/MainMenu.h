#pragma once

#include "framework/windows/MenuBar.h"

// The program's menu bar. It is built once, before any window, with texts that Multilingual::LocalizeMenu replaces;
// what an item does is bound by its name, on the application and on each window. Main thread.
class MainMenu : public MenuBar {
public:
    static Ref<MainMenu> Instance();

    MainMenu();

private:
    void Untitled0(); // File
    void Untitled1(); // Edit
    void Untitled2(); // Help
};

// The items by name, looked up in the application's menu bar. Separators have none.
Ref<MenuItem> FileMenu();
Ref<MenuItem> FileCloseWindow();
Ref<MenuItem> FileGlueFiles();
Ref<MenuItem> FileCutFile();
Ref<QuitMenuItem> FileQuit();
Ref<MenuItem> EditMenu();
Ref<MenuItem> EditCut();
Ref<MenuItem> EditCopy();
Ref<MenuItem> EditPaste();
Ref<MenuItem> EditClear();
Ref<MenuItem> EditSelectAll();
Ref<PrefsMenuItem> EditPreferences();
Ref<MenuItem> Help();
Ref<MenuItem> HelpHelp();
Ref<MenuItem> HelpSearchForUpdates();
Ref<AppleMenuItem> HelpAbout();
