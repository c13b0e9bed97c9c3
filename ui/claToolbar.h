#pragma once

#include "framework/windows/Toolbar.h"

// The toolbar of the main window: the two commands and a link to the vendor's site. It fills itself when it opens.
class claToolbar : public Toolbar {
public:
    void Event_Open() override;
    void Event_Action(const Ref<ToolItem>& item) override;
};
