#include "ui/claToolbar.h"

#include "core/Addresses.h"
#include "framework/desktop/Desktop.h"
#include "framework/text/Text.h"
#include "settings/Multilingual.h"
#include "ui/Pictures.h"
#include "ui/winMain.h"

namespace {

constexpr const char* kGlue = "Glue";
constexpr const char* kCut = "Cut";
constexpr const char* kVendor = "Halvrick";

Ref<ToolButton> Button(const std::string& name, const std::string& caption, const Ref<Picture>& icon) {
    const auto button = New<ToolButton>();
    button->Name = name;
    button->Caption = caption;
    button->Icon = icon;
    return button;
}

} // namespace

void claToolbar::Event_Open() {
    Append(Button(kGlue, Multilingual::GetString("MainGlueFiles"), picIconGlue()));
    Append(Button(kCut, Multilingual::GetString("MainCutFile"), picIconCut()));
    const auto space = New<ToolButton>();
    space->Style = ToolStyle::FlexibleSpace;
    Append(space);
    Append(Button(kVendor, "Halvrick", picIconUrl()));
}

void claToolbar::Event_Action(const Ref<ToolItem>& item) {
    const auto is = [&item](const char* name) { return RuntimeStringCompare(item->Name, name) == 0; };
    if (is(kGlue))
        winMain::Instance()->Glue();
    else if (is(kCut))
        winMain::Instance()->Cut();
    else if (is(kVendor))
        ShowURL(VendorSite());
}
