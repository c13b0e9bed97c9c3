#pragma once

#include "framework/windows/Window.h"

class Label;
class claStaticTextLink;

// The program's icon, name, version and legal line, and a link to its maker. Main thread.
class winAbout : public Window {
public:
    static Ref<winAbout> Instance();

    const Ref<Label>& staCopyright() const { return staCopyright_; }

protected:
    WindowLayout Layout() override;
    void CreateControls() override;
    void AddMenuHandlers() override;
    void Event_Open() override;

private:
    Ref<Label> staCopyright_;
};
