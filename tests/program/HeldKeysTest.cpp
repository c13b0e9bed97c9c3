#include "tests/program/WholeProgramTest.h"

class HeldKeys : public WholeProgramTest {
protected:
    // Long enough for the display to repeat the key a few times, wherever it has led by then.
    void Hold(const std::string& key) const { desktop.Do({"keydown", key, "sleep", "0.85", "keyup", key}); }
};

TEST_F(HeldKeys, AnswerNothingPressALinkOnceAndCloseOneWindow) {
    Program& program = StartUnfinished("film.mov");
    program.OnlyWindow();
    desktop.Press({"alt+f", "Up"});
    Hold("Return"); // on the last item, which asks whether to quit
    program.Answer({"Escape"});

    program.OnlyWindow();
    desktop.Press({"alt+h", "Up", "Return"}); // about
    program.Dialog();
    desktop.Press({"Return", "Tab"}); // which come to the link in this order
    Hold("space");
    Await("the vendor's site", [&] { return !desktop.Opened().empty(); });
    program.Answer({"Escape"});

    program.OnlyWindow();
    desktop.Press({"alt+e", "Up", "Return"}); // the preferences
    program.Dialog();
    Hold("ctrl+w");
    FinishDownload("film.mov");
    EXPECT_EQ(program.End(), 0) << "with no question in the way";
    EXPECT_EQ(desktop.Opened(), Words{OMBRIVEL_VENDOR_SITE});
}
