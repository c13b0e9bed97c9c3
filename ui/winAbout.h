#pragma once

#include "framework/windows/Window.h"

class Canvas;
class Label;
class claStaticTextLink;

// The program's icon, name, version and legal line, and a link to its maker. Main thread.
class winAbout : public Window {
public:
    static Ref<winAbout> Instance();

    const Ref<Canvas>& Canvas1() const { return Canvas1_; }
    const Ref<Label>& staName() const { return staName_; }
    const Ref<Label>& staCopyright() const { return staCopyright_; }
    const Ref<claStaticTextLink>& StaticText5() const { return StaticText5_; }

protected:
    WindowLayout Layout() override;
    void CreateControls() override;
    void AddMenuHandlers() override;
    void Event_Open() override;

private:
    bool FileCloseWindow_Action();

    Ref<Canvas> Canvas1_;
    Ref<Label> staName_;
    Ref<Label> staCopyright_;
    Ref<claStaticTextLink> StaticText5_;
};
