#include "tests/program/WholeProgramTest.h"

namespace {

namespace fs = std::filesystem;

// The program in a language, and the dialog that asks for one where the system's has no folder. Finnish has none.
class Languages : public WholeProgramTest {
protected:
    Program& StartIn(const std::string& languages, const Words& files = {}) {
        environment["LANGUAGE"] = languages;
        return Start(files);
    }

    Program& StartToTheChooser(const Words& files = {}) {
        Program& program = StartIn("fi", files);
        EXPECT_TRUE(IsChooser(program.OnlyWindow())); // what the user does from now on counts
        return program;
    }

    bool IsChooser(WindowId window) const { return desktop.Measure(window, "WIDTH") == 399; }

    void AwaitMainWindow(const Program& program) const {
        Await("the main window", [&] { return !IsChooser(program.OnlyWindow()); });
    }

    void ExpectSavedLanguage(Program& program, const std::string& language) const {
        desktop.Press({"ctrl+q"});
        EXPECT_EQ(program.End(), 0);
        EXPECT_EQ(ReadFile(PreferencesFile()), PreferencesBytes({.SearchForUpdates = false}, language));
    }
};

} // namespace

TEST_F(Languages, TheFirstWantedOneCountsAndARegionalFormFallsBackToItsLanguage) {
    Program& program = StartIn("fi:de_AT:fr");
    AwaitMainWindow(program);
    ExpectSavedLanguage(program, "German");
}

TEST_F(Languages, TheChooserComesAtEveryStartAndIsLeftOrAnsweredByClicksOrByKeys) {
    const std::string before = ReadFile(PreferencesFile());
    for (const char* const key : {"Escape", "alt+F4"}) {
        Program& left = StartToTheChooser();
        desktop.Press({key});
        EXPECT_EQ(left.End(), 0) << key;
        EXPECT_EQ(ReadFile(PreferencesFile()), before) << key;
    }

    Program& clicked = StartToTheChooser();
    const std::string chooser = std::to_string(clicked.OnlyWindow());
    desktop.Do({"mousemove", "--window", chooser, "60", "75", "click", "--repeat", "2", "1"}); // the first row
    AwaitMainWindow(clicked);
    ExpectSavedLanguage(clicked, "German");

    WriteFile(File("film.mov"), Pattern(1000));
    Program& program = StartToTheChooser({"film.mov"}); // which waits for its turn
    desktop.Press({"Down", "Down", "Up", "Return"});    // from Deutsch to English
    Await("the cut dialog",
          [&] { return desktop.WindowsOf(program).size() == 2 && !IsChooser(*desktop.WindowsOf(program).begin()); });
    program.Answer({"Escape"});
    ExpectSavedLanguage(program, "English");
}

namespace {

// The program in a tree of its own, with what is wrong in its language folders.
class BrokenLanguages : public Languages {
protected:
    // A tree with the real resources, and no folder of the languages.
    BrokenLanguages() {
        const fs::path program = executable;
        executable = Folder("bin") / program.filename();
        fs::create_hard_link(program, executable); // the program finds its tree by its own true path
        fs::copy(program.parent_path().parent_path() / "Resources", File("Resources"), fs::copy_options::recursive);
        fs::remove_all(multilingual);
    }

    fs::path Folder(const fs::path& name) const {
        fs::create_directories(File(name));
        return File(name);
    }

    void ExpectNoStart(const std::string& languages, const std::string& reason) {
        Program& program = StartIn(languages);
        program.OnlyWindow(); // tells it to who sees no standard error
        desktop.Press({"Return"});
        EXPECT_EQ(program.End(), 1);
        EXPECT_EQ(program.Errors(), "ombrivel: the program could not start: " + reason + "\n");
    }

    const std::string multilingual = File("Resources/Multilingual");
};

} // namespace

TEST_F(BrokenLanguages, EndTheStartWithALineThatTellsWhatIsMissingAsDoBrokenPreferences) {
    const std::string noLanguage = "no language in " + multilingual;
    const std::string noTexts = "can't open " + multilingual + "/English/strings.txt";
    WriteFile(multilingual, "not a folder");
    ExpectNoStart("fi", noLanguage);
    fs::remove(multilingual);
    ExpectNoStart("en", noLanguage);
    WriteFile(Folder(multilingual) / "English", "not a folder either");
    ExpectNoStart("fi", noLanguage);
    fs::remove(multilingual + "/English");
    Folder(multilingual + "/English");
    ExpectNoStart("en", noTexts);
    ExpectNoStart("fi", noTexts);
    fs::remove(PreferencesFile());
    Folder(PreferencesFile());
    ExpectNoStart("en", "can't open " + PreferencesFile().string());
}

// The files are read one after the other, so the key comes in between.
TEST_F(BrokenLanguages, AKeyPressedWhileTheChooserReadsHugeFilesOfGarbageCountsInTheEnd) {
    WriteFile(Folder("garbage") / "strings.txt", "ChooseString: Language\n" + Pattern(15'000'000));
    for (const char* const name : {"/One", "/Two", "/Three"})
        fs::create_directory_symlink(File("garbage"), Folder(multilingual).string() + name);
    Program& program = StartToTheChooser();
    desktop.Press({"Return"});
    AwaitMainWindow(program);
    desktop.Press({"ctrl+q"});
    EXPECT_EQ(program.End(), 0);
    EXPECT_EQ(program.Errors(), "");
}

using Menus = WholeProgramTest;

TEST_F(Menus, CommandsGoToTheWindowInFront) {
    Program& program = Start({});
    const WindowId main = program.OnlyWindow();
    // From nowhere to the third tool: Escape gives the focus back.
    desktop.Press({"space", "Return"});
    program.OpenMenus({"F10"});
    desktop.Press({"Escape"});
    program.OnlyWindow();
    desktop.Press({"Tab", "Tab", "Tab"});
    program.OpenMenus({"F10", "Right"});
    desktop.Press({"Escape"});
    program.OnlyWindow();
    desktop.Press({"Return"});
    Await("the vendor's site", [&] { return desktop.Opened() == Words{OMBRIVEL_VENDOR_SITE}; });
    program.OpenMenus({"F10", "Left"});
    desktop.Press({"Up", "Return"}); // the last item of the last menu: about
    program.Answer({"ctrl+w"});
    program.OpenMenus({"F10", "Right"});
    desktop.Press({"Up", "Return"}); // the last item of the second menu: the preferences
    const WindowId preferences = program.Dialog();
    desktop.Press({"space"});        // the first box
    desktop.Press({"ctrl+shift+o"}); // nothing to cut from here
    desktop.Press({"ctrl+w"});       // closes what is in front
    EXPECT_EQ(program.OnlyWindow(), main);
    desktop.Press({"ctrl+shift+o"});
    EXPECT_NE(program.Dialog(), preferences);
    program.Answer({"Escape"});
    program.OnlyWindow();
    desktop.Press({"ctrl+w"});
    EXPECT_EQ(program.End(), 0);
    EXPECT_EQ(ReadFile(PreferencesFile()),
              PreferencesBytes({.MovePartsToTrash = false, .SearchForUpdates = false}, "English"));
}
