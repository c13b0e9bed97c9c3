#include "framework/windows/Label.h"

#include "framework/threads/ExceptionBoundary.h"
#include "framework/windows/Accessibility.h"
#include "framework/windows/Native.h"

#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOption>

#include <array>

namespace {

constexpr std::array kAlignments{Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};

// Hands the pointer's doings to the label.
class LabelWidget : public QLabel, public LinkText {
public:
    LabelWidget(QWidget* parent, Label& label) : QLabel(parent), label_(label) {}

    void Press() override {
        ExceptionBoundary::Run("link", [this] { label_.Event_KeyPress(); });
    }

protected:
    void keyPressEvent(QKeyEvent* event) override {
        const bool presses =
            event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space;
        if (label_.IsLink && presses)
            Press();
        else
            QLabel::keyPressEvent(event);
    }

    // Qt lays a label that takes the focus out as a document: a pixel lower, where its underline is cut off.
    void paintEvent(QPaintEvent* event) override {
        if (!label_.IsLink) {
            QLabel::paintEvent(event);
            return;
        }
        QPainter painter(this);
        if (hasFocus()) {
            QStyleOptionFocusRect option;
            option.initFrom(this);
            style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this); // beneath: it may be filled
        }
        style()->drawItemText(&painter, rect(), static_cast<int>(alignment()), palette(), isEnabled(), text(),
                              foregroundRole());
    }

    void enterEvent(QEnterEvent*) override {
        ExceptionBoundary::Run("mouse enter", [this] { label_.Event_MouseEnter(); });
    }

    void leaveEvent(QEvent*) override {
        ExceptionBoundary::Run("mouse exit", [this] { label_.Event_MouseExit(); });
    }

    void mousePressEvent(QMouseEvent* event) override {
        if (event->button() == Qt::LeftButton)
            ExceptionBoundary::Run("mouse down", [&] { pressed_ = label_.Event_MouseDown(XOf(*event), YOf(*event)); });
    }

    void mouseMoveEvent(QMouseEvent* event) override {
        if (pressed_)
            ExceptionBoundary::Run("mouse drag", [&] { label_.Event_MouseDrag(XOf(*event), YOf(*event)); });
    }

    void mouseReleaseEvent(QMouseEvent* event) override {
        if (pressed_ && event->button() == Qt::LeftButton) {
            pressed_ = false;
            ExceptionBoundary::Run("mouse up", [&] { label_.Event_MouseUp(XOf(*event), YOf(*event)); });
        }
    }

private:
    static int32_t XOf(const QMouseEvent& event) { return static_cast<int32_t>(event.position().x()); }
    static int32_t YOf(const QMouseEvent& event) { return static_cast<int32_t>(event.position().y()); }

    Label& label_;
    bool pressed_ = false;
};

} // namespace

std::string Label::Text() const {
    const std::lock_guard lock(mutex_);
    return text_;
}

void Label::SetText(const std::string& text) {
    {
        const std::lock_guard lock(mutex_);
        text_ = text;
    }
    RequestUpdate();
}

void Label::SetTextColor(uint32_t color) {
    textColor_ = color;
    ApplyColor();
}

void Label::ApplyColor() {
    QWidget* const label = WidgetOf(*this);
    if (!textColor_ || label == nullptr)
        return;
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, QColor(QRgb(*textColor_)));
    label->setPalette(palette);
}

void Label::SetLabelled(const Control& control) {
    if (auto* const label = WidgetOf<QLabel>(*this))
        label->setBuddy(WidgetOf(control));
    ApplyText();
}

void Label::SetFingerPointer() {
    if (QWidget* const label = WidgetOf(*this))
        label->setCursor(Qt::PointingHandCursor);
}

void Label::MakeWidget(NativeControl& native) {
    auto* const label = new LabelWidget(native.parent, *this);
    label->setTextFormat(Qt::PlainText);
    QFont font = SystemFont(TextFont == "SmallSystem", Bold);
    font.setUnderline(Underline);
    label->setFont(font);
    label->setWordWrap(Multiline);
    label->setAlignment((Multiline ? Qt::AlignTop : Qt::AlignVCenter) |
                        kAlignments[static_cast<std::size_t>(TextAlign)]);
    label->setFocusPolicy(IsLink ? Qt::TabFocus : Qt::NoFocus);
    native.widget = label;
    ApplyText();
    ApplyColor();
}

void Label::UpdateScreen() {
    Control::UpdateScreen();
    ApplyText();
}

void Label::ApplyText() {
    auto* const label = WidgetOf<QLabel>(*this);
    if (label == nullptr)
        return;
    QString text = Multiline ? ToParagraphs(Text()) : ToScreen(Text());
    if (label->buddy() != nullptr)
        text.replace(u'&', QStringLiteral("&&")); // Qt reads a mnemonic in what names a control
    label->setText(text);
}
