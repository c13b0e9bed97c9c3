#include "framework/windows/ComboBox.h"

#include "framework/text/Text.h"
#include "framework/threads/ExceptionBoundary.h"
#include "framework/windows/Native.h"

#include <QComboBox>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>

namespace {

constexpr int kVisibleRows = 12;

// The control character by which an editing key is told to the program; 0 for a key that neither types nor edits.
int32_t EditingCode(int key) {
    switch (key) {
    case Qt::Key_Home:
        return 1;
    case Qt::Key_End:
        return 4;
    case Qt::Key_Backspace:
        return 8;
    case Qt::Key_PageUp:
        return 11;
    case Qt::Key_PageDown:
        return 12;
    case Qt::Key_Left:
        return 28;
    case Qt::Key_Right:
        return 29;
    case Qt::Key_Up:
        return 30;
    case Qt::Key_Down:
        return 31;
    case Qt::Key_Delete:
        return 127;
    default:
        return 0;
    }
}

// Keys that are the dialog's business, or a choice of the user's rather than typing.
bool PassesBy(const QKeyEvent& event) {
    const Qt::KeyboardModifiers held = event.modifiers() & ~Qt::KeypadModifier;
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Escape:
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return true;
    case Qt::Key_X:
    case Qt::Key_C:
    case Qt::Key_V:
    case Qt::Key_A:
        return held == Qt::ControlModifier; // the Edit menu's
    case Qt::Key_Down:
        return held == Qt::AltModifier; // opens the list
    default:
        return false;
    }
}

// The key as text, empty if it is none of the field's business.
std::string KeyText(const QKeyEvent& event) {
    if (PassesBy(event))
        return {};
    const int32_t editing = EditingCode(event.key());
    if (editing != 0)
        return Chr(editing);
    return FromScreen(event.text());
}

} // namespace

// Stands in front of the field and shows each key to the program first.
class KeyFilter : public QObject {
public:
    KeyFilter(QObject* parent, ComboBox& box) : QObject(parent), box_(box) {}

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::KeyPress) {
            const std::string key = KeyText(*static_cast<QKeyEvent*>(event));
            return !key.empty() && box_.Rejects(key);
        }
        if (event->type() == QEvent::InputMethod)
            FilterComposed(*static_cast<QInputMethodEvent*>(event));
        return false;
    }

private:
    // What is rejected leaves the event, which goes on: it also takes away what was shown while it was composed.
    void FilterComposed(QInputMethodEvent& event) {
        const std::string typed = FromScreen(event.commitString());
        for (int32_t i = 1; i <= Len(typed); ++i) {
            if (box_.Rejects(Mid(typed, i, 1))) {
                event.setCommitString(QString());
                return;
            }
        }
    }

    ComboBox& box_;
};

std::string ComboBox::Text() const {
    const auto* const box = WidgetOf<QComboBox>(*this);
    return box == nullptr ? std::string() : FromScreen(box->currentText());
}

void ComboBox::SetText(const std::string& text) {
    if (auto* const box = WidgetOf<QComboBox>(*this))
        box->setEditText(ToScreen(text));
}

bool ComboBox::Rejects(const std::string& key) {
    bool rejects = false;
    ExceptionBoundary::Run("key down", [&] { rejects = KeyDown && KeyDown(key); });
    return rejects;
}

void ComboBox::MakeWidget(NativeControl& native) {
    auto* const box = new QComboBox(native.parent);
    box->setFont(SystemFont(false, false));
    box->setEditable(true);
    box->setInsertPolicy(QComboBox::NoInsert);
    box->setCompleter(nullptr);
    box->setMaxVisibleItems(kVisibleRows);
    for (const std::string& row : InitialValue)
        box->addItem(ToScreen(row));
    box->setCurrentIndex(ListIndex);
    box->lineEdit()->selectAll(); // for what is typed to take its place, here and after each choice
    box->installEventFilter(new KeyFilter(box, *this));
    QObject::connect(box, &QComboBox::activated, box, [box] {
        if (box->hasFocus())
            box->lineEdit()->selectAll();
    });
    QObject::connect(box, &QComboBox::editTextChanged, box, [this] {
        ExceptionBoundary::Run("text change", [self = Self(this)] {
            if (self->TextChanged)
                self->TextChanged();
        });
    });
    native.widget = box;
}
