// Every text of every window, in every language, stands in its place and has room there. Built for both variants.

#include "framework/app/Application.h"
#include "framework/base/Program.h"
#include "framework/files/FolderItem.h"
#include "framework/files/SpecialFolder.h"
#include "framework/windows/Listbox.h"
#include "framework/windows/Native.h"
#include "framework/windows/Window.h"
#include "settings/Multilingual.h"
#include "settings/winChooseLanguage.h"
#include "settings/winPreferences.h"
#include "tests/support/Waiting.h"
#include "ui/winAbout.h"
#include "ui/winCut.h"
#include "ui/winMain.h"
#include "update/winUpdate.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QLabel>

#include <map>

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
    constexpr int kInterval = 6;
    const int text = button.fontMetrics().horizontalAdvance(button.text());
    return button.inherits("QCheckBox") ? button.sizeHint().width() <= button.width()
                                        : text + 2 * kInterval <= button.width();
}

template <class Widget>
void ExpectRoomFor(const Window& window) {
    for (const Widget* const widget : window.Native().widget->findChildren<Widget*>())
        EXPECT_TRUE(widget->text().isEmpty() || HasRoom(*widget)) << widget->text().toStdString();
}

QWidgetList ControlsOf(const Window& window) {
    return window.Native().content->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
}

// What a screen reader has to say of the window and each thing that it finds there.
void ExpectNames(const Window& window) {
    QAccessibleInterface& content = *QAccessible::queryAccessibleInterface(window.Native().content);
    QList<QAccessibleInterface*> things{&content, content.parent()};
    for (int i = 0; i < content.childCount(); ++i)
        things << content.child(i);
    for (const QAccessibleInterface* const thing : things)
        EXPECT_FALSE(thing->text(QAccessible::Name).trimmed().isEmpty())
            << thing->object()->metaObject()->className() << " in " << window.Title();
}

// The title and what the controls show, from the top, then from the left: the cancel button first, also where it stands
// last.
std::string TextsOf(const Window& window) {
    std::map<std::pair<int, int>, QString> texts;
    for (const QWidget* const thing : ControlsOf(window)) {
        const bool isFlipped = kWindowsVariant && thing->inherits("QPushButton");
        if (thing->isVisible() && thing->property("text").isValid())
            texts[{thing->y(), isFlipped ? -thing->x() : thing->x()}] = thing->property("text").toString();
    }
    std::string told = window.Title();
    for (const auto& [place, text] : texts)
        told += "|" + text.toStdString();
    return told;
}

// Of these keys. A word that is no key stands for itself.
std::string Texts(const QString& keys) {
    QStringList texts;
    for (const QString& key : keys.split('|')) {
        const std::string text = Multilingual::GetString(key.toStdString(), Application::LongVersion());
        texts << (text.empty() ? key : ToParagraphs(text));
    }
    return texts.join('|').toStdString();
}

TEST(WindowTexts, StandInTheirPlacesWithRoomAndEveryControlHasItsName) {
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
        const std::pair<Ref<Window>, const char*> windows[] = {
            {winCut::Instance(), "|CutTitle|CutPartSize|CutPartCount|0|CutSize|0 MB|ButtonCancel|ButtonCut"},
            {winPreferences::Instance(),
             "PreferencesTitle|PreferencesMovePartsToTrash|PreferencesLaunchArchives|PreferencesShowFilesAfter|"
             "PreferencesAutoQuit|PreferencesAutoQuitExplanation|PreferencesSearchForUpdates"},
            {winAbout::Instance(), "AboutTitle|Ombrivel|AboutCopyright|" OMBRIVEL_VENDOR_SITE},
            {winUpdate::Instance(), "Ombrivel 9|SearchForUpdatesNewVersion|ButtonCancel|ButtonDownloadNow|"
                                    "SearchForUpdatesSearchAtStartup"},
            {chooser, "Ombrivel|ChoosePlease|ButtonQuit|ButtonOK"}};
        for (const auto& [window, keys] : windows)
            window->Show();
        ShowOnScreen();
        ExpectNames(*winMain::Instance());
        for (const auto& [window, keys] : windows) {
            EXPECT_EQ(TextsOf(*window), Texts(keys));
            ExpectNames(*window);
            ExpectRoomFor<QLabel>(*window);
            ExpectRoomFor<QAbstractButton>(*window);
            window->Close();
        }
    }
}

} // namespace
