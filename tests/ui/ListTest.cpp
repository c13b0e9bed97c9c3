#include "engine/claThread.h"
#include "framework/windows/Native.h"
#include "framework/windows/NativeGraphics.h"
#include "framework/windows/ProgressBar.h"
#include "tests/support/ProgramTest.h"
#include "ui/Pictures.h"
#include "ui/winMain.h"

#include <QEvent>

namespace {

class ListTest : public ProgramTest {
protected:
    static Ref<claFilePerformInfo> AddRow(const std::string& name = "film") {
        return List().AddInfo(name, 7, 3, "Preparing…", picIconCut(), New<claThread>());
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

TEST_F(ListTest, ARowComesWithItsBarAndGoesWithIt) {
    EXPECT_EQ(StatusText(), "0 operations running");
    const Ref<claFilePerformInfo> first = AddRow("film.mov");
    EXPECT_EQ(StatusText(), "1 operation running");
    EXPECT_EQ(std::pair(first->Bar->Value(), first->Bar->Maximum()), std::pair(3, 7));
    EXPECT_EQ(first->Bar->Top(), -57) << "out of sight until it is painted into its row";
    const Ref<claFilePerformInfo> second = AddRow();
    EXPECT_EQ(StatusText(), "2 operations running");
    ShowOnScreen();
    EXPECT_EQ(std::pair(first->Bar->Top(), second->Bar->Top()), std::pair(20, 70));
    first->Close();
    EXPECT_EQ(StatusText(), "1 operation running");
    EXPECT_TRUE(first->Bar->Window().IsNil());
    ShowOnScreen();
    EXPECT_EQ(second->Bar->Top(), 20) << "the rows below move up";
    first->Close(); // a row that is no longer there takes nothing else away
    EXPECT_EQ(List().Info, std::vector<Ref<claFilePerformInfo>>{second});
    second->Close();
    EXPECT_EQ(StatusText(), "0 operations running");
}

TEST_F(ListTest, TheButtonIsOpenOnAllSidesAndGoesByTheLastMoveAlone) {
    const Ref<claFilePerformInfo> first = AddRow();
    const Ref<claFilePerformInfo> second = AddRow();
    const int32_t right = List().Width();
    for (const auto& [x, y] : {std::pair(29, 70), {16, 83}})
        EXPECT_TRUE(Stops(second, right - x, y)) << x << ", " << y;
    for (const auto& [x, y] : {std::pair(30, 76), {15, 76}, {22, 69}, {22, 84}, {22, 26}})
        EXPECT_FALSE(Stops(second, right - x, y)) << x << ", " << y;
    first->PerformThread->Stop = false;
    first->Close();
    List().Event_MouseDown(0, 0); // the pointer was over the first row
    EXPECT_FALSE(first->PerformThread->Stop);
    EXPECT_TRUE(second->PerformThread->Stop) << "which is now the one at that place";
    second->Close();
    EXPECT_THROW(List().Event_MouseDown(0, 0), std::exception);
}

class PaintCount : public QObject {
public:
    int paints = 0;
    bool eventFilter(QObject*, QEvent* event) override {
        paints += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

// Entering a button repaints, and so does every move on it; leaving one does not. That is meant.
TEST_F(ListTest, OnlyMovesOnAButtonAndAnUpdateRepaint) {
    const Ref<claFilePerformInfo> row = AddRow();
    ShowOnScreen();
    PaintCount count;
    QWidget* const list = NativeWindow::Of(*winMain::Instance()).content->childAt(1, 1);
    const QImage idle = list->grab().toImage();
    list->installEventFilter(&count);
    for (const auto& [fromRight, repaints] : {std::pair(100, false), {22, true}, {21, true}, {100, false}}) {
        count.paints = 0;
        List().Event_MouseMove(List().Width() - fromRight, 26);
        ShowOnScreen();
        EXPECT_EQ(count.paints > 0, repaints) << fromRight;
        EXPECT_EQ(list->grab().toImage() != idle, repaints) << fromRight << ": the button shows the pointer";
    }
    count.paints = 0;
    row->Status = "Waiting…";
    ShowOnScreen();
    EXPECT_EQ(count.paints, 0) << "a new status waits for whatever repaints the list next";
    row->Update();
    ShowOnScreen();
    EXPECT_GT(count.paints, 0);
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
            list->Info.back()->Name = "not\xFFutf8\n" + std::string(200, 'm'); // nobody cuts a long one
            list->Info.back()->Icon = picIconCut();
            list->Info.back()->Bar = New<ProgressBar>();
        }
        QImage image(100, 1000, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        Graphics graphics = MakeGraphics(painter);
        list->Event_Paint(graphics);
        for (int i = 0; i < 20; ++i) {
            EXPECT_EQ(list->Info[std::size_t(i)]->Bar->Top(), i < painted ? 50 * i + 20 : 0) << height << ", " << i;
            EXPECT_EQ(image.pixel(2, 50 * i + 49), i % 2 == 1 && i < painted ? 0xFFEDF3FE : 0xFFFFFFFF) << i;
        }
    }
}

} // namespace
