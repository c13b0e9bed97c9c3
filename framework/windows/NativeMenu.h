#pragma once

// Qt's side of menus. Included by the framework's sources only.

#include "framework/windows/MenuItem.h"

#include <QAction>
#include <QMenu>

#include <memory>

struct NativeMenuItem {
    std::unique_ptr<QMenu> menu; // made with the first item below
    QAction action;
};
