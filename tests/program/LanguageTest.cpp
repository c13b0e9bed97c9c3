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
        EXPECT_TRUE(IsChooser(program.OnlyWindow())); // what the user does from now on counts when it has its rows
        return program;
    }

    bool IsChooser(const WindowId& window) const { return desktop.SizeOf(window).width == 399; }

    void AwaitMainWindow(Program& program) {
        Await("the main window", [&] { return !IsChooser(program.OnlyWindow()); });
    }

    void ExpectSavedLanguage(Program& program, const std::string& language) {
        desktop.Press({"ctrl+q"});
        EXPECT_EQ(program.End(), 0);
        EXPECT_EQ(ReadFile(PreferencesFile()), PreferencesBytes({.SearchForUpdates = false}, language));
    }
};

} // namespace

TEST_F(Languages, ARegionalFormFallsBackToItsLanguageAndTheFirstWantedOneCounts) {
    Program& program = StartIn("fi:de_AT:fr");
    AwaitMainWindow(program);
    ExpectSavedLanguage(program, "German");
}

TEST_F(Languages, OneIsChosenByKeysAndAFileWaitsForItsTurn) {
    WriteFile(File("film.mov"), Pattern(1000));
    Program& program = StartToTheChooser({"film.mov"});
    desktop.Press({"Down", "Down", "Up", "Return"}); // from Deutsch to English
    program.Run().Await("the cut dialog", [&] { return desktop.WindowsOf(program.Run()).size() == 2; });
    program.Answer({"Escape"});
    ExpectSavedLanguage(program, "English");
}

TEST_F(Languages, OneIsChosenByADoubleClick) {
    Program& program = StartToTheChooser();
    const WindowId chooser = program.OnlyWindow();
    desktop.ClickAt(chooser, 60, 75); // the first row, below the heading
    desktop.ClickAt(chooser, 60, 75);
    AwaitMainWindow(program);
    ExpectSavedLanguage(program, "German");
}

TEST_F(Languages, LeavingTheChooserEndsTheProgramAndTouchesNoPreferences) {
    const std::string before = ReadFile(PreferencesFile());
    for (const char* const key : {"Escape", "alt+F4"}) {
        Program& program = StartToTheChooser();
        desktop.Press({key});
        EXPECT_EQ(program.End(), 0) << key;
        EXPECT_EQ(ReadFile(PreferencesFile()), before) << key;
    }
}

namespace {

// The program in a tree of its own, with what is wrong in its language folders.
class BrokenLanguages : public Languages {
protected:
    // A tree with the real resources, and no folder of the languages.
    BrokenLanguages() {
        const fs::path program = executable;
        const fs::path resources = program.parent_path().parent_path() / "Resources";
        executable = Folder("bin") / program.filename();
        fs::create_hard_link(program, executable); // the program finds its tree by its own true path
        for (const fs::directory_entry& entry : fs::directory_iterator(resources)) {
            if (entry.path().filename() != "Multilingual")
                fs::create_symlink(entry.path(), Folder("Resources") / entry.path().filename());
        }
    }

    fs::path Folder(const fs::path& name) const {
        fs::create_directories(File(name));
        return File(name);
    }

    void ExpectNoStart(const std::string& languages, const std::string& reason) {
        Program& program = StartIn(languages);
        EXPECT_EQ(program.End(), 1);
        EXPECT_EQ(program.Run().Errors(), "ombrivel: the program could not start: " + reason + "\n");
    }

    const std::string multilingual = File("Resources/Multilingual");
};

} // namespace

TEST_F(BrokenLanguages, EndTheStartWithALineThatTellsWhatIsMissing) {
    const std::string noLanguage = "no language in " + multilingual;
    const std::string noTexts = "can't open " + multilingual + "/English/strings.txt";
    ExpectNoStart("en", noLanguage);
    WriteFile(multilingual, "not a folder");
    ExpectNoStart("fi", noLanguage);
    fs::remove(multilingual);
    Folder(multilingual);
    ExpectNoStart("en", noLanguage);
    WriteFile(multilingual + "/English", "not a folder either");
    ExpectNoStart("en", noTexts);
    ExpectNoStart("fi", noLanguage);
    fs::remove(multilingual + "/English");
    Folder(multilingual + "/English");
    ExpectNoStart("en", noTexts);
    ExpectNoStart("fi", noTexts);
}

// The files are read one after the other, so the key comes in between.
TEST_F(BrokenLanguages, AKeyPressedWhileTheChooserReadsHugeFilesOfGarbageCountsInTheEnd) {
    WriteFile(Folder("garbage") / "strings.txt", "ChooseString: Language\n" + Pattern(50'000'000));
    for (const char* const name : {"/One", "/Two", "/Three"})
        fs::create_directory_symlink(File("garbage"), Folder(multilingual).string() + name);
    Program& program = StartIn("fi");
    EXPECT_TRUE(IsChooser(program.OnlyWindow()));
    desktop.Press({"Return"});
    AwaitMainWindow(program);
    desktop.Press({"ctrl+q"});
    EXPECT_EQ(program.End(), 0);
    EXPECT_EQ(program.Run().Errors(), "");
}

using Menus = WholeProgramTest;

TEST_F(Menus, CommandsGoToTheWindowInFront) {
    Program& program = Start({});
    const WindowId main = program.OnlyWindow();
    desktop.Press({"F10", "Right", "Up", "Return"}); // the last item of the second menu: the preferences
    const WindowId preferences = program.Dialog();

    desktop.Press({"space"});        // the first box
    desktop.Press({"ctrl+shift+o"}); // nothing to cut from here
    desktop.Press({"ctrl+w"});       // closes what is in front
    EXPECT_EQ(program.OnlyWindow(), main);
    desktop.Press({"ctrl+shift+o"});
    const WindowId open = program.Dialog();
    EXPECT_NE(open, preferences);
    desktop.Press({"Escape"});
    program.OnlyWindow();
    desktop.Press({"ctrl+w"});
    EXPECT_EQ(program.End(), 0);
    EXPECT_EQ(ReadFile(PreferencesFile()),
              PreferencesBytes({.MovePartsToTrash = false, .SearchForUpdates = false}, "English"));
}

TEST_F(Menus, EscapeGivesTheFocusBackToTheControlThatHadIt) {
    Program& program = Start({});
    program.OnlyWindow();
    desktop.Press(
        {"F10", "Escape", "Tab", "Tab", "F10", "Right", "Escape", "space"}); // from the first tool to the third
    Await("the vendor's site", [&] { return desktop.Opened() == Words{OMBRIVEL_VENDOR_SITE}; });
    EXPECT_EQ(desktop.WindowsOf(program.Run()).size(), 1U);
}

TEST_F(Menus, HelpAndAboutAnswer) {
    Program& program = Start({});
    const WindowId main = program.OnlyWindow();
    desktop.Press({"ctrl+question"});
    program.Answer({"Return"});
    desktop.Press({"F10", "Left", "Up", "Return"}); // the last item of the last menu: about
    program.Dialog();
    desktop.Press({"Tab", "Return"}); // the link
    Await("the vendor's site", [&] { return desktop.Opened() == Words{OMBRIVEL_VENDOR_SITE}; });
    desktop.Press({"ctrl+w"});
    EXPECT_EQ(program.OnlyWindow(), main);
}
