#include "framework/threads/MainThread.h"
#include "framework/windows/Canvas.h"
#include "framework/windows/Graphics.h"
#include "framework/windows/Label.h"
#include "framework/windows/Native.h"
#include "framework/windows/ProgressBar.h"
#include "framework/windows/Window.h"
#include "tests/support/Waiting.h"
#include "tests/support/Worker.h"
#include "ui/claToolbar.h"
#include "ui/winMain.h"

#include <QLabel>
#include <QProgressBar>
#include <QToolBar>

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;

// Counts how often it shows what has changed.
template <class Base>
class Counting : public Base {
public:
    int updates = 0;

    QWidget* Widget() const { return this->Native()->widget.data(); }

protected:
    void UpdateScreen() override {
        ++updates;
        Base::UpdateScreen();
    }
};

class TestWindow : public Window {
public:
    const Ref<Canvas> canvas = New<Canvas>();
    const Ref<Counting<ProgressBar>> bar = New<Counting<ProgressBar>>();
    const Ref<Counting<Label>> label = New<Counting<Label>>();

    static Ref<TestWindow> Open() {
        const auto window = New<TestWindow>();
        window->bar->SetMaximum(5); // a bar without a measure moves by itself
        window->Make();
        window->Show();
        ShowOnScreen();
        return window;
    }

protected:
    void CreateControls() override {
        Add(canvas, {.Width = 400, .Height = 200});
        Add(bar, {.Left = 10, .Top = 10, .Width = 300, .Height = 12, .LockLeft = true, .LockRight = true});
        Add(label, {.Left = 10, .Top = 220, .Width = 300, .Height = 20, .LockRight = true, .LockBottom = true});
    }
};

constexpr int kWrites = 100000;

TEST(Windows, AControlUpdatesOncePerFrameHoweverOftenAWorkerWritesToIt) {
    const Ref<TestWindow> window = TestWindow::Open();
    window->bar->updates = window->label->updates = 0;
    const auto begin = std::chrono::steady_clock::now();
    New<Worker>([bar = window->bar, label = window->label](Worker&) {
        bar->SetMaximum(kWrites);
        for (int i = 1; i <= kWrites; ++i) {
            bar->SetValue(i);
            label->SetText(std::to_string(i));
        }
    })->Run();
    EXPECT_TRUE(WaitForWorkers());
    ShowOnScreen();
    const auto frames = (std::chrono::steady_clock::now() - begin) / 16ms + 1;
    EXPECT_LE(window->bar->updates, frames);
    EXPECT_LE(window->label->updates, frames);
    const auto* const bar = static_cast<QProgressBar*>(window->bar->Widget());
    EXPECT_EQ(bar->value(), kWrites);
    EXPECT_EQ(static_cast<QLabel*>(window->label->Widget())->text().toInt(), kWrites);
    for (const auto& [value, maximum] : {std::pair(7, 5), {INT32_MAX, INT32_MAX}, {-1, 10}, {0, INT32_MIN}}) {
        window->bar->SetValue(value);
        window->bar->SetMaximum(maximum);
        ShowOnScreen();
        EXPECT_EQ(window->bar->Value(), value);
        EXPECT_LE(bar->value(), bar->maximum());
    }
    NativeWindow::Of(*window).widget->resize(450, 370);
    EXPECT_TRUE(WaitUntil([&] { return window->Width() == 450; }));
    EXPECT_EQ(bar->geometry(), QRect(10, 10, 350, 12)) << "held at both sides";
    EXPECT_EQ(window->label->Widget()->geometry(), QRect(60, 290, 300, 20)) << "held right and below";
    window->Close();
}

// What the bars stand on shows through them. A paint serves no events, and one that fails harms nobody.
TEST(Windows, ACanvasIsRepaintedOnceWhenBarsAboveItChangeMoveOrGo) {
    const Ref<TestWindow> window = TestWindow::Open();
    const auto second = New<ProgressBar>();
    second->SetMaximum(5);
    window->Add(second, {.Left = 10, .Top = 30, .Width = 300, .Height = 12});
    int paints = 0;
    bool served = false, servedWithin = false;
    window->canvas->Paint = [&](Graphics&) {
        ++paints;
        served = false;
        PostToMainThread([&served] { served = true; });
        YieldForAWhile();
        servedWithin = servedWithin || served;
        throw NilObjectException();
    };
    using Change = void (*)(ProgressBar&);
    const Change changes[] = {[](ProgressBar& bar) { bar.SetValue(1); }, [](ProgressBar& bar) { bar.SetMaximum(9); },
                              [](ProgressBar& bar) { bar.SetTop(bar.Top() + 50); },
                              [](ProgressBar& bar) { bar.Window()->Refresh(true); }};
    for (const Change change : changes) {
        ShowOnScreen();
        paints = 0;
        change(*window->bar);
        change(*second);
        ShowOnScreen();
        EXPECT_EQ(paints, 1);
    }
    paints = 0;
    second->Close();
    second->SetValue(5); // as a worker may that has not noticed yet
    ShowOnScreen();
    EXPECT_GE(paints, 1);
    EXPECT_TRUE(served);
    EXPECT_FALSE(servedWithin);
    window->Close();
}

TEST(Windows, AToolbarIsPlacedByItsWindowAndShowsNoToolTips) {
    const Ref<winMain> window = winMain::Instance();
    QWidget* const shown = NativeWindow::Of(*window).widget;
    const auto* const bar = shown->findChild<QToolBar*>();
    const QRect place = bar->geometry();
    EXPECT_EQ(place.width(), shown->width());
    const int32_t height = window->Height();
    shown->resize(shown->width(), shown->height() + 50);
    EXPECT_TRUE(WaitUntil([&] { return window->Height() == height + 50; }));
    window->tolMain()->SetLeft(5);
    ShowOnScreen();
    EXPECT_EQ(bar->geometry(), place);
    EXPECT_EQ(bar->widgetForAction(bar->actions().constFirst())->toolTip(), QString());
}

} // namespace
