#include "framework/windows/Keyboard.h"

#include <QGuiApplication>

bool Keyboard::AsyncShiftKey() {
    return QGuiApplication::queryKeyboardModifiers().testFlag(Qt::ShiftModifier);
}
