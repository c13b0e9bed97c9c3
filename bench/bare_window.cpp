// The peer of the start measurement: the toolkit's plainest window, of the size and place of the program's own.

#include <QApplication>
#include <QMainWindow>
#include <QScreen>

int main(int count, char** words) {
    const QApplication application(count, words);
    QMainWindow window;
    window.resize(527, 302);
    window.move(QGuiApplication::primaryScreen()->availableGeometry().center() - window.rect().center());
    window.show();
    return QApplication::exec();
}
