#include "ui/winAbout.h"

#include "core/Addresses.h"
#include "framework/app/Application.h"
#include "framework/windows/Canvas.h"
#include "framework/windows/Label.h"
#include "framework/windows/SingleWindow.h"
#include "settings/Multilingual.h"
#include "ui/Pictures.h"
#include "ui/claStaticTextLink.h"

Ref<winAbout> winAbout::Instance() {
    return SingleWindow<winAbout>();
}

WindowLayout winAbout::Layout() {
    return {.Width = 349,
            .Height = 262,
            .Placement = WindowPlacement::CentreOfScreen,
            .Frame = WindowFrame::Dialog,
            .Resizeable = false,
            .MinimizeButton = false};
}

void winAbout::CreateControls() {
    const auto icon = New<Canvas>();
    icon->Backdrop = IconPicture();
    Canvas1_ = Add(icon, {.Left = 114, .Top = 14, .Width = 120, .Height = 120, .TabIndex = 0});

    const auto name = New<Label>();
    name->TextAlign = TextAlignment::Centre;
    name->Bold = true;
    name->SetText("Ombrivel");
    staName_ = Add(name, {.Left = 20, .Top = 143, .Width = 309, .Height = 20, .TabIndex = 1});

    const auto copyright = New<Label>();
    copyright->TextFont = "SmallSystem";
    copyright->Multiline = true;
    staCopyright_ = Add(copyright, {.Left = 20, .Top = 175, .Width = 309, .Height = 67, .TabIndex = 2});

    // Over the lower part of the text, which leaves it free.
    const auto link = New<claStaticTextLink>();
    link->TextAlign = TextAlignment::Centre;
    link->TextFont = "SmallSystem";
    link->Underline = true;
    link->SetTextColor(claStaticTextLink::kResting);
    link->SetText(VendorSite());
    StaticText5_ = Add(link, {.Left = 20, .Top = 228, .Width = 309, .Height = 14, .TabIndex = 0});
}

void winAbout::AddMenuHandlers() {
    MenuHandlers().Add("FileCloseWindow", this, &winAbout::FileCloseWindow_Action);
}

bool winAbout::FileCloseWindow_Action() {
    Close();
    return true;
}

void winAbout::Event_Open() {
    SetTitle(Multilingual::GetString("AboutTitle"));
    staCopyright_->SetText(Multilingual::GetString("AboutCopyright", Application::LongVersion()));
}
