#include "ui/MainMenu.h"

#include "framework/files/FolderItem.h"
#include "framework/files/SpecialFolder.h"
#include "settings/Multilingual.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

namespace {

// Name, shortcut and text of each item, an indented line each. Separators have a dash.
std::string Told(const std::vector<Ref<MenuItem>>& items, const std::string& indent = "") {
    std::string told;
    for (const Ref<MenuItem>& item : items) {
        told += indent + item->Name() + " [" + item->KeyboardShortcut() + "] " + item->Text() + "\n";
        told += Told(item->Items(), indent + "  ");
    }
    return told;
}

TEST(MainMenu, HasItsTreeBeforeAnyLanguageIsThere) {
    EXPECT_EQ(Told(New<MainMenu>()->Menus()), R"(FileMenu [] 
  FileCloseWindow [Cmd+W] Close Window
  UntitledSeparator4 [] -
  FileGlueFiles [Cmd+O] Glue Files...
  FileCutFile [Cmd+Shift+O] Cut Files Up...
  UntitledSeparator2 [] -
  FileQuit [Cmd+Q] Beenden
EditMenu [] 
  EditCut [Cmd+X] Ausschneiden
  EditCopy [Cmd+C] Kopieren
  EditPaste [Cmd+V] Einfügen
  EditClear [] Löschen
  UntitledSeparator [] -
  EditSelectAll [Cmd+A] Alles auswählen
  UntitledSeparator1 [] -
  EditPreferences [] Einstellungen
Help [] 
  HelpHelp [Cmd+?] Ombrivel Hilfe
  HelpSearchForUpdates [] Check For Updates
  UntitledSeparator0 [] -
  HelpAbout [] Über Ombrivel
  UntitledSeparator5 [] -
)");
}

// Four of the keys do not follow their items. A text that the language lacks is empty, not what stood there before.
TEST(MainMenu, TakesItsTextsFromTheKeysOfItsItems) {
    const std::pair<Ref<MenuItem>, std::string> items[] = {{FileMenu(), "MenuFile"},
                                                           {FileCloseWindow(), "MenuFileCloseWindow"},
                                                           {FileGlueFiles(), "MenuFileGlueFiles"},
                                                           {FileCutFile(), "MenuFileCutFile"},
                                                           {FileQuit(), "MenuFileQuit"},
                                                           {EditMenu(), "MenuEdit"},
                                                           {EditCut(), "MenuEditCut"},
                                                           {EditCopy(), "MenuEditCopy"},
                                                           {EditPaste(), "MenuEditPaste"},
                                                           {EditClear(), "MenuEditDelete"},
                                                           {EditSelectAll(), "MenuEditSelectAll"},
                                                           {EditPreferences(), "MenuAppPreferences"},
                                                           {Help(), "MenuHelp"},
                                                           {HelpHelp(), "MenuHelpPelorineHelp"},
                                                           {HelpSearchForUpdates(), "MenuHelpSearchForUpdates"},
                                                           {HelpAbout(), "MenuAppAbout"}};
    const TestFolder folder;
    std::string texts;
    for (const auto& [item, key] : items) {
        if (key != "MenuEditCut")
            texts.append(key).append(": text of ").append(key).append("\n");
    }
    folder.Write("strings.txt", texts);
    Multilingual::LoadLanguageFile(folder.Item("strings.txt"));
    Multilingual::LocalizeMenu();
    for (const auto& [item, key] : items)
        EXPECT_EQ(item->Text(), key == "MenuEditCut" ? "" : "text of " + key);
    Multilingual::Initialize(SpecialFolder::Resources()->Child("Multilingual"), "English");
}

} // namespace
