#include "ui/MainMenu.h"

#include "settings/Multilingual.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

namespace {

// Shortcut and text of each item, an indented line each. Separators have a dash.
std::string Told(const std::vector<Ref<MenuItem>>& items, const std::string& indent = "") {
    std::string told;
    for (const Ref<MenuItem>& item : items) {
        told += indent + item->Text() + " [" + item->KeyboardShortcut() + "]\n";
        told += Told(item->Items(), indent + "  ");
    }
    return told;
}

// Four of the texts have keys that do not follow their items.
TEST(MainMenu, HasItsTextsInItsOrderAndEmptyOnesWhereTheLanguageLacksThem) {
    EXPECT_EQ(Told(MainMenu::Instance()->Menus()), R"(File []
  Close Window [Cmd+W]
  - []
  Glue Files… [Cmd+O]
  Cut File… [Cmd+Shift+O]
  - []
  Quit Ombrivel [Cmd+Q]
Edit []
  Cut [Cmd+X]
  Copy [Cmd+C]
  Paste [Cmd+V]
  Delete []
  - []
  Select All [Cmd+A]
  - []
  Preferences… []
Help []
  Ombrivel Help [Cmd+?]
  Check for Updates… []
  - []
  About Ombrivel []
  - []
)");
    const TestFolder folder;
    folder.Write("strings.txt", "MenuFile: File\n");
    Multilingual::LoadLanguageFile(folder.Item("strings.txt"));
    Multilingual::LocalizeMenu();
    EXPECT_EQ(FileMenu()->Text() + EditCut()->Text(), "File");
}

} // namespace
