#include "engine/claThread.h"
#include "framework/windows/Native.h"
#include "framework/windows/NativeGraphics.h"
#include "framework/windows/ProgressBar.h"
#include "tests/support/ProgramTest.h"
#include "ui/Pictures.h"
#include "ui/RowGeometry.h"
#include "ui/winMain.h"

#include <QApplication>
#include <QScreen>
#include <QTest>

namespace {

using namespace RowGeometry;

class ListTest : public ProgramTest {
protected:
    static Ref<claFilePerformInfo> AddRow() {
        return List().AddInfo("film.mov", 7, 3, "Preparing…", picIconCut(), New<claThread>());
    }

    // From the upper left corner of the list.
    static QImage Screen(int x = 0, int y = 0, int width = 527, int height = 302) {
        ShowOnScreen();
        const NativeWindow& window = winMain::Instance()->Native();
        const QPoint at = window.content->mapTo(window.widget, QPoint(x, y));
        return window.widget->screen()->grabWindow(window.widget->winId()).toImage().copy({at, QSize(width, height)});
    }

    // Whether a click stops the worker of that row, after a move to that place. The place of the click is not looked
    // at.
    static bool Stops(const Ref<claFilePerformInfo>& row, int32_t x, int32_t y) {
        row->PerformThread->Stop = false;
        List().Event_MouseMove(x, y);
        EXPECT_FALSE(List().Event_MouseDown(0, 0));
        return row->PerformThread->Stop;
    }
};

TEST_F(ListTest, RowsHaveBarsAndButtonsThatGoByTheLastMoveAlone) {
    const Ref<claFilePerformInfo> first = AddRow();
    EXPECT_EQ(StatusText(), "1 operation running");
    EXPECT_EQ(std::pair(first->Bar->Value(), first->Bar->Maximum()), std::pair(3, 7));
    EXPECT_LT(first->Bar->Top(), -20) << "out of sight until it is painted into its row";
    const Ref<claFilePerformInfo> second = AddRow();
    EXPECT_EQ(StatusText(), "2 operations running");
    ShowOnScreen();
    EXPECT_EQ(std::pair(first->Bar->Top(), second->Bar->Top()), std::pair(20, 70));
    const int32_t right = List().Width();
    for (const auto& [x, y] : {std::pair(29, 70), {16, 83}})
        EXPECT_TRUE(Stops(second, right - x, y)) << x << ", " << y;
    for (const auto& [x, y] : {std::pair(30, 76), {15, 76}, {22, 69}, {22, 84}, {22, 26}})
        EXPECT_FALSE(Stops(second, right - x, y)) << x << ", " << y;
    first->PerformThread->Stop = false;
    first->Close();
    first->Close(); // a row that is no longer there takes nothing else away
    EXPECT_EQ(List().Info, std::vector{second});
    EXPECT_TRUE(first->Bar->Window().IsNil());
    ShowOnScreen();
    EXPECT_EQ(second->Bar->Top(), 20) << "the rows below move up";
    QWidget* const list = winMain::Instance()->Native().content->childAt(1, 1);
    QTest::mouseDClick(list, Qt::LeftButton, Qt::NoModifier, StopButton(0));
    EXPECT_FALSE(second->PerformThread->Stop)
        << "a second press that comes at once was meant for the row that has gone";
    List().Event_MouseDown(0, 0); // the pointer was over the first row
    EXPECT_FALSE(first->PerformThread->Stop);
    EXPECT_TRUE(second->PerformThread->Stop) << "which is now the one at that place";
    second->Close();
    EXPECT_EQ(StatusText(), "0 operations running");
    EXPECT_THROW(List().Event_MouseDown(0, 0), std::exception);
}

// Entering a button repaints, and so does every move on it; leaving one does not. That is meant.
TEST_F(ListTest, OnlyMovesOnAButtonStepsWaitsAndAnUpdateRepaint) {
    List().Event_MouseMove(0, 0);
    const Ref<claFilePerformInfo> row = AddRow();
    const int x = StopButton(0).x(), y = StopButton(0).y();
    const auto showsButton = [](const Ref<Picture>& picture) {
        return Screen(List().Width() - kStopFromRight + 3, kStopTop + 7, 1, 1).pixel(0, 0) ==
               picture->Native().Composed(1).pixel(3, 7);
    };
    const auto look = [](int baseline) { return Screen(kTextLeft, baseline - 11, 400, 15); };
    EXPECT_TRUE(showsButton(picStop()));
    List().Event_MouseMove(x, y);
    EXPECT_TRUE(showsButton(picStopActive()));
    const QImage name = look(kNameBaseline);
    const std::pair<bool, std::function<void()>> steps[] = {{false, [&] { List().Event_MouseMove(0, y); }},
                                                            {true, [&] { List().Event_MouseMove(x, y); }},
                                                            {true, [&] { List().Event_MouseMove(x + 1, y); }},
                                                            {false, [&] { List().Event_MouseMove(0, y); }},
                                                            {true, [&] { row->Update(); }},
                                                            {true, [&] { row->SetStatus("MainStatusWaiting", 2); }},
                                                            {true, [&] { row->Bar->SetMaximum(0); }},
                                                            {true, [&] { row->Bar->SetMaximum(0); }}};
    for (const auto& [repaints, step] : steps) {
        const QImage status = look(kStatusBaseline);
        row->Status += "Waiting…"; // which waits for whatever repaints the list next
        step();
        EXPECT_EQ(look(kStatusBaseline) != status, repaints);
        EXPECT_EQ(look(kNameBaseline), name);
    }
}

TEST_F(ListTest, RowsStandInTheOrderInWhichTheirOperationsStarted) {
    std::vector<Ref<claThread>> threads(4);
    for (Ref<claThread>& thread : threads)
        thread = New<claThread>();
    for (const std::size_t i : {2U, 0U, 3U, 1U}) // each has measured its series when it gets its row
        List().AddInfo("film.mov", 7, 0, "Preparing…", picIconGlue(), threads[i]);
    for (std::size_t i = 0; i < threads.size(); ++i)
        EXPECT_EQ(List().Info.at(i)->PerformThread, threads[i]) << i;
}

TEST_F(ListTest, TheLowerEdgeCutsOffBars) {
    const QImage before = Screen(kBarLeft, 278, 20, 24); // left of the count
    for (int row = 1; row <= 6; ++row)
        AddRow();
    EXPECT_EQ(Screen(kBarLeft, 278, 20, 24), before);
    EXPECT_GT(List().Info.back()->Bar->Top() + List().Info.back()->Bar->Height(), 278);
}

// While i * i does not exceed the height: this is not the number of rows that fit, and it is meant. Bands stand in all
// of them, with rows and without.
TEST_F(ListTest, PaintsRowsByItsOwnBound) {
    for (const auto& [height, painted] : {std::pair(0, 1), {3, 2}, {4, 3}, {278, 17}, {288, 17}, {289, 18}}) {
        const auto list = New<claFilePerform>();
        list->SetWidth(100);
        list->SetHeight(height);
        for (int i = 0; i < 20; ++i) {
            list->Info.push_back(New<claFilePerformInfo>());
            list->Info.back()->Icon = picIconCut();
            list->Info.back()->Bar = New<ProgressBar>();
        }
        QImage image(100, 1000, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        Graphics graphics = MakeGraphics(painter);
        list->Event_Paint(graphics);
        for (int i = 0; i < 20; ++i) {
            EXPECT_EQ(list->Info[std::size_t(i)]->Bar->Top(), i < painted ? TopOf(i) + kBarTop : 0)
                << height << ", " << i;
            EXPECT_EQ(image.pixel(2, TopOf(i + 1) - 1), i % 2 == 1 && i < painted ? 0xFFEDF3FE : 0xFFFFFFFF) << i;
        }
    }
}

// Text that a strip leaves untouched is not set: none may miss a piece of what it does touch. Of these, all but the
// first leave the rows that a font says it needs, in whatever fonts the machine has.
TEST(Drawing, StripsMakeTheSameTextAsTheWhole) {
    constexpr int kWidth = 200, kHeight = 60;
    const QFont before = QApplication::font();
    for (const char* const family : {"DejaVu Sans", "Noto Sans CJK JP", "Serif", "Monospace"}) {
        QApplication::setFont(QFont(family));
        for (const char* const text : {"film|gjpq", "ÅẤỆ Ắặ", "日本語の映画", "العربيّة שִׁלּוּם", "ปู่ ญื้ ṩ",
                                       "Z\u0301\u0302\u0303\u030A\u0301g\u0323\u0331\u0324\u0330"}) {
            for (const auto& [size, density] : {std::pair(10.0F, 1), {12.0F, 1}, {10.0F, 2}}) {
                QImage whole(kWidth * density, kHeight * density, QImage::Format_RGB32);
                whole.setDevicePixelRatio(density);
                whole.fill(Qt::white);
                const auto draw = [size = size, text](QImage& image, const QRect& strip) {
                    QPainter painter(&image);
                    painter.setClipRect(strip);
                    Graphics graphics = MakeGraphics(painter);
                    graphics.TextSize = size;
                    graphics.DrawString(text, 5, 35, 0, false);
                };
                const QImage blank = whole;
                QImage strips = whole;
                draw(whole, {0, 0, kWidth, kHeight});
                for (int y = 0; y < kHeight; ++y)
                    draw(strips, {0, y, kWidth, 1});
                EXPECT_NE(whole, blank) << text;
                EXPECT_EQ(whole, strips) << text << " in " << family << " of " << size << " * " << density;
            }
        }
    }
    QApplication::setFont(before);
}

} // namespace
