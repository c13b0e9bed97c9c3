#include "framework/app/Application.h"
#include "framework/threads/MainThread.h"
#include "framework/windows/Canvas.h"
#include "framework/windows/Native.h"
#include "framework/windows/NativeGraphics.h"
#include "framework/windows/ProgressBar.h"
#include "framework/windows/TextArea.h"
#include "framework/windows/Window.h"
#include "settings/winPreferences.h"
#include "tests/support/TestFolder.h"
#include "tests/support/Waiting.h"
#include "ui/winMain.h"
#include "update/winUpdate.h"

#include <QApplication>
#include <QFontDatabase>
#include <QPainter>
#include <QProgressBar>
#include <QScreen>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTextEdit>

#include <gtest/gtest.h>

#include <ctime>

namespace {

struct TestWindow : Window {
    using Window::Make;
};

// What the bars stand on shows through them. A paint serves no events, and one that fails harms nobody.
TEST(Windows, ACanvasIsRepaintedOnceWhenBarsAboveItChangeMoveOrGo) {
    const auto window = New<TestWindow>();
    const auto canvas = New<Canvas>();
    const Ref<ProgressBar> bars[] = {New<ProgressBar>(), New<ProgressBar>()};
    int paints = 0;
    bool served = false;
    canvas->Paint = [&](Graphics&) {
        ++paints;
        served = false;
        PostToMainThread([&served] { served = true; });
        YieldForAWhile();
        EXPECT_FALSE(served);
        throw NilObjectException();
    };
    window->Make();
    window->Add(canvas, {.Width = 400, .Height = 200, .LockLeft = true, .LockRight = true});
    for (const Ref<ProgressBar>& bar : bars) {
        bar->SetMaximum(5); // one without a measure moves by itself
        window->Add(bar, {.Left = 10, .Width = 300, .Height = 12, .LockRight = true, .LockBottom = true});
    }
    window->Show();
    using Setter = void (ProgressBar::*)(int32_t);
    for (const Setter set : {&ProgressBar::SetValue, &ProgressBar::SetMaximum, Setter(&ProgressBar::SetTop)}) {
        ShowOnScreen();
        paints = 0;
        for (const Ref<ProgressBar>& bar : bars)
            ((*bar).*set)(7);
        ShowOnScreen();
        EXPECT_EQ(paints, 1);
    }
    bars[1]->Close();
    bars[1]->SetValue(5); // as a worker may that has not noticed yet
    ShowOnScreen();
    EXPECT_GT(paints, 1);
    EXPECT_TRUE(served);

    window->Native().widget->resize(450, 370);
    EXPECT_TRUE(WaitUntil([&canvas] { return canvas->Width() == 450; }));
    auto* const shown = window->Native().widget->findChild<QProgressBar*>();
    EXPECT_EQ(shown->geometry(), QRect(60, 77, 300, 12));
    canvas->Paint = nullptr;
    const auto look = [&](int32_t value, int32_t maximum) {
        bars[0]->SetValue(value);
        bars[0]->SetMaximum(maximum);
        ShowOnScreen();
        return shown->grab().toImage();
    };
    EXPECT_NE(look(3, 7), look(4, 7));
    const QImage busy = look(7, 0);
    EXPECT_NE(busy, look(0, 7)) << "a chunk stands out";
    EXPECT_TRUE(WaitUntil([&] { return look(7, 0) != busy; })) << "and moves";
    window->Close();
}

// The twins come late here, to show that nothing has asked for them before.
TEST(Windows, APictureReadsItsDenseTwinOnceADenseScreenShowsIt) {
    const TestFolder folder;
    const auto write = [&folder](const char* name, int size, QColor colour) {
        QImage image(size, size, QImage::Format_RGB32);
        image.fill(colour);
        image.save(QString::fromStdString(folder.Path(name)));
    };
    write("icon.png", 8, Qt::red);
    write("mask.png", 8, Qt::black);
    const Ref<Picture> picture = Picture::Load(folder.Path("icon.png"));
    picture->Mask(true)->Graphics().DrawPicture(Picture::Load(folder.Path("mask.png")), 0, 0);
    const auto onScreen = [&picture](double density) {
        QImage screen(QSize(8, 8) * density, QImage::Format_RGB32);
        screen.fill(Qt::green);
        QPainter painter(&screen);
        painter.scale(density, density);
        MakeGraphics(painter).DrawPicture(picture, 0, 0);
        return screen.pixelColor(screen.rect().bottomRight());
    };
    EXPECT_EQ(onScreen(1), QColor(Qt::red));
    write("icon@2x.png", 16, Qt::blue);
    write("mask@2x.png", 16, QColor(51, 51, 51)); // lets a fifth of the ground through
    EXPECT_EQ(onScreen(1), QColor(Qt::red));
    EXPECT_EQ(onScreen(1.5), QColor(0, 51, 204));
    EXPECT_EQ(IconOf(picture).pixmap(QSize(8, 8), 1.5).size(), QSize(12, 12));
}

TEST(Windows, OpenOnTheScreenAndGoByEscapeWhereNothingElseCancels) {
    QWidget* const main = winMain::Instance()->Native().widget;
    const QRect screen = main->screen()->availableGeometry();
    main->move(screen.bottomRight() - QPoint(40, 40));
    QApplication::setActiveWindow(main);
    const Ref<winPreferences> preferences = winPreferences::Instance();
    preferences->Show();
    QWidget* const opened = preferences->Native().widget;
    EXPECT_TRUE(screen.contains(opened->frameGeometry()));
    QTest::keyClick(opened, Qt::Key_Escape);
    QTest::keyClick(main, Qt::Key_Escape);
    EXPECT_TRUE(preferences->Closed() && !winMain::Instance()->Closed());
}

TEST(Windows, ATextAreaShowsStyledPiecesAndNoMoreThanPeopleRead) {
    const Ref<winUpdate> window = winUpdate::Instance();
    window->Show();
    window->txtMessage()->SetSelBold(true);
    window->txtMessage()->SetSelText("p\xFFl\aa<b>in\n");
    window->txtMessage()->SetSelBold(false);
    window->txtMessage()->SetSelText(std::string(50, '\n'));
    EXPECT_EQ(window->txtMessage()->Text(), "p\uFFFDl\uFFFDa<b>in\n" + std::string(50, '\n'));
    const auto& area = *window->Native().widget->findChild<QTextEdit*>();
    EXPECT_EQ(area.document()->begin().begin().fragment().charFormat().fontWeight(), QFont::Bold);
    EXPECT_EQ(area.verticalScrollBar()->value(), 0) << "the beginning stays in view";

    const std::clock_t begin = std::clock(); // of its own work, however busy the machine is
    std::string longTitle = "w";
    while (longTitle.size() < std::size_t(8) << 20)
        longTitle += "𝄞";
    window->txtMessage()->SetSelText(longTitle + '\n'); // each cut falls into a character
    window->txtMessage()->SetSelText("next");
    EXPECT_TRUE(window->txtMessage()->Text().ends_with("𝄞\nnext"));
    EXPECT_TRUE(ToScreen(longTitle).endsWith(QStringLiteral("𝄞")));
    EXPECT_TRUE(ToParagraphs(longTitle).endsWith(QStringLiteral("𝄞")));
    for (int line = 0; line < 2000; ++line)
        window->txtMessage()->SetSelText(std::string(16 << 10, '\n'));
    ShowOnScreen();
    EXPECT_LT((std::clock() - begin) / CLOCKS_PER_SEC, 5 * kSlowness);
    EXPECT_LT(window->txtMessage()->Text().size(), 1'000'000U);
    window->Close();
}

QImage Drawn(const QString& text, const QFont& font) {
    QImage image(64, 64, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setFont(font);
    painter.drawText(8, 48, text);
    return image;
}

// Whether the desktop's own font has the characters or not. What was drawn before does not stand in the way.
TEST(Windows, DrawCharactersAsTheLanguageSpokenWritesThem) {
    const QString chinese = QStringLiteral("Noto Sans CJK SC");
    const QString bone = QStringLiteral("\u9AA8"); // mirrored in Chinese
    if (!QFontDatabase::hasFamily(chinese))
        GTEST_SKIP() << "no font that has the character in several forms";
    for (const char* const ofDesktop : {"Sans Serif", "Noto Sans CJK HK"}) {
        QApplication::setFont(QFont(ofDesktop));
        QFont expected = SystemFont(false, false);
        expected.setFamily(chinese);
        for (int i = 0; i < 2; ++i) {
            EXPECT_NE(Drawn(bone, SystemFont(false, false)), Drawn(bone, expected)) << ofDesktop;
            Application::SpeakLanguage("zh_CN");
            EXPECT_EQ(Drawn(bone, SystemFont(false, false)), Drawn(bone, expected)) << ofDesktop;
            Application::SpeakLanguage("de");
        }
    }
}

} // namespace
