#include "framework/windows/HeldKeys.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenuBar>
#include <QPointer>

namespace {

// What is about to get the keys. A menu or a list that has come up goes before all windows.
QWidget* Receiver() {
    QWidget* const popup = QApplication::activePopupWidget();
    if (popup == nullptr)
        return QApplication::focusWidget();
    return popup->focusWidget() != nullptr ? popup->focusWidget() : popup;
}

bool IsArrow(int key) {
    return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_Left || key == Qt::Key_Right;
}

// Return and Escape are the dialog's, wherever in it the focus is.
bool IsAnswer(int key) {
    return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape;
}

bool RepeatsIn(const QWidget* widget, int key) {
    if (qobject_cast<const QMenu*>(widget) != nullptr || qobject_cast<const QMenuBar*>(widget) != nullptr)
        return IsArrow(key);
    const bool isTextOrList = qobject_cast<const QLineEdit*>(widget) != nullptr ||
                              qobject_cast<const QComboBox*>(widget) != nullptr ||
                              qobject_cast<const QAbstractScrollArea*>(widget) != nullptr;
    return isTextOrList && !IsAnswer(key);
}

class HeldKeys : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* target, QEvent* event) override {
        if (!target->isWindowType())
            return false; // on its way inside a window, which it has been let into
        switch (event->type()) {
        case QEvent::KeyPress:
        case QEvent::ShortcutOverride: // asks before a press who claims it, as it may be a shortcut
            return Swallows(static_cast<QKeyEvent&>(*event));
        case QEvent::KeyRelease:
            NoteRelease(static_cast<const QKeyEvent&>(*event));
            return false;
        default:
            return false;
        }
    }

private:
    bool Swallows(QKeyEvent& key) {
        if (!IsRepeat(key)) {
            pressedIn_ = Receiver();
            return false;
        }
        const bool isPress = key.type() == QEvent::KeyPress;
        if (isPress && pressedIn_ == Receiver() && RepeatsIn(pressedIn_, key.key()))
            return false;
        key.accept(); // a key that somebody claims fires no shortcut
        return true;
    }

    // X11 tells of a repeat as of a release and a press at the same moment. Qt marks them as such only if both are
    // there when it looks, and often they are not.
    bool IsRepeat(const QKeyEvent& key) const {
        const bool followsItsRelease =
            key.nativeScanCode() != 0 && key.nativeScanCode() == released_ && key.timestamp() == releasedAt_;
        return key.isAutoRepeat() || followsItsRelease;
    }

    void NoteRelease(const QKeyEvent& key) {
        released_ = key.nativeScanCode();
        releasedAt_ = key.timestamp();
    }

    QPointer<QWidget> pressedIn_;
    uint32_t released_ = 0; // the key that was released last, by its place on the keyboard
    uint64_t releasedAt_ = 0;
};

} // namespace

void IgnoreHeldKeys() {
    qApp->installEventFilter(new HeldKeys(qApp));
}
