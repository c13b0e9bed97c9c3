#include "framework/threads/MainThread.h"
#include "framework/windows/ComboBox.h"
#include "framework/windows/Label.h"
#include "framework/windows/Native.h"
#include "tests/support/ProgramTest.h"
#include "ui/winMain.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QTest>

namespace {

class CutDialogTest : public ProgramTest {
protected:
    // What the dialog shows for a file of that length with that text in its field.
    std::string Shown(uint64_t length, const std::string& text) const {
        folder.WriteSparse("film", length);
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
    }
};

// The low 32 bits of the length, read with a sign: the figures of a file from 2 GB on are wrong, and meant to stay so.
TEST_F(CutDialogTest, FiguresAreRoughAndWrapAround) {
    const std::pair<uint64_t, const char*> lengths[] = {{0, "0 of 0 MB"},
                                                        {500 << 10U, "1 of 0 MB"},
                                                        {100 << 20U, "1 of 100 MB"},
                                                        {150 << 20U, "2 of 150 MB"},
                                                        {3ULL << 30U, "-10 of -1024 MB"},
                                                        {4ULL << 30U, "0 of 0 MB"}};
    for (const auto& [length, figures] : lengths)
        EXPECT_EQ(Shown(length, "100"), figures) << length;
    for (const auto& [text, parts] : {std::pair("1.44", "105"), {" 100 ", "2"}, {"2048", "1"}, {"1e30", "1"}})
        EXPECT_EQ(Shown(150 << 20U, text), parts + std::string(" of 150 MB")) << text;
    for (const char* text : {"", "0", "0.0", "-5", "12abc", "1,5", "inf"})
        EXPECT_EQ(Shown(150 << 20U, text), "- of 150 MB, disabled") << text;
    WhenAsked([](winCut& dialog) { dialog.Close(); });
    App::Instance()->EncodeFile(folder.Item("film"));
    EXPECT_TRUE(rows.empty()) << "neither the cancel button nor the close box starts anything";
}

// Real keys on the real field. Only digits type; what edits or moves is refused as well, and that is meant.
TEST_F(CutDialogTest, TheFieldTakesDigitsOnlyAndLeavesTheDialogItsKeys) {
    const Ref<winCut> dialog = winCut::Instance();
    dialog->ShowWithin(winMain::Instance(), -1);
    dialog->UpdateStatus();
    auto* const box = NativeWindow::Of(*dialog).widget->findChild<QComboBox*>();
    QLineEdit* const field = box->lineEdit();
    EXPECT_TRUE(WaitUntil([box] { return QApplication::focusWidget() == box; }));
    // What the field holds after a key between the digits 10 and 50, with the cursor shown.
    const auto after = [&](int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        field->setText(QStringLiteral("1050"));
        field->setCursorPosition(2);
        QTest::keyClick(box, static_cast<Qt::Key>(key), modifiers);
        EXPECT_FALSE(field->hasSelectedText()) << key;
        return field->text().insert(field->cursorPosition(), QLatin1Char('|')).toStdString();
    };
    EXPECT_EQ(after(Qt::Key_5), "105|50");
    QTest::keyClick(box, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(dialog->comPartSize()->Text(), "10550") << "nothing is taken back";
    for (const int key : {Qt::Key_Period, Qt::Key_Comma, Qt::Key_Minus, Qt::Key_E, Qt::Key_Space, Qt::Key_Backspace,
                          Qt::Key_Delete, Qt::Key_Left, Qt::Key_Right, Qt::Key_Home, Qt::Key_End, Qt::Key_Up,
                          Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown})
        EXPECT_EQ(after(key), "10|50") << key;
    EXPECT_EQ(after(Qt::Key_Right, Qt::ShiftModifier), "10|50");
    for (const int key : {Qt::Key_Backspace, Qt::Key_Delete, Qt::Key_Left, Qt::Key_Right, Qt::Key_Home, Qt::Key_End})
        EXPECT_EQ(after(key, Qt::ControlModifier), "10|50") << key;
    for (const int key : {Qt::Key_Up, Qt::Key_Backspace, Qt::Key_X})
        EXPECT_EQ(after(key, Qt::AltModifier), "10|50") << key;

    // Where the cursor stands after an input method has shown and delivered that.
    const auto cursorAfter = [&](const char* composing, const char* delivered) {
        QInputMethodEvent event(QString::fromUtf8(composing), {});
        event.setCommitString(QString::fromUtf8(delivered));
        QApplication::sendEvent(box, &event);
        return field->inputMethodQuery(Qt::ImCursorRectangle).toRect();
    };
    const QRect before = cursorAfter("", "");
    EXPECT_NE(cursorAfter("x", ""), before);
    EXPECT_EQ(cursorAfter("", "1x"), before) << "what was refused is no longer shown either";
    EXPECT_EQ(dialog->comPartSize()->Text(), "1050") << "what an input method delivers is filtered too";
    QApplication::clipboard()->setText(QStringLiteral("1.44"));
    EXPECT_EQ(after(Qt::Key_V, Qt::ControlModifier), "101.44|50");
    for (const auto key : {Qt::Key_A, Qt::Key_C, Qt::Key_X})
        QTest::keyClick(box, key, Qt::ControlModifier);
    EXPECT_EQ(dialog->comPartSize()->Text(), "");
    QTest::keyClick(box, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(dialog->comPartSize()->Text(), "101.4450");
    QTest::keyClick(box, Qt::Key_Down, Qt::AltModifier);
    EXPECT_TRUE(box->view()->isVisible());
    box->hidePopup();

    const auto pressed = [&](const std::vector<Qt::Key>& keys) {
        PostToMainThread([keys, window = NativeWindow::Of(*dialog).widget] {
            for (const Qt::Key key : keys) {
                QWidget* const focused = window->focusWidget();
                QTest::keyClick(focused == nullptr ? window.data() : focused, key);
            }
        });
        return dialog->ShowModal();
    };
    EXPECT_EQ(pressed({Qt::Key_Return}), dialog->ActionButton);
    EXPECT_EQ(pressed({Qt::Key_Tab, Qt::Key_Escape}), dialog->CancelButton);
    dialog->comPartSize()->SetText("0");
    EXPECT_EQ(pressed({Qt::Key_Return, Qt::Key_Escape}), dialog->CancelButton) << "a disabled button is not pressed";
    dialog->Close();
}

TEST_F(CutDialogTest, GivesTheButtonThatEndedItOrThatOfAnEarlierRun) {
    const auto runToTheCloseBox = [](const Ref<winCut>& dialog) {
        PostToMainThread([&dialog] { NativeWindow::Of(*dialog).widget->close(); });
        return dialog->ShowModal();
    };
    EXPECT_TRUE(runToTheCloseBox(winCut::Instance()).IsNil());
    const Ref<winCut> dialog = winCut::Instance(); // a new one: the other has gone
    dialog->UpdateStatus();
    PostToMainThread([&dialog] { dialog->ActionButton->Push(); });
    EXPECT_EQ(dialog->ShowModal(), dialog->ActionButton);
    EXPECT_FALSE(dialog->Closed()) << "it is hidden only: its controls can still be read";
    EXPECT_FALSE(NativeWindow::Of(*dialog).widget->isVisible());
    EXPECT_EQ(runToTheCloseBox(dialog), dialog->ActionButton);
}

} // namespace
