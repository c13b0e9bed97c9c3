#include "framework/windows/ProgressBar.h"

#include "framework/base/Immortal.h"
#include "framework/windows/Native.h"

#include <QBasicTimer>
#include <QPainter>
#include <QPixmap>
#include <QPointer>
#include <QProgressBar>
#include <QStyle>
#include <QStyleOptionProgressBar>

#include <algorithm>
#include <chrono>
#include <utility>
#include <vector>

namespace {

constexpr std::chrono::milliseconds kMove{250};
constexpr int kMovesAcross = 16;
constexpr int kChunksInBar = 6;

// Moves all bars without a measure in step. A bar asks for each move while it is painted: so those stand still that
// nobody sees, and the timer with them.
class BusyAnimation : public QObject {
public:
    static BusyAnimation& Instance() {
        static const Immortal<BusyAnimation> animation;
        return *animation;
    }

    // How far the bars have moved, from 0 to kMovesAcross and back again.
    int Place() const { return moves_ < kMovesAcross ? moves_ : 2 * kMovesAcross - moves_; }

    // Has the bar painted again with the next move.
    void MoveLater(QWidget& bar) {
        if (std::find(bars_.begin(), bars_.end(), &bar) == bars_.end())
            bars_.emplace_back(&bar);
        if (!timer_.isActive())
            timer_.start(kMove.count(), Qt::CoarseTimer, this);
    }

protected:
    void timerEvent(QTimerEvent*) override {
        timer_.stop();
        moves_ = (moves_ + 1) % (2 * kMovesAcross);
        for (const QPointer<QWidget>& bar : std::exchange(bars_, {})) {
            if (bar)
                bar->update();
        }
    }

private:
    QBasicTimer timer_;
    std::vector<QPointer<QWidget>> bars_;
    int moves_ = 0;
};

bool IsDark(const QPalette& palette) {
    return palette.window().color().lightness() < 128;
}

// The desktop's colour of what is filled, on a light ground.
QPalette Lightened(const QPalette& dark) {
    QPalette light(QColor(0xEF, 0xEF, 0xEF));
    light.setColor(QPalette::Highlight, dark.highlight().color());
    light.setCurrentColorGroup(dark.currentColorGroup());
    return light;
}

// Looks like the desktop's bar, but has the desktop's style draw it twice only, empty and full: most of what watching a
// transfer costs would go into its round corners, again at every step. Without a measure, a chunk goes to and fro.
class BarWidget : public QProgressBar {
public:
    BarWidget(QWidget* parent, bool onLight) : QProgressBar(parent), onLight_(onLight) {}

protected:
    void paintEvent(QPaintEvent*) override {
        if (empty_.isNull() || empty_.devicePixelRatio() != devicePixelRatio()) {
            empty_ = DrawnByStyle(size(), 0);
            full_ = DrawnByStyle(size(), 1);
            chunk_ = DrawnByStyle({ChunkWidth(), height()}, 1);
        }
        QPainter painter(this);
        painter.drawPixmap(0, 0, empty_);
        if (maximum() == 0)
            PaintChunk(painter);
        else
            PaintFilled(painter);
    }

    void changeEvent(QEvent* event) override {
        empty_ = {}; // of the style, the colours or the direction
        QProgressBar::changeEvent(event);
    }

    void resizeEvent(QResizeEvent* event) override {
        empty_ = {};
        QProgressBar::resizeEvent(event);
    }

private:
    int ChunkWidth() const { return std::max(1, width() / kChunksInBar); }

    void PaintFilled(QPainter& painter) const {
        const auto filled = static_cast<int>(int64_t{width()} * value() / maximum());
        painter.setClipRect(QStyle::visualRect(layoutDirection(), rect(), QRect(0, 0, filled, height())));
        painter.drawPixmap(0, 0, full_);
    }

    void PaintChunk(QPainter& painter) {
        const int across = width() - ChunkWidth();
        painter.drawPixmap(across * BusyAnimation::Instance().Place() / kMovesAcross, 0, chunk_);
        if (style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0)
            BusyAnimation::Instance().MoveLater(*this);
    }

    QPixmap DrawnByStyle(QSize size, int progress) const {
        QPixmap picture(size * devicePixelRatio());
        picture.setDevicePixelRatio(devicePixelRatio());
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        QStyleOptionProgressBar option;
        initStyleOption(&option);
        option.rect = QRect(QPoint(), size);
        option.minimum = 0;
        option.maximum = 1;
        option.progress = progress;
        if (onLight_ && IsDark(option.palette))
            option.palette = Lightened(option.palette);
        style()->drawControl(QStyle::CE_ProgressBar, &option, &painter, this);
        return picture;
    }

    const bool onLight_;
    QPixmap empty_, full_, chunk_;
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
    auto* const bar = new BarWidget(native.parent, OnLight);
    bar->setTextVisible(false);
    bar->setRange(0, Maximum());
    bar->setValue(Value());
    // The canvas beneath gets the pointer's moves and the drops.
    bar->setAttribute(Qt::WA_TransparentForMouseEvents);
    native.widget = bar;
}

void ProgressBar::UpdateScreen() {
    Control::UpdateScreen();
    auto* const bar = WidgetOf<QProgressBar>(*this);
    if (bar == nullptr)
        return;
    const int maximum = std::max(0, Maximum());
    // Qt's bar would paint itself at each change, and what lies beneath along with it.
    bar->setUpdatesEnabled(false);
    bar->setRange(0, maximum);
    if (maximum > 0)
        bar->setValue(std::clamp(Value(), 0, maximum));
    bar->setUpdatesEnabled(true);
    RepaintBeneath();
}
