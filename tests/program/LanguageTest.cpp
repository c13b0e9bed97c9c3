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
    WriteSeries("film.mov");
    EXPECT_EQ(StartAgain({"film.mov.001"}), 0);
    AwaitShown({"film.mov"});
    EXPECT_EQ(StartAgain({}), 0) << "a run that no file began stays when all is done";
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

TEST_F(BrokenLanguages, EndTheStartWithALineAsDoBrokenPreferences) {
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
TEST_F(BrokenLanguages, LetAKeyCountThatComesWhileTheChooserReads) {
    WriteFile(Folder("garbage") / "strings.txt", "ChooseString: Language\n" + Pattern(5'000'000));
    for (const char* const name : {"/One", "/Two", "/Three"})
        fs::create_directory_symlink(File("garbage"), Folder(multilingual).string() + name);
    Program& program = StartToTheChooser();
    desktop.Press({"Return"});
    AwaitMainWindow(program);
    desktop.Press({"ctrl+q"});
    EXPECT_EQ(program.End(), 0);
    EXPECT_EQ(program.Errors(), "");
}
