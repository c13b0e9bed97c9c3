#pragma once

// Qt's side of windows and controls. Included by the framework's sources only.

#include "framework/base/Ref.h"
#include "framework/windows/Control.h"

#include <QEventLoop>
#include <QMainWindow>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <string>
#include <string_view>
#include <vector>

class Window;

struct NativeControl {
    QWidget* parent = nullptr;
    QPointer<QWidget> widget;
};

// The widget behind a control, which the control has made as a W. Nil before the window has made it and after Close.
template <class W = QWidget>
W* WidgetOf(const Control& control) {
    const NativeControl* const native = control.Native();
    return native == nullptr ? nullptr : static_cast<W*>(native->widget.data());
}

// The area of a window that holds the controls; what it paints lies beneath them.
class ContentWidget : public QWidget {
public:
    ContentWidget(::Window& window, QSize laidOut) : window_(window), laidOut_(laidOut) {}

protected:
    void paintEvent(QPaintEvent*) override;
    void resizeEvent(QResizeEvent*) override;

private:
    ::Window& window_;
    QSize laidOut_; // the size that the controls stand for now
};

class WindowWidget : public QMainWindow {
public:
    explicit WindowWidget(::Window& window) : window_(window) {}

protected:
    void changeEvent(QEvent*) override;
    void closeEvent(QCloseEvent*) override;
    void showEvent(QShowEvent*) override;
    void keyPressEvent(QKeyEvent*) override;

private:
    void Answer(bool confirms);

    ::Window& window_;
};

struct NativeWindow {
    QPointer<WindowWidget> widget;
    QPointer<ContentWidget> content;
    std::vector<QEventLoop*> modalRuns; // innermost last

    void EndModalRuns() const {
        for (QEventLoop* run : modalRuns)
            run->quit();
    }
};

// Text for the screen: what is not valid is made so, and of a text of more than 64 KiB the beginning is shown.
QString ToScreen(std::string_view text);
// The same with its line breaks kept.
QString ToParagraphs(const std::string& text);
// A caption of Qt's buttons and menus, in which "&" marks a mnemonic: ours have none.
QString ToCaption(std::string_view text);
std::string FromScreen(const QString& text);

// Deletes a widget from the event loop. Until then it may still get events, so it holds the object that it reports to.
void DeleteLater(QWidget& widget, const Ref<Object>& owner);

// The fonts that controls use, by the names of their layouts: "System" and "SmallSystem".
QFont SystemFont(bool small, bool bold);
