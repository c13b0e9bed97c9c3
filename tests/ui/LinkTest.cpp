#include "framework/windows/Native.h"
#include "tests/support/TestFolder.h"
#include "tests/support/Waiting.h"
#include "ui/claStaticTextLink.h"
#include "ui/winAbout.h"

#include <QApplication>
#include <QImage>
#include <QLabel>

#include <gtest/gtest.h>

namespace {

TEST(Link, ShowsWhatThePointerDoesAndOpensItsAddressIfThePressIsReleasedInside) {
    const Ref<winAbout> about = winAbout::Instance();
    claStaticTextLink& link = *about->StaticText5();
    const int32_t width = link.Width(), height = link.Height();
    about->Show();
    ShowOnScreen();
    QLabel* widget = nullptr;
    for (auto* const label : NativeWindow::Of(*about).widget->findChildren<QLabel*>()) {
        if (label->text().toStdString() == link.Text())
            widget = label;
    }
    ASSERT_NE(widget, nullptr);
    QApplication::setActiveWindow(widget->window());
    EXPECT_FALSE(widget->hasFocus());
    const QImage unfocused = widget->grab().toImage();
    widget->setFocus();
    EXPECT_NE(widget->grab().toImage(), unfocused);
    const auto color = [widget] { return widget->palette().color(QPalette::WindowText).rgb() & 0xFFFFFFU; };
    EXPECT_EQ(color(), 0x0000FFU);
    link.Event_MouseEnter();
    EXPECT_EQ(color(), 0x54B0FFU);
    EXPECT_TRUE(link.Event_MouseDown(5, 5));
    EXPECT_EQ(color(), 0xFF0000U);
    link.Event_MouseDrag(0, 5);
    EXPECT_EQ(color(), 0x0000FFU) << "dragged out: not as under the pointer";
    link.Event_MouseDrag(1, 5);
    EXPECT_EQ(color(), 0xFF0000U);

    const std::tuple<int32_t, int32_t, bool> releases[] = {{1, 1, true},      {0, 1, false},
                                                           {1, 0, false},     {width - 1, height - 1, true},
                                                           {width, 1, false}, {1, height, false}};
    for (const auto& [x, y, opens] : releases) {
        link.Event_MouseUp(x, y);
        EXPECT_EQ(color(), 0x0000FFU) << "until the pointer next enters";
        EXPECT_EQ(AskedOfDesktop(), opens ? "url " + link.Text() + "\n" : "") << x << " " << y;
    }

    // A line from side to side of the text, in the colour of the link.
    const QImage picture = widget->grab().toImage();
    const int length = widget->fontMetrics().horizontalAdvance(widget->text()) - 4;
    QImage line(length, 1, picture.format());
    line.fill(0xFF0000FF);
    bool underlined = false;
    for (int y = 0; y < picture.height(); ++y)
        underlined = underlined || picture.copy((picture.width() - length) / 2, y, length, 1) == line;
    EXPECT_TRUE(underlined);
    about->Close();
}

} // namespace
