// Every text of every window, in every language, has room in its control. Built for both variants.

#include "framework/base/BuildVariant.h"
#include "framework/files/FolderItem.h"
#include "framework/files/SpecialFolder.h"
#include "framework/windows/Label.h"
#include "framework/windows/Listbox.h"
#include "framework/windows/Native.h"
#include "framework/windows/Window.h"
#include "settings/Multilingual.h"
#include "settings/winChooseLanguage.h"
#include "settings/winPreferences.h"
#include "tests/support/Waiting.h"
#include "ui/claDialogButton.h"
#include "ui/winAbout.h"
#include "ui/winCut.h"
#include "ui/winMain.h"
#include "update/winUpdate.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QLabel>

namespace {

// A text of several lines leaves what lies over the lower part of its label free.
bool HasRoom(const QLabel& label) {
    if (!label.wordWrap())
        return label.sizeHint().width() <= label.width();
    int room = label.height();
    for (const auto* const other : label.parentWidget()->findChildren<QLabel*>()) {
        if (other != &label && label.geometry().intersects(other->geometry()))
            room = other->y() - label.y();
    }
    return label.heightForWidth(label.width()) <= room;
}

// The frame of a button may be narrower than the style would like it, its text may not touch it.
bool HasRoom(const QAbstractButton& button) {
    constexpr int kFrame = 6;
    const int text = button.fontMetrics().horizontalAdvance(button.text());
    return button.inherits("QCheckBox") ? button.sizeHint().width() <= button.width()
                                        : text + 2 * kFrame <= button.width();
}

template <class Widget>
void ExpectRoomFor(const Ref<Window>& window) {
    for (const Widget* const widget : NativeWindow::Of(*window).widget->findChildren<Widget*>())
        EXPECT_TRUE(widget->text().isEmpty() || HasRoom(*widget)) << widget->text().toStdString();
}

void ExpectButtonsInOrder(const claDialogWindow& dialog) {
    const Ref<claDialogButton>& left = kWindowsVariant ? dialog.ActionButton : dialog.CancelButton;
    const Ref<claDialogButton>& right = kWindowsVariant ? dialog.CancelButton : dialog.ActionButton;
    EXPECT_LT(left->Left() + left->Width(), right->Left());
}

// What a screen reader has to say of the window and each thing that it shows.
void ExpectNames(const Ref<Window>& window) {
    QWidgetList things =
        NativeWindow::Of(*window).content->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    things.append(NativeWindow::Of(*window).widget);
    for (QWidget* const thing : things) {
        auto* const told = QAccessible::queryAccessibleInterface(thing);
        EXPECT_TRUE(!thing->isVisible() || (told != nullptr && !told->text(QAccessible::Name).trimmed().isEmpty()))
            << thing->metaObject()->className() << " in " << window->Title();
    }
}

TEST(WindowTexts, HaveRoomAndEveryControlItsName) {
    const Ref<FolderItem> languages = SpecialFolder::Resources()->Child("Multilingual");
    for (int32_t i = 1; i <= languages->Count(); ++i) {
        const Ref<FolderItem> language = languages->Item(i);
        SCOPED_TRACE(language->Name());
        Multilingual::Initialize(languages, language->Name());
        winCut::Instance()->UpdateStatus();
        winUpdate::Instance()->SetTitle("Ombrivel 9"); // as an offer does
        const Ref<winChooseLanguage> chooser = winChooseLanguage::Instance();
        const Ref<Listbox>& list = chooser->lstLanguage();
        list->AddRow(Multilingual::GetString("ChooseString"));
        list->SetCellTag(0, 0, language->Child("strings.txt"));
        list->SetListIndex(0);
        EXPECT_NE(chooser->staMessage()->Text(), "");
        for (const Ref<claDialogWindow>& dialog :
             {Ref<claDialogWindow>(winCut::Instance()), Ref<claDialogWindow>(winUpdate::Instance()),
              Ref<claDialogWindow>(chooser)})
            ExpectButtonsInOrder(*dialog);

        const std::vector<Ref<Window>> dialogs{winCut::Instance(), winPreferences::Instance(), winAbout::Instance(),
                                               winUpdate::Instance(), chooser};
        for (const Ref<Window>& dialog : dialogs)
            dialog->Show();
        ShowOnScreen();
        ExpectNames(winMain::Instance());
        for (const Ref<Window>& dialog : dialogs) {
            ExpectNames(dialog);
            ExpectRoomFor<QLabel>(dialog);
            ExpectRoomFor<QAbstractButton>(dialog);
            dialog->Close();
        }
    }
}

} // namespace
