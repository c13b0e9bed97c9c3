#include "framework/windows/MessageDialog.h"

#include "framework/base/BuildVariant.h"
#include "framework/windows/ModalRun.h"
#include "framework/windows/Native.h"
#include "framework/windows/Window.h"

#include <QApplication>
#include <QDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPainter>
#include <QPointer>
#include <QPushButton>

namespace {

constexpr int kIconSize = 48;
constexpr int kTextWidth = 340;
constexpr int kMargin = 20;
constexpr int kSpacing = 12;
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

QLabel* MakeText(QWidget* parent, const std::string& text, bool bold) {
    auto* const label = new QLabel(ToParagraphs(text), parent);
    label->setTextFormat(Qt::PlainText);
    label->setFont(SystemFont(!bold, bold));
    label->setWordWrap(true);
    label->setFixedWidth(kTextWidth);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QPushButton* MakeButton(QDialog& dialog, const MessageDialogButton& button, QDialog::DialogCode code) {
    auto* const widget = new QPushButton(ToCaption(button.Caption), &dialog);
    widget->setFont(SystemFont(false, false));
    widget->setMinimumWidth(kButtonWidth);
    widget->setAutoDefault(true); // Return presses the one that has the focus
    widget->setVisible(button.Visible);
    QObject::connect(widget, &QPushButton::clicked, &dialog, [&dialog, code] { dialog.done(code); });
    return widget;
}

void LayOut(QDialog& dialog, const MessageDialog& message) {
    auto* const icon = new QLabel(&dialog);
    icon->setPixmap(SignPicture(message.Icon, dialog.devicePixelRatioF()));

    QPushButton* const action = MakeButton(dialog, *message.ActionButton, QDialog::Accepted);
    QPushButton* const cancel = MakeButton(dialog, *message.CancelButton, QDialog::Rejected);
    auto* const buttons = new QHBoxLayout;
    buttons->setSpacing(kSpacing); // inside a grid of two different spacings it would have none
    buttons->addStretch();
    buttons->addWidget(kWindowsVariant ? action : cancel);
    buttons->addWidget(kWindowsVariant ? cancel : action);
    action->setDefault(true);
    action->setFocus();

    auto* const grid = new QGridLayout(&dialog);
    grid->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    grid->setHorizontalSpacing(kMargin);
    grid->setVerticalSpacing(kSpacing);
    grid->addWidget(icon, 0, 0, 2, 1, Qt::AlignTop);
    grid->addWidget(MakeText(&dialog, message.Message, true), 0, 1);
    grid->addWidget(MakeText(&dialog, message.Explanation, false), 1, 1);
    grid->addLayout(buttons, 2, 0, 1, 2);
    grid->setSizeConstraint(QLayout::SetFixedSize);
}

Ref<MessageDialogButton> Run(MessageDialog& message, QWidget* parent) {
    // The window beneath may go while the dialog is up, and takes its dialogs along.
    const QPointer<QDialog> dialog = new QDialog(parent);
    dialog->setWindowTitle(message.Title.empty() ? QApplication::applicationName() : ToScreen(message.Title));
    dialog->setAccessibleName(ToScreen(message.Message));
    dialog->setAccessibleDescription(ToScreen(message.Explanation));
    dialog->setWindowModality(Qt::ApplicationModal);
    LayOut(*dialog, message);
    const ModalRun modalRun;
    const bool accepted = dialog->exec() == QDialog::Accepted;
    delete dialog.data();
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
