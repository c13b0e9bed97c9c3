// The part of Multilingual that settles which language folder is used.

#include "core/App.h"
#include "framework/app/Application.h"
#include "framework/desktop/WantedLanguages.h"
#include "framework/files/FolderItem.h"
#include "framework/files/SpecialFolder.h"
#include "framework/threads/Yield.h"
#include "framework/windows/Listbox.h"
#include "settings/Multilingual.h"
#include "settings/claPreferences.h"
#include "settings/winChooseLanguage.h"

#include <array>

namespace {

constexpr const char* kLanguageFile = "strings.txt";

struct FolderOfLanguage {
    const char* code;
    const char* folder;
};

// A regional form that is not listed counts as its language. The first code of a folder is the one that the toolkit
// knows.
constexpr std::array kFolders{
    FolderOfLanguage{"cs", "Czech"},
    FolderOfLanguage{"de", "German"},
    FolderOfLanguage{"el", "Greek"},
    FolderOfLanguage{"en", "English"},
    FolderOfLanguage{kPlainLanguage, "English"},
    FolderOfLanguage{"es", "Spanish"},
    FolderOfLanguage{"fr", "French"},
    FolderOfLanguage{"it", "Italian"},
    FolderOfLanguage{"ja", "Japanese"},
    FolderOfLanguage{"ko", "Korean"},
    FolderOfLanguage{"nl", "Dutch"},
    FolderOfLanguage{"pl", "Polish"},
    FolderOfLanguage{"pt", "Portuguese (Brazil)"},
    FolderOfLanguage{"ru", "Russian"},
    FolderOfLanguage{"sv", "Swedish"},
    FolderOfLanguage{"tr", "Turkish"},
    FolderOfLanguage{"uk", "Ukrainian"},
    FolderOfLanguage{"zh_CN", "Chinese (Simplified)"},
    FolderOfLanguage{"zh_SG", "Chinese (Simplified)"},
};

std::string FolderNameOf(const std::string& language) {
    for (const FolderOfLanguage& entry : kFolders) {
        if (language == entry.code)
            return entry.folder;
    }
    return {};
}

// The code of a folder's language, empty for a folder that is not in the table.
std::string CodeOf(const std::string& folderName) {
    for (const FolderOfLanguage& entry : kFolders) {
        if (folderName == entry.folder)
            return entry.code;
    }
    return {};
}

// One row for each folder. Every language is read in full for the one text that names it; what the user does meanwhile
// counts when the rows are there.
void FillRows(const winChooseLanguage& window, const FolderItem& folder) {
    const NoInput noInput;
    for (int32_t i = 1; i <= folder.Count(); ++i) {
        const Ref<FolderItem> entry = folder.Item(i);
        if (entry->Directory()) {
            const Ref<FolderItem> file = entry->Child(kLanguageFile);
            Multilingual::LoadLanguageFile(file);
            window.lstLanguage()->AddRow(Multilingual::GetString("ChooseString"));
            window.lstLanguage()->SetCellTag(window.lstLanguage()->LastIndex(), 0, file);
        }
        RuntimeBackgroundTask();
    }
    if (window.lstLanguage()->ListCount() == 0) // then the dialog would not have a word on it
        throw NilObjectException("no language in " + folder.AbsolutePath());
    window.lstLanguage()->SortedColumn = 1; // one past the only column, see docs/reading.md
    window.lstLanguage()->Sort();
    window.lstLanguage()->SetListIndex(0);
}

// Asks the user. Gives the folder of the language chosen; a user who chooses none ends the program.
Ref<FolderItem> ChooseLanguage(const FolderItem& folder) {
    const Ref<winChooseLanguage> window = winChooseLanguage::Instance();
    window->Show();
    FillRows(*window, folder);
    Ref<FolderItem> chosen;
    if (window->ShowModal() == window->ActionButton) {
        chosen = window->SelectedFile()->Parent();
        App::Instance()->Preferences->Language = chosen->Name();
    } else {
        Quit(0);
    }
    window->Close();
    return chosen;
}

} // namespace

std::string Multilingual::SystemLanguage() {
    const Ref<FolderItem> folder = SpecialFolder::Resources()->Child("Multilingual");
    for (const std::string& language : WantedLanguages()) {
        const std::string name = FolderNameOf(language);
        if (!name.empty() && folder->Child(name)->Exists())
            return name;
    }
    return {};
}

void Multilingual::SpeakLanguageOf(const FolderItem& languageFolder) {
    Application::SpeakLanguage(CodeOf(languageFolder.Name()));
}

void Multilingual::Initialize(const Ref<FolderItem>& folder, const std::string& language) {
    Ref<FolderItem> languageFolder;
    if (!language.empty())
        languageFolder = folder->Child(language);
    if (languageFolder.IsNil() || !languageFolder->Exists())
        languageFolder = ChooseLanguage(*folder);
    if (!languageFolder.IsNil() && languageFolder->Exists()) {
        LoadLanguageFile(languageFolder->Child(kLanguageFile)); // once more after a choice, which does not matter
        SpeakLanguageOf(*languageFolder);
        LocalizeMenu();
    }
}
