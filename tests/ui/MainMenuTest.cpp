#include "ui/MainMenu.h"

#include "framework/files/SpecialFolder.h"
#include "framework/menus/NativeMenu.h"
#include "settings/Multilingual.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

namespace {

// Four of the texts have keys that do not follow their items.
TEST(MainMenu, HasItsTextsInItsOrderAndEmptyOnesWhereTheLanguageLacksThem) {
    std::string told;
    for (const Ref<MenuItem>& menu : MainMenu::Instance()->Menus()) {
        told += menu->Text() + ":";
        for (const Ref<MenuItem>& item : menu->Items())
            told += " " + item->Text() + " [" + item->KeyboardShortcut() + "]";
        told += "\n";
    }
    EXPECT_EQ(told,
              R"(File: Close Window [Cmd+W] - [] Glue Files… [Cmd+O] Cut File… [Cmd+Shift+O] - [] Quit Ombrivel [Cmd+Q]
Edit: Cut [Cmd+X] Copy [Cmd+C] Paste [Cmd+V] Delete [] - [] Select All [Cmd+A] - [] Preferences… []
Help: Ombrivel Help [Cmd+?] Check for Updates… [] - [] About Ombrivel [] - []
)");
    const Ref<FolderItem> languages = SpecialFolder::Resources()->Child("Multilingual");
    const std::pair<const char*, const char*> mnemonics[] = {{"English", "&File &Edit &Help "},
                                                             {"French", "&Fichier É&dition &Aide "},
                                                             {"Polish", "&Plik &Edycja P&omoc "},
                                                             {"Russian", "&Файл &Правка &Справка "},
                                                             {"Japanese", "ファイル 編集 ヘルプ "}};
    for (const auto& [language, expected] : mnemonics) {
        Multilingual::Initialize(languages, language);
        std::string titles;
        for (const Ref<MenuItem>& menu : MainMenu::Instance()->Menus())
            titles += menu->ForFramework().menu->title().toStdString() + " ";
        EXPECT_EQ(titles, expected);
    }
    const TestFolder folder;
    folder.Write("strings.txt", "MenuFile: File\n");
    Multilingual::LoadLanguageFile(folder.Item("strings.txt"));
    Multilingual::LocalizeMenu();
    EXPECT_EQ(FileMenu()->Text() + EditCut()->Text(), "File");
}

} // namespace
