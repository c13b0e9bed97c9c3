#include "tests/program/SessionManager.h"
#include "tests/program/WholeProgramTest.h"

namespace {

namespace fs = std::filesystem;

using Wish = SessionManager::Wish;

// The program in a session, with a glue that waits for its last part.
class SessionEnd : public WholeProgramTest {
protected:
    SessionEnd() {
        environment["SESSION_MANAGER"] = manager->Address();
        WriteUnfinishedSeries("film.mov");
        program = &Start({"film.mov.001"});
        manager->AwaitClient();
        AwaitUnfinished("film.mov");
        program->OnlyWindow();
        fs::remove(PreferencesFile()); // so that what is there afterwards has been saved
    }

    void ExpectSavedEnd(int exitCode) {
        EXPECT_EQ(program->End(), exitCode);
        EXPECT_EQ(ReadFile(PreferencesFile()), PreferencesBytes({.SearchForUpdates = false}, "English"));
    }

    std::unique_ptr<SessionManager> manager = std::make_unique<SessionManager>();
    Program* program = nullptr;
};

} // namespace

TEST_F(SessionEnd, IsForgottenWhenTheSessionOnlySavesOrLivesOn) {
    for (const Wish wish : {Wish::Save, Wish::ShutDownWithoutQuestions}) {
        manager->Ask(wish);
        EXPECT_TRUE(manager->Agrees());
        if (wish != Wish::Save)
            manager->CallOff();
        desktop.Press({"F10", "Right", "Up", "Return"}); // the preferences
        program->Answer({"alt+F4"});
        program->OnlyWindow();
    }
    manager->Die(); // unasked
    program->Answer({"Escape"});
    program->OnlyWindow();
    EXPECT_FALSE(fs::exists(PreferencesFile()));
}

TEST_F(SessionEnd, AsksLikeAnyQuitAndTheAnswerCounts) {
    manager->Ask(Wish::ShutDown);
    program->Answer({"Escape"});
    EXPECT_FALSE(manager->Agrees());
    manager->CallOff();
    manager->Ask(Wish::ShutDown);
    program->Answer({"Return"});
    EXPECT_TRUE(manager->Agrees());
    manager->Die();
    ExpectSavedEnd(0);
}

TEST_F(SessionEnd, WithoutQuestionsEndsTheProgramInTheMiddleOfItsWork) {
    manager->Ask(Wish::ShutDownWithoutQuestions);
    EXPECT_TRUE(manager->Agrees());
    manager->Die();
    ExpectSavedEnd(0);
}

TEST_F(SessionEnd, WithTheManagerItselfIsAnEndLikeAnyOther) {
    manager = nullptr;
    ExpectSavedEnd(1);
}
