#pragma once

// The toolkit's side of how controls look. Included by the framework's sources only.

#include <QProxyStyle>

// The desktop's own style, apart from one picture: bars ask at their making for the arrow that they show when they grow
// too narrow. The toolkit would read it from a file, and first load its plug-ins for all formats of pictures, which a
// start would have to wait for. This draws it.
class NativeStyle : public QProxyStyle {
public:
    QIcon standardIcon(StandardPixmap which, const QStyleOption* option, const QWidget* widget) const override;
};
