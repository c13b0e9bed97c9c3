#include "framework/windows/Native.h"
#include "tests/support/TestFolder.h"
#include "tests/support/Waiting.h"
#include "ui/claStaticTextLink.h"
#include "ui/winAbout.h"

#include <QImage>
#include <QLabel>

#include <gtest/gtest.h>

namespace {

class LinkTest : public testing::Test {
protected:
    LinkTest() {
        for (auto* const label : NativeWindow::Of(*about).widget->findChildren<QLabel*>()) {
            if (label->text().toStdString() == link.Text())
                widget = label;
        }
    }
    ~LinkTest() override { about->Close(); }

    void ExpectColor(uint32_t color, const char* when) const {
        EXPECT_EQ(widget->palette().color(QPalette::WindowText).rgb() & 0xFFFFFFU, color) << when;
    }

    const Ref<winAbout> about = winAbout::Instance();
    claStaticTextLink& link = *about->StaticText5();
    QLabel* widget = nullptr;
};

TEST_F(LinkTest, OpensItsAddressOnlyIfThePressIsReleasedInside) {
    const int32_t width = link.Width(), height = link.Height();
    const struct {
        int32_t x, y;
        bool opens;
    } releases[] = {{1, 1, true},      {0, 1, false},      {1, 0, false}, {width - 1, height - 1, true},
                    {width, 1, false}, {1, height, false}, {-1, 1, false}};
    for (const auto& [x, y, opens] : releases) {
        link.Event_MouseDown(5, 5);
        link.Event_MouseDrag(width + 9, 5); // out and back again
        link.Event_MouseUp(x, y);
        EXPECT_EQ(AskedOfDesktop(), opens ? "url " + link.Text() + "\n" : "") << x << " " << y;
    }
}

// A line from side to side of the text, in the colour of the link.
TEST_F(LinkTest, IsSeenToBeUnderlined) {
    about->Show();
    ShowOnScreen();
    const QImage picture = widget->grab().toImage();
    const int middle = picture.width() / 2, half = widget->fontMetrics().horizontalAdvance(widget->text()) / 2 - 2;
    bool underlined = false;
    for (int y = 0; y < picture.height(); ++y) {
        bool line = true;
        for (int x = middle - half; x < middle + half && line; ++x)
            line = (picture.pixel(x, y) & 0xFFFFFFU) == 0x0000FF;
        underlined = underlined || line;
    }
    EXPECT_TRUE(underlined);
}

TEST_F(LinkTest, TellsByItsColourWhatThePointerDoes) {
    ASSERT_NE(widget, nullptr);
    ExpectColor(0x0000FF, "at first");
    link.Event_MouseEnter();
    ExpectColor(0x54B0FF, "under the pointer");
    EXPECT_TRUE(link.Event_MouseDown(5, 5));
    ExpectColor(0xFF0000, "pressed");
    link.Event_MouseDrag(0, 5);
    ExpectColor(0x0000FF, "dragged out: not as under the pointer");
    link.Event_MouseDrag(1, 5);
    ExpectColor(0xFF0000, "dragged back");
    link.Event_MouseUp(1, 5);
    ExpectColor(0x0000FF, "released, until the pointer next enters");
    AskedOfDesktop();
}

} // namespace
