#include "framework/app/Application.h"
#include "framework/menus/MenuCommands.h"
#include "framework/menus/MenuItem.h"
#include "framework/threads/MainThread.h"
#include "framework/windows/Canvas.h"
#include "framework/windows/Native.h"
#include "framework/windows/NativeGraphics.h"
#include "framework/windows/ProgressBar.h"
#include "framework/windows/TextArea.h"
#include "framework/windows/Window.h"
#include "settings/winPreferences.h"
#include "tests/support/Slowness.h"
#include "tests/support/TestFolder.h"
#include "tests/support/Waiting.h"
#include "ui/winMain.h"
#include "update/winUpdate.h"

#include <QApplication>
#include <QClipboard>
#include <QFontDatabase>
#include <QPainter>
#include <QProgressBar>
#include <QScreen>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTextEdit>
#include <QToolBar>

#include <gtest/gtest.h>

#include <ctime>

namespace {

class TestWindow : public Window {
public:
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

    NativeWindow::Of(*window).widget->resize(450, 370);
    EXPECT_TRUE(WaitUntil([&canvas] { return canvas->Width() == 450; }));
    const auto* const shown = NativeWindow::Of(*window).widget->findChild<QProgressBar*>();
    EXPECT_EQ(shown->geometry(), QRect(60, 77, 300, 12));
    EXPECT_EQ(shown->value(), 7);
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
    const QString latin = QStringLiteral("Rag");
    if (!QFontDatabase::hasFamily(chinese))
        GTEST_SKIP() << "no font that has the character in several forms";
    for (const char* const ofDesktop : {"Sans Serif", "Noto Sans CJK HK"}) {
        QApplication::setFont(QFont(ofDesktop));
        const QFont before = SystemFont(false, false);
        QFont expected = before;
        expected.setFamily(chinese);
        for (int i = 0; i < 2; ++i) {
            EXPECT_NE(Drawn(bone, SystemFont(false, false)), Drawn(bone, expected)) << ofDesktop;
            Application::SpeakLanguage("zh_CN");
            EXPECT_EQ(Drawn(bone, SystemFont(false, false)), Drawn(bone, expected)) << ofDesktop;
            EXPECT_EQ(Drawn(latin, SystemFont(false, false)), Drawn(latin, before)) << ofDesktop;
            Application::SpeakLanguage("de");
        }
    }
}

TEST(Windows, ABarWithoutAMeasureIsAnEmptyOneOnWhichAChunkMoves) {
    const auto window = New<TestWindow>();
    const auto bar = New<ProgressBar>();
    bar->OnLight = true;
    window->Make();
    window->Add(bar, {.Width = 300, .Height = 12});
    window->Show();
    auto* const shown = NativeWindow::Of(*window).widget->findChild<QProgressBar*>();
    const auto middleRow = [&](int32_t maximum) {
        bar->SetMaximum(maximum);
        ShowOnScreen();
        return shown->grab().toImage().copy(0, 6, 300, 1);
    };
    const QRgb empty = middleRow(1).pixel(150, 0);
    bar->SetValue(1);
    const QRgb full = middleRow(1).pixel(150, 0);
    const QImage moving = middleRow(0);
    int emptyPixels = 0, fullPixels = 0;
    for (int x = 0; x < 300; ++x) {
        emptyPixels += moving.pixel(x, 0) == empty ? 1 : 0;
        fullPixels += moving.pixel(x, 0) == full ? 1 : 0;
    }
    EXPECT_GT(emptyPixels, 230);
    EXPECT_GT(fullPixels, 40);
    EXPECT_TRUE(WaitUntil([&] { return middleRow(0) != moving; }));

    const QPalette light = QApplication::palette();
    QApplication::setPalette(QPalette(QColor(0x2A, 0x2E, 0x32)));
    bar->SetValue(0);
    EXPECT_GT(qGray(middleRow(1).pixel(150, 0)), 200) << "light on a dark desktop too";
    QApplication::setPalette(light);
    window->Close();
}

// The twins come late here, to show that nothing has asked for them before.
TEST(Windows, APictureReadsItsDenseTwinOnceADenseScreenShowsIt) {
    const TestFolder folder;
    const auto write = [&folder](const char* name, int size, QColor left, QColor right) {
        QImage image(size, size, QImage::Format_RGB32);
        image.fill(left);
        QPainter(&image).fillRect(size / 2, 0, size, size, right);
        image.save(QString::fromStdString(folder.Path(name)));
    };
    write("icon.png", 8, Qt::red, Qt::red);
    write("mask.png", 8, Qt::black, Qt::black);
    const Ref<Picture> picture = Picture::Load(folder.Path("icon.png"));
    picture->Mask(true)->Graphics().DrawPicture(Picture::Load(folder.Path("mask.png")), 0, 0);
    const auto onScreen = [&picture](double density) {
        QImage screen(QSize(8, 8) * density, QImage::Format_RGB32);
        screen.fill(Qt::green);
        QPainter painter(&screen);
        painter.scale(density, density);
        MakeGraphics(painter).DrawPicture(picture, 0, 0);
        return std::pair(screen.pixelColor(0, 0), screen.pixelColor(screen.rect().bottomRight()));
    };
    EXPECT_EQ(onScreen(1), std::pair(QColor(Qt::red), QColor(Qt::red)));
    write("icon@2x.png", 16, Qt::blue, Qt::blue);
    write("mask@2x.png", 16, Qt::black, Qt::white);
    EXPECT_EQ(onScreen(1), std::pair(QColor(Qt::red), QColor(Qt::red)));
    EXPECT_EQ(onScreen(1.5), std::pair(QColor(Qt::blue), QColor(Qt::green)));
    const QImage dense = picture->ForFramework().Composed(2);
    EXPECT_EQ(IconOf(picture).pixmap(QSize(8, 8), 1.5).toImage(),
              QPixmap::fromImage(dense.scaled(12, 12, Qt::KeepAspectRatio, Qt::SmoothTransformation)).toImage());
}

TEST(Windows, TheToolbarShowsNoToolTips) {
    const auto* const bar = NativeWindow::Of(*winMain::Instance()).widget->findChild<QToolBar*>();
    EXPECT_EQ(bar->widgetForAction(bar->actions().constFirst())->toolTip(), QString());
}

TEST(Windows, OpenOnTheScreenAndGoByEscapeWhereNothingElseCancels) {
    QWidget* const main = NativeWindow::Of(*winMain::Instance()).widget;
    QApplication::setActiveWindow(main);
    const QRect screen = main->screen()->availableGeometry();
    for (const QPoint corner : {screen.bottomRight() - QPoint(40, 40), screen.topLeft() - QPoint(200, 200)}) {
        main->move(corner);
        QApplication::setActiveWindow(main);
        const Ref<winPreferences> preferences = winPreferences::Instance();
        preferences->Show();
        QWidget* const opened = NativeWindow::Of(*preferences).widget;
        EXPECT_TRUE(screen.contains(opened->frameGeometry())) << corner.x();
        QTest::keyClick(opened, Qt::Key_Escape);
        EXPECT_TRUE(preferences->Closed());
    }
    QTest::keyClick(main, Qt::Key_Escape);
    EXPECT_FALSE(winMain::Instance()->Closed());
}

TEST(Windows, ATextAreaShowsPiecesInTheirStylesToBeCopiedAndNoMoreThanPeopleRead) {
    const Ref<winUpdate> window = winUpdate::Instance();
    window->Show();
    ShowOnScreen();
    QApplication::setActiveWindow(NativeWindow::Of(*window).widget);
    std::string text;
    for (int line = 0; line < 50; ++line) {
        window->txtMessage()->SetSelBold(line == 0);
        window->txtMessage()->SetSelText("p\xFFl\aa<b>in\n");
        text += "p\uFFFDl\uFFFDa<b>in\n";
    }
    auto& area = *NativeWindow::Of(*window).widget->findChild<QTextEdit*>();
    const QTextBlock first = area.document()->begin();
    EXPECT_EQ(first.begin().fragment().charFormat().fontWeight(), QFont::Bold);
    EXPECT_EQ(first.next().begin().fragment().charFormat().fontWeight(), QFont::Normal);
    EXPECT_EQ(area.verticalScrollBar()->value(), 0) << "the beginning stays in view";

    const MenuItem copy("Copy", "", "", MenuItem::Role::Copy);
    EXPECT_FALSE(CommandCanRun(copy));
    area.setFocus();
    EXPECT_TRUE(CommandCanRun(copy));
    EXPECT_FALSE(CommandCanRun(MenuItem("Paste", "", "", MenuItem::Role::Paste)));
    RunCommand(MenuItem("SelectAll", "", "", MenuItem::Role::SelectAll));
    RunCommand(copy);
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(), text);

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

} // namespace
