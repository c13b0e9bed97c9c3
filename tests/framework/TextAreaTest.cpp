#include "framework/windows/TextArea.h"
#include "framework/menus/MenuCommands.h"
#include "framework/menus/MenuItem.h"
#include "framework/windows/Native.h"
#include "framework/windows/PushButton.h"
#include "framework/windows/Window.h"
#include "tests/support/Waiting.h"

#include <QApplication>
#include <QClipboard>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTextEdit>

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;

class TestArea : public TextArea {
public:
    QTextEdit& Widget() const { return *static_cast<QTextEdit*>(Native()->widget.data()); }
};

class TestWindow : public Window {
public:
    using Window::Make;
    const Ref<TestArea> area = New<TestArea>();
    const Ref<PushButton> button = New<PushButton>();

protected:
    void CreateControls() override {
        Add(button, {.Top = 100, .Width = 80, .Height = 20, .TabIndex = 1});
        Add(area, {.Width = 300, .Height = 90, .TabIndex = 0});
    }
};

class TextAreas : public testing::Test {
protected:
    TextAreas() {
        area->ReadOnly = true;
        area->Styled = true;
    }
    ~TextAreas() override { window->Close(); }

    void Show() const {
        window->Make();
        window->Show();
        ShowOnScreen();
        QApplication::setActiveWindow(NativeWindow::Of(*window).widget);
    }

    bool IsBold(int line) const {
        return area->Widget().document()->findBlockByNumber(line).begin().fragment().charFormat().fontWeight() ==
               QFont::Bold;
    }

    const Ref<TestWindow> window = New<TestWindow>();
    const Ref<TestArea> area = window->area;
};

TEST_F(TextAreas, PiecesStandOneBehindTheOtherEachInItsStyle) {
    area->SetSelBold(true);
    area->SetSelText("Early\n");
    area->SetSelBold(false);
    EXPECT_EQ(area->Text(), "Early\n");
    Show();
    area->SetSelText("p\xFFl\aa<b>in\n");
    area->SetSelBold(true);
    area->SetSelText("late");
    EXPECT_EQ(area->Text(), "Early\np\uFFFDl\uFFFDa<b>in\nlate");
    EXPECT_TRUE(IsBold(0));
    EXPECT_FALSE(IsBold(1));
    EXPECT_TRUE(IsBold(2));
}

TEST_F(TextAreas, KeysScrollTheTextAndTabLeavesItAndTheEditMenuCopiesFromIt) {
    Show();
    for (int line = 0; line < 50; ++line)
        area->SetSelText("line\n");
    const QScrollBar& bar = *area->Widget().verticalScrollBar();
    EXPECT_EQ(bar.value(), 0) << "the beginning stays in view";
    QTest::keyClick(&area->Widget(), Qt::Key_Down);
    EXPECT_GT(bar.value(), 0);

    const MenuItem copy("Copy", "", "", MenuItem::Role::Copy);
    const MenuItem paste("Paste", "", "", MenuItem::Role::Paste);
    const MenuItem selectAll("SelectAll", "", "", MenuItem::Role::SelectAll);
    EXPECT_TRUE(area->Widget().hasFocus());
    EXPECT_TRUE(CommandCanRun(copy));
    EXPECT_FALSE(CommandCanRun(paste));
    RunCommand(selectAll);
    RunCommand(copy);
    EXPECT_EQ(QApplication::clipboard()->text().count(QStringLiteral("line")), 50);
    QTest::keyClick(&area->Widget(), Qt::Key_Tab);
    EXPECT_FALSE(area->Widget().hasFocus());
    EXPECT_FALSE(CommandCanRun(copy));
}

TEST_F(TextAreas, ATextOfManyMegabytesIsShownInPart) {
    Show();
    const auto begin = std::chrono::steady_clock::now();
    area->SetSelBold(true);
    area->SetSelText(std::string(8 << 20, 'w') + '\n');
    for (int line = 0; line < 2000; ++line)
        area->SetSelText(std::string(16 << 10, '\n'));
    ShowOnScreen();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 5s);
    EXPECT_GT(area->Text().size(), 50'000U);
    EXPECT_LT(area->Text().size(), 1'000'000U);
}

} // namespace
