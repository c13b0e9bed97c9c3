#include "framework/windows/MessageDialog.h"

#include "framework/base/BuildVariant.h"
#include "framework/windows/Native.h"
#include "framework/windows/Window.h"

#include <QApplication>
#include <QDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>

namespace {

constexpr int kIconSize = 48;
constexpr int kTextWidth = 340;
constexpr int kMargin = 20;
constexpr int kSpacing = 12;
constexpr int kButtonWidth = 90;

QStyle::StandardPixmap IconOf(int32_t icon) {
    switch (icon) {
    case 1:
        return QStyle::SP_MessageBoxWarning;
    case 2:
        return QStyle::SP_MessageBoxCritical;
    default:
        return QStyle::SP_MessageBoxInformation;
    }
}

// Line breaks are kept here, unlike in a label of one line.
QString ToParagraphs(const std::string& text) {
    QStringList lines;
    for (const QString& line : QString::fromUtf8(text.c_str()).split(QLatin1Char('\n')))
        lines << ToScreen(FromScreen(line));
    return lines.join(QLatin1Char('\n'));
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
    widget->setAutoDefault(false);
    widget->setVisible(button.Visible);
    QObject::connect(widget, &QPushButton::clicked, &dialog, [&dialog, code] { dialog.done(code); });
    return widget;
}

void LayOut(QDialog& dialog, const MessageDialog& message) {
    auto* const icon = new QLabel(&dialog);
    icon->setPixmap(dialog.style()->standardIcon(IconOf(message.Icon)).pixmap(kIconSize));

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
    QDialog dialog(parent);
    dialog.setWindowTitle(message.Title.empty() ? QApplication::applicationDisplayName() : ToScreen(message.Title));
    dialog.setAccessibleName(ToScreen(message.Message));
    dialog.setWindowModality(Qt::ApplicationModal);
    LayOut(dialog, message);
    const ModalRun modalRun;
    return dialog.exec() == QDialog::Accepted ? message.ActionButton : message.CancelButton;
}

} // namespace

MessageDialog::MessageDialog() : ActionButton(New<MessageDialogButton>()), CancelButton(New<MessageDialogButton>()) {
    CancelButton->Visible = false;
}

Ref<MessageDialogButton> MessageDialog::ShowModal() {
    return Run(*this, QApplication::activeWindow());
}

Ref<MessageDialogButton> MessageDialog::ShowModalWithin(const Ref<Window>& parent) {
    return Run(*this, parent->Native().widget);
}
