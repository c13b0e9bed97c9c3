#include "framework/windows/Native.h"
#include "tests/support/TestFolder.h"
#include "tests/support/Waiting.h"
#include "ui/claStaticTextLink.h"
#include "ui/winAbout.h"

#include <QApplication>
#include <QImage>

#include <gtest/gtest.h>

namespace {

TEST(Link, ShowsWhatThePointerDoesAndOpensIfReleasedInside) {
    const Ref<winAbout> about = winAbout::Instance();
    claStaticTextLink& link = *about->StaticText5();
    const int32_t right = link.Width() - 1, bottom = link.Height() - 1;
    about->Show();
    ShowOnScreen();
    const std::tuple<std::function<void()>, uint32_t, bool> steps[] = {
        {[&] { link.Event_MouseExit(); }, 0x0000FF, false},
        {[&] { link.Event_MouseEnter(); }, 0x54B0FF, false},
        {[&] { EXPECT_TRUE(link.Event_MouseDown(5, 5)); }, 0xFF0000, false},
        {[&] { link.Event_MouseDrag(0, 5); }, 0x0000FF, false}, // dragged out: not as under the pointer
        {[&] { link.Event_MouseDrag(1, 5); }, 0xFF0000, false},
        {[&] { link.Event_MouseUp(1, 1); }, 0x0000FF, true},
        {[&] { link.Event_MouseUp(0, 1); }, 0x0000FF, false},
        {[&] { link.Event_MouseUp(1, 0); }, 0x0000FF, false},
        {[&] { link.Event_MouseUp(right, bottom); }, 0x0000FF, true},
        {[&] { link.Event_MouseUp(right + 1, 1); }, 0x0000FF, false},
        {[&] { link.Event_MouseUp(1, bottom + 1); }, 0x0000FF, false}};
    QWidget& widget = *about->Native().content->childAt(25, 235);
    for (const auto& [step, color, opens] : steps) {
        step();
        EXPECT_EQ(widget.palette().color(QPalette::WindowText).rgb() & 0xFFFFFFU, color)
            << &step - &std::get<0>(*steps);
        EXPECT_EQ(AskedOfDesktop(), opens ? "url " + link.Text() + "\n" : "");
    }
    QApplication::setActiveWindow(widget.window());
    EXPECT_FALSE(widget.hasFocus());
    const QImage unfocused = widget.grab().toImage();
    widget.setFocus();
    EXPECT_NE(widget.grab().toImage(), unfocused);
    about->Close();
}

} // namespace
