#include "framework/threads/MainThread.h"
#include "framework/windows/ComboBox.h"
#include "framework/windows/Label.h"
#include "framework/windows/Native.h"
#include "tests/support/ProgramTest.h"
#include "ui/winAbout.h"
#include "ui/winMain.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace {

using CutDialogTest = ProgramTest;

QComboBox& FocusedField(winCut& dialog) {
    dialog.ShowWithin(winMain::Instance(), -1);
    auto* const box = dialog.Native().widget->findChild<QComboBox*>();
    EXPECT_TRUE(WaitUntil([box] { return QApplication::focusWidget() == box; }));
    return *box;
}

// The low 32 bits of the length, read with a sign: the figures of a file from 2 GB on are wrong, and meant to stay so.
TEST_F(CutDialogTest, FiguresAreRoughAndWrapAround) {
    const auto figures = [this](uint64_t kilobytes, const std::string& text) {
        folder.WriteSparse("film", kilobytes << 10U);
        std::string shown;
        WhenAsked([&](winCut& dialog) {
            EXPECT_EQ(dialog.comPartSize()->Text(), "100") << "each dialog is a new one";
            dialog.comPartSize()->SetText(text);
            shown = dialog.staPartAmount()->Text() + " of " + dialog.staFileSize()->Text();
            shown += dialog.ActionButton->Enabled() ? "" : ", disabled";
            dialog.CancelButton->Push();
        });
        App::Instance()->EncodeFile(folder.Item("film"));
        return shown;
    };
    const std::pair<uint64_t, const char*> lengths[] = {{0, "0 of 0 MB"},
                                                        {500, "1 of 0 MB"},
                                                        {102400, "1 of 100 MB"},
                                                        {153600, "2 of 150 MB"},
                                                        {3U << 20U, "-10 of -1024 MB"},
                                                        {4U << 20U, "0 of 0 MB"}};
    for (const auto& [kilobytes, expected] : lengths)
        EXPECT_EQ(figures(kilobytes, "100"), expected) << kilobytes;
    for (const auto& [text, parts] : {std::pair("1.44", "105"), {" 100 ", "2"}, {"1e30", "1"}})
        EXPECT_EQ(figures(153600, text), parts + std::string(" of 150 MB")) << text;
    for (const char* const text : {"", "0.0", "-5", "12abc", "1,5", "inf"})
        EXPECT_EQ(figures(153600, text), "- of 150 MB, disabled") << text;
    WhenAsked([](winCut& dialog) { dialog.Native().widget->close(); });
    App::Instance()->EncodeFile(folder.Item("film"));
    EXPECT_TRUE(rows.empty()) << "neither the cancel button nor the close box starts anything";
}

TEST_F(CutDialogTest, AHeldKeyRepeatsInTheTextThatItWasPressedInOnly) {
    const Ref<winCut> dialog = winCut::Instance();
    QComboBox& box = FocusedField(*dialog);
    QWidget* window = box.window();
    const auto tell = [&window](QEvent::Type type, Qt::Key key, bool isRepeat, uint64_t time) {
        const QString text(key == Qt::Key_Return ? u'\r' : QChar(key));
        QKeyEvent event(type, key, Qt::NoModifier, key, 0, 0, text, isRepeat);
        event.setTimestamp(time);
        event.ignore();
        QApplication::sendEvent(window->windowHandle(), &event);
        return event.isAccepted();
    };
    for (const bool isRepeat : {false, true, true}) // the first in place of what is proposed
        tell(QEvent::KeyPress, Qt::Key_7, isRepeat, 1);
    EXPECT_EQ(dialog->comPartSize()->Text(), "777");
    tell(QEvent::KeyPress, Qt::Key_Return, true, 2);
    tell(QEvent::KeyRelease, Qt::Key_Return, false, 3); // a display's way to tell of a repeat
    tell(QEvent::KeyPress, Qt::Key_Return, false, 3);
    EXPECT_TRUE(window->isVisible());
    auto* const button = window->findChild<QPushButton*>();
    tell(QEvent::KeyPress, Qt::Key_Space, false, 4);
    button->setFocus();
    tell(QEvent::KeyRelease, Qt::Key_Space, false, 5);
    tell(QEvent::KeyPress, Qt::Key_Space, false, 5);
    EXPECT_FALSE(button->isDown());
    for (const bool isRepeat : {false, true}) // which fires no shortcut if somebody claims it
        EXPECT_EQ(tell(QEvent::ShortcutOverride, Qt::Key_W, isRepeat, 4), isRepeat);
    box.setFocus();
    tell(QEvent::KeyPress, Qt::Key_Return, false, 6);
    EXPECT_FALSE(window->isVisible());
    dialog->Close();

    winAbout::Instance()->Show();
    window = winAbout::Instance()->Native().widget;
    winAbout::Instance()->Native().content->childAt(25, 235)->setFocus();
    for (const bool isRepeat : {false, true})
        tell(QEvent::KeyPress, Qt::Key_Space, isRepeat, 7);
    EXPECT_EQ(AskedOfDesktop(), "url " OMBRIVEL_VENDOR_SITE "\n");
    winAbout::Instance()->Close();
}

TEST_F(CutDialogTest, TheFieldFiltersAnInputMethodAndOpensItsListByAKey) {
    const Ref<winCut> dialog = winCut::Instance();
    QComboBox* const box = &FocusedField(*dialog);
    box->lineEdit()->deselect();
    const auto cursor = [box] { return box->lineEdit()->inputMethodQuery(Qt::ImCursorRectangle); };
    const QVariant before = cursor();
    QInputMethodEvent composing(QStringLiteral("x"), {});
    QApplication::sendEvent(box, &composing);
    EXPECT_NE(cursor(), before);
    QInputMethodEvent delivered;
    delivered.setCommitString(QStringLiteral("1x"));
    QApplication::sendEvent(box, &delivered);
    EXPECT_EQ(cursor(), before) << "what was refused is no longer shown";
    EXPECT_EQ(dialog->comPartSize()->Text(), "100");
    QTest::keyClick(box, Qt::Key_Down, Qt::AltModifier);
    EXPECT_TRUE(box->view()->isVisible());
    QTest::keyClick(box->view(), Qt::Key_Up);
    QTest::keyClick(box->view(), Qt::Key_Return);
    EXPECT_EQ(box->lineEdit()->selectedText(), "50");

    PostToMainThread([&dialog] { dialog->CancelButton->Push(); });
    EXPECT_EQ(dialog->ShowModal(), dialog->CancelButton);
    EXPECT_FALSE(dialog->Native().widget->isVisible());
    PostToMainThread([&dialog] { dialog->Native().widget->close(); });
    EXPECT_EQ(dialog->ShowModal(), dialog->CancelButton) << "the button of an earlier run";
}

} // namespace
