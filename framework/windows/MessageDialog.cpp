#include "framework/windows/MessageDialog.h"

#include "framework/windows/ModalRun.h"
#include "framework/windows/Native.h"
#include "framework/windows/Window.h"

#include <QApplication>
#include <QIcon>
#include <QLabel>
#include <QLayout>
#include <QMessageBox>
#include <QPainter>
#include <QPointer>
#include <QPushButton>

namespace {

constexpr int kIconSize = 48;
constexpr int kMargin = 20;
constexpr int kButtonWidth = 90;

struct Sign {
    const char* themeName; // of the desktop's own picture
    QColor color;
    QString letter;
};

Sign SignOf(DialogIcon icon) {
    switch (icon) {
    case DialogIcon::Warning:
        return {"dialog-warning", QColor(0xE8, 0x8A, 0x1A), QStringLiteral("!")};
    case DialogIcon::Error:
        return {"dialog-error", QColor(0xD6, 0x3C, 0x3C), QStringLiteral("\u00D7")};
    default:
        return {"dialog-information", QColor(0x14, 0x8A, 0x92), QStringLiteral("i")};
    }
}

// A disc with a letter, for a desktop that has no picture of its own.
QPixmap DrawSign(const Sign& sign, double density) {
    QPixmap pixmap(QSize(kIconSize, kIconSize) * density);
    pixmap.setDevicePixelRatio(density);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(sign.color);
    painter.drawEllipse(QRectF(2, 2, kIconSize - 4, kIconSize - 4));
    QFont font = QApplication::font();
    font.setPixelSize(kIconSize * 5 / 8);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QRect(0, 0, kIconSize, kIconSize), Qt::AlignCenter, sign.letter);
    return pixmap;
}

QPixmap SignPicture(DialogIcon icon, double density) {
    const Sign sign = SignOf(icon);
    const QIcon ofDesktop = QIcon::fromTheme(QLatin1String(sign.themeName));
    return ofDesktop.isNull() ? DrawSign(sign, density) : ofDesktop.pixmap(QSize(kIconSize, kIconSize), density);
}

// Qt has no way to its texts but by their names. There is no label for an explanation that is empty.
void SetLooks(const QMessageBox& box, const char* name, bool bold) {
    auto* const label = box.findChild<QLabel*>(QLatin1String(name));
    if (label == nullptr)
        return;
    label->setTextFormat(Qt::PlainText);
    label->setFont(SystemFont(!bold, bold));
}

QPushButton* AddButton(QMessageBox& box, const MessageDialogButton& button, QMessageBox::ButtonRole role) {
    QPushButton* const widget = box.addButton(ToCaption(button.Caption), role);
    widget->setFont(SystemFont(false, false));
    widget->setMinimumWidth(kButtonWidth);
    widget->setVisible(button.Visible);
    return widget;
}

// Returns the action button.
const QAbstractButton* Fill(QMessageBox& box, const MessageDialog& message) {
    box.setIconPixmap(SignPicture(message.Icon, box.devicePixelRatioF()));
    box.setText(ToParagraphs(message.Message));
    box.setInformativeText(ToParagraphs(message.Explanation));
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
    SetLooks(box, "qt_msgbox_label", true);
    SetLooks(box, "qt_msgbox_informativelabel", false);
    box.layout()->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    QPushButton* const action = AddButton(box, *message.ActionButton, QMessageBox::AcceptRole);
    box.setDefaultButton(action);
    box.setEscapeButton(AddButton(box, *message.CancelButton, QMessageBox::RejectRole));
    return action;
}

Ref<MessageDialogButton> Run(MessageDialog& message, QWidget* parent) {
    // The window beneath may go while the dialog is up, and takes its dialogs along.
    const QPointer<QMessageBox> box = new QMessageBox(parent);
    box->setWindowTitle(message.Title.empty() ? QApplication::applicationName() : ToScreen(message.Title));
    box->setAccessibleName(ToScreen(message.Message));
    box->setAccessibleDescription(ToScreen(message.Explanation));
    box->setWindowModality(Qt::ApplicationModal);
    const QAbstractButton* const action = Fill(*box, message);
    const ModalRun modalRun;
    box->exec();
    const bool accepted = box != nullptr && box->clickedButton() == action;
    delete box.data();
    return accepted ? message.ActionButton : message.CancelButton;
}

} // namespace

MessageDialog::MessageDialog() : ActionButton(New<MessageDialogButton>()), CancelButton(New<MessageDialogButton>()) {
    CancelButton->Visible = false;
}

Ref<MessageDialogButton> MessageDialog::ShowModal() {
    // A dialog of a program that is not in front still belongs to the one that it comes up over.
    QWidget* const front = QApplication::activeWindow();
    return Run(*this, front != nullptr ? front : QApplication::activeModalWidget());
}

Ref<MessageDialogButton> MessageDialog::ShowModalWithin(const Ref<Window>& parent) {
    return Run(*this, parent->Native().widget);
}
