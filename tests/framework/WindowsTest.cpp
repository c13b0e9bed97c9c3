#include "framework/menus/MenuCommands.h"
#include "framework/menus/MenuItem.h"
#include "framework/threads/MainThread.h"
#include "framework/windows/Canvas.h"
#include "framework/windows/Native.h"
#include "framework/windows/ProgressBar.h"
#include "framework/windows/TextArea.h"
#include "framework/windows/Window.h"
#include "tests/support/Waiting.h"
#include "ui/winMain.h"
#include "update/winUpdate.h"

#include <QApplication>
#include <QClipboard>
#include <QProgressBar>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTextEdit>
#include <QToolBar>

#include <gtest/gtest.h>

namespace {

class TestWindow : public Window {
public:
    using Window::Make;
};

// What the bars stand on shows through them. A paint serves no events, and one that fails harms nobody.
TEST(Windows, ACanvasIsRepaintedOnceWhenBarsAboveItChangeMoveOrGo) {
    const auto window = New<TestWindow>();
    const auto canvas = New<Canvas>();
    const auto bar = New<ProgressBar>(), second = New<ProgressBar>();
    int paints = 0;
    bool served = false, servedWithin = false;
    canvas->Paint = [&](Graphics&) {
        ++paints;
        served = false;
        PostToMainThread([&served] { served = true; });
        YieldForAWhile();
        servedWithin = servedWithin || served;
        throw NilObjectException();
    };
    bar->SetMaximum(5); // one without a measure moves by itself
    second->SetMaximum(5);
    window->Make();
    window->Add(canvas, {.Width = 400, .Height = 200, .LockLeft = true, .LockRight = true});
    window->Add(bar, {.Left = 10, .Top = 10, .Width = 300, .Height = 12, .LockRight = true, .LockBottom = true});
    window->Add(second, {.Left = 10, .Top = 30, .Width = 300, .Height = 12});
    window->Show();
    using Change = void (*)(ProgressBar&);
    for (const Change change :
         {Change([](ProgressBar& one) { one.SetValue(1); }), Change([](ProgressBar& one) { one.SetMaximum(9); }),
          Change([](ProgressBar& one) { one.SetTop(one.Top() + 50); })}) {
        ShowOnScreen();
        paints = 0;
        change(*bar);
        change(*second);
        ShowOnScreen();
        EXPECT_EQ(paints, 1);
    }
    second->Close();
    second->SetValue(5); // as a worker may that has not noticed yet
    ShowOnScreen();
    EXPECT_GT(paints, 1);
    EXPECT_TRUE(served && !servedWithin);

    NativeWindow::Of(*window).widget->resize(450, 370);
    EXPECT_TRUE(WaitUntil([&canvas] { return canvas->Width() == 450; }));
    const auto* const shown = NativeWindow::Of(*window).widget->findChild<QProgressBar*>();
    EXPECT_EQ(shown->geometry(), QRect(60, 130, 300, 12));
    EXPECT_EQ(std::pair(shown->value(), shown->maximum()), std::pair(1, 9));
    window->Close();
}

TEST(Windows, TheToolbarShowsNoToolTips) {
    const auto* const bar = NativeWindow::Of(*winMain::Instance()).widget->findChild<QToolBar*>();
    EXPECT_EQ(bar->widgetForAction(bar->actions().constFirst())->toolTip(), QString());
}

TEST(Windows, TextAreasShowPiecesInTheirStylesToBeScrolledAndCopiedAndNoMoreThanPeopleRead) {
    const Ref<winUpdate> window = winUpdate::Instance();
    const Ref<TextArea> area = window->txtMessage();
    window->Show();
    ShowOnScreen();
    QApplication::setActiveWindow(NativeWindow::Of(*window).widget);
    std::string text;
    for (int line = 0; line < 50; ++line) {
        area->SetSelBold(line == 0);
        area->SetSelText("p\xFFl\aa<b>in\n");
        text += "p\uFFFDl\uFFFDa<b>in\n";
    }
    EXPECT_EQ(area->Text(), text);
    auto& shown = *NativeWindow::Of(*window).widget->findChild<QTextEdit*>();
    const QTextBlock first = shown.document()->begin();
    EXPECT_EQ(first.begin().fragment().charFormat().fontWeight(), QFont::Bold);
    EXPECT_EQ(first.next().begin().fragment().charFormat().fontWeight(), QFont::Normal);
    EXPECT_EQ(shown.verticalScrollBar()->value(), 0) << "the beginning stays in view";
    shown.setFocus();
    QTest::keyClick(&shown, Qt::Key_Down);
    EXPECT_GT(shown.verticalScrollBar()->value(), 0);

    const MenuItem copy("Copy", "", "", MenuItem::Role::Copy);
    EXPECT_FALSE(CommandCanRun(MenuItem("Paste", "", "", MenuItem::Role::Paste)));
    RunCommand(MenuItem("SelectAll", "", "", MenuItem::Role::SelectAll));
    EXPECT_TRUE(CommandCanRun(copy));
    RunCommand(copy);
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(), text);
    QTest::keyClick(&shown, Qt::Key_Tab);
    EXPECT_FALSE(shown.hasFocus() || CommandCanRun(copy));

    const auto begin = std::chrono::steady_clock::now();
    area->SetSelText(std::string(8 << 20, 'w') + '\n');
    for (int line = 0; line < 2000; ++line)
        area->SetSelText(std::string(16 << 10, '\n'));
    ShowOnScreen();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
    EXPECT_GT(area->Text().size(), 50'000U);
    EXPECT_LT(area->Text().size(), 1'000'000U);
    window->Close();
}

} // namespace
