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

    bool IsChooser(WindowId window) const {
        return desktop.Do({"getwindowgeometry", std::to_string(window)}).find(" 399x") != std::string::npos;
    }

    void AwaitMainWindow(const Program& program) const {
        Await("the main window", [&] { return !IsChooser(program.OnlyWindow()); });
    }

    // One with the real resources. Gives where the languages would be.
    std::string StandInATreeWithoutLanguages() {
        const fs::path program = std::exchange(executable, File("bin/ombrivel"));
        fs::create_directories(File("bin"));
        fs::create_hard_link(program, executable); // the program finds its tree by its own true path
        fs::copy(program.parent_path().parent_path() / "Resources", File("Resources"), fs::copy_options::recursive);
        fs::remove_all(File("Resources/Multilingual"));
        return File("Resources/Multilingual");
    }

    void ExpectSavedLanguage(Program& program, const std::string& language) const {
        desktop.Press({"ctrl+q"});
        EXPECT_EQ(program.End(), 0);
        EXPECT_EQ(ReadFile(PreferencesFile()), PreferencesBytes({.SearchForUpdates = false}, language));
    }
};

} // namespace

TEST_F(Languages, TheChooserComesAtEveryStartAndIsLeftOrAnswered) {
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

TEST_F(Languages, ThatAreBrokenEndTheStartWithALineAsDoPreferences) {
    const std::string multilingual = StandInATreeWithoutLanguages();
    const auto expectNoStart = [this](const char* languages, const std::string& reason) {
        Program& program = StartIn(languages);
        program.OnlyWindow(); // tells it to who sees no standard error
        desktop.Press({"Return"});
        EXPECT_EQ(program.End(), 1);
        EXPECT_EQ(program.Errors(), "ombrivel: the program could not start: " + reason + "\n");
    };
    WriteFile(multilingual, "not a folder");
    expectNoStart("fi", "no language in " + multilingual);
    fs::remove(multilingual);
    fs::create_directories(multilingual + "/English");
    for (const char* const languages : {"en", "fi"})
        expectNoStart(languages, "can't open " + multilingual + "/English/strings.txt");
    fs::remove(PreferencesFile());
    fs::create_directory(PreferencesFile());
    expectNoStart("en", "can't open " + PreferencesFile().string());
}

// The files are read one after the other, so the key comes in between.
TEST_F(Languages, LetAKeyCountThatComesWhileTheChooserReads) {
    const fs::path multilingual = StandInATreeWithoutLanguages();
    fs::create_directories(multilingual / "One");
    WriteFile(multilingual / "One/strings.txt", "ChooseString: Language\n" + Pattern(5'000'000));
    for (const char* const name : {"Two", "Three"})
        fs::create_directory_symlink(multilingual / "One", multilingual / name);
    Program& program = StartToTheChooser();
    desktop.Press({"Return"});
    AwaitMainWindow(program);
    ExpectSavedLanguage(program, "One");
    EXPECT_EQ(program.Errors(), "");
}
