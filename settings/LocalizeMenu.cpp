#include "settings/Multilingual.h"
#include "ui/MainMenu.h"

// A key that the language lacks leaves its item without a text. Separators and shortcuts stay.
void Multilingual::LocalizeMenu() {
    HelpAbout()->SetText(GetString("MenuAppAbout")); // the items of the application menu have keys of their own
    FileMenu()->SetText(GetString("MenuFile"));
    FileCloseWindow()->SetText(GetString("MenuFileCloseWindow"));
    FileGlueFiles()->SetText(GetString("MenuFileGlueFiles"));
    FileCutFile()->SetText(GetString("MenuFileCutFile"));
    FileQuit()->SetText(GetString("MenuFileQuit"));
    EditMenu()->SetText(GetString("MenuEdit"));
    EditCut()->SetText(GetString("MenuEditCut"));
    EditCopy()->SetText(GetString("MenuEditCopy"));
    EditPaste()->SetText(GetString("MenuEditPaste"));
    EditClear()->SetText(GetString("MenuEditDelete"));
    EditSelectAll()->SetText(GetString("MenuEditSelectAll"));
    EditPreferences()->SetText(GetString("MenuAppPreferences"));
    Help()->SetText(GetString("MenuHelp"));
    HelpHelp()->SetText(GetString("MenuHelpPelorineHelp")); // the odd key is what the language files spell
    HelpSearchForUpdates()->SetText(GetString("MenuHelpSearchForUpdates"));
}
