#include "framework/windows/ProgressBar.h"

#include "framework/windows/Native.h"

#include <QPainter>
#include <QPixmap>
#include <QProgressBar>
#include <QStyle>
#include <QStyleOptionProgressBar>

#include <algorithm>

namespace {

// Looks like the desktop's bar, but has the desktop's style draw it twice only, empty and full: most of what watching a
// transfer costs would go into its round corners, again at every step.
class BarWidget : public QProgressBar {
public:
    using QProgressBar::QProgressBar;

protected:
    void paintEvent(QPaintEvent* event) override {
        if (maximum() == 0) { // without a measure; the style moves it
            QProgressBar::paintEvent(event);
            return;
        }
        if (full_.isNull() || full_.devicePixelRatio() != devicePixelRatio()) {
            empty_ = DrawnByStyle(minimum());
            full_ = DrawnByStyle(maximum());
        }
        const auto filled = static_cast<int>(int64_t{width()} * value() / maximum());
        QPainter painter(this);
        painter.drawPixmap(0, 0, empty_);
        painter.setClipRect(QStyle::visualRect(layoutDirection(), rect(), QRect(0, 0, filled, height())));
        painter.drawPixmap(0, 0, full_);
    }

    void changeEvent(QEvent* event) override {
        full_ = {}; // of the style, the colours or the direction
        QProgressBar::changeEvent(event);
    }

    void resizeEvent(QResizeEvent* event) override {
        full_ = {};
        QProgressBar::resizeEvent(event);
    }

private:
    QPixmap DrawnByStyle(int progress) const {
        QPixmap picture(size() * devicePixelRatio());
        picture.setDevicePixelRatio(devicePixelRatio());
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        QStyleOptionProgressBar option;
        initStyleOption(&option);
        option.progress = progress;
        style()->drawControl(QStyle::CE_ProgressBar, &option, &painter, this);
        return picture;
    }

    QPixmap empty_, full_;
};

} // namespace

void ProgressBar::SetValue(int32_t value) {
    if (value_.exchange(value) != value)
        RequestUpdate();
}

void ProgressBar::SetMaximum(int32_t maximum) {
    maximum_ = maximum;
    RequestUpdate(); // also of 0 at 0: a step without a measure is one too
}

void ProgressBar::MakeWidget(NativeControl& native) {
    auto* const bar = new BarWidget(native.parent);
    bar->setTextVisible(false);
    bar->setRange(0, Maximum());
    bar->setValue(Value());
    // The canvas beneath gets the pointer's moves and the drops.
    bar->setAttribute(Qt::WA_TransparentForMouseEvents);
    native.widget = bar;
}

void ProgressBar::UpdateScreen() {
    Control::UpdateScreen();
    if (Native() == nullptr || !Native()->widget)
        return;
    auto* const bar = static_cast<QProgressBar*>(Native()->widget.data());
    const int maximum = std::max(0, Maximum());
    // The toolkit's bar would paint itself at each change, and what lies beneath along with it.
    bar->setUpdatesEnabled(false);
    bar->setRange(0, maximum);
    if (maximum > 0)
        bar->setValue(std::clamp(Value(), 0, maximum));
    bar->setUpdatesEnabled(true);
    UncoverBeneath();
}
