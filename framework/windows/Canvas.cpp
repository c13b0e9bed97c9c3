#include "framework/windows/Canvas.h"

#include "framework/files/FileType.h"
#include "framework/files/FileUri.h"
#include "framework/files/FolderItem.h"
#include "framework/threads/ExceptionBoundary.h"
#include "framework/threads/MainThread.h"
#include "framework/threads/Yield.h"
#include "framework/windows/Accessibility.h"
#include "framework/windows/DocumentEvents.h"
#include "framework/windows/DragItem.h"
#include "framework/windows/Native.h"
#include "framework/windows/NativeGraphics.h"

#include <QAccessible>
#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QMouseEvent>

#include <algorithm>

namespace {

bool Accepts(const std::vector<std::string>& typeNames, const Ref<FolderItem>& file) {
    return std::any_of(typeNames.begin(), typeNames.end(), [&file](const std::string& name) {
        const Ref<FileType> type = FileType::Named(name);
        return !type.IsNil() && (type->MacType == kNoFileCode || file->Type() == name);
    });
}

std::vector<Ref<FolderItem>> FilesIn(const QMimeData& data, const std::vector<std::string>& typeNames) {
    // The raw bytes: Qt's own list of addresses loses names that are not valid UTF-8.
    const QByteArray list = data.data(QStringLiteral("text/uri-list"));
    std::vector<Ref<FolderItem>> files;
    for (const std::string& path : PathsFromUriList({list.constData(), static_cast<std::size_t>(list.size())})) {
        const auto file = New<FolderItem>(path);
        if (Accepts(typeNames, file))
            files.push_back(file);
    }
    return files;
}

} // namespace

class CanvasWidget : public QWidget, public CanvasPainter {
public:
    CanvasWidget(QWidget* parent, Canvas& canvas) : QWidget(parent), canvas_(canvas) {
        setAttribute(Qt::WA_OpaquePaintEvent);
        setMouseTracking(true);
        setAcceptDrops(true);
    }

    Canvas& PaintedCanvas() override { return canvas_; }

protected:
    void paintEvent(QPaintEvent* event) override {
        const NoYield noYield;
        QPainter painter(this);
        painter.setClipRegion(event->region()); // for the drawing to know what is wanted
        Graphics graphics = MakeGraphics(painter);
        if (!canvas_.Backdrop.IsNil()) {
            painter.fillRect(rect(), palette().window());
            graphics.DrawPicture(canvas_.Backdrop, 0, 0);
        }
        ExceptionBoundary::RunRepeated("canvas paint", [&] { canvas_.Event_Paint(graphics); });
    }

    void mouseMoveEvent(QMouseEvent* event) override {
        const NoYield noYield;
        ExceptionBoundary::RunRepeated("mouse move", [&] { canvas_.Event_MouseMove(XOf(*event), YOf(*event)); });
    }

    void mousePressEvent(QMouseEvent* event) override {
        const NoYield noYield;
        if (event->button() == Qt::LeftButton)
            ExceptionBoundary::Run("mouse down", [&] { canvas_.Event_MouseDown(XOf(*event), YOf(*event)); });
    }

    // The second press of a double click is none of its own: what it would hit has only just come to that place.
    void mouseDoubleClickEvent(QMouseEvent*) override {}

    void dragEnterEvent(QDragEnterEvent* event) override {
        if (!IsShutOff() && !FilesIn(*event->mimeData(), canvas_.acceptedTypes_).empty())
            TakeAsCopy(*event);
    }

    void dragMoveEvent(QDragMoveEvent* event) override {
        if (IsShutOff())
            event->ignore();
        else
            TakeAsCopy(*event);
    }

    // The program hears of the drop from the event loop: a dialog that it opens must not keep the program waiting from
    // which the drag came.
    void dropEvent(QDropEvent* event) override {
        TakeAsCopy(*event);
        const auto drag = New<DragItem>(FilesIn(*event->mimeData(), canvas_.acceptedTypes_));
        DocumentEvents::Instance().Add([canvas = Self(&canvas_), drag](Application&) {
            if (canvas->DropObject)
                canvas->DropObject(drag, 0);
        });
    }

private:
    static int32_t XOf(const QMouseEvent& event) { return static_cast<int32_t>(event.position().x()); }
    static int32_t YOf(const QMouseEvent& event) { return static_cast<int32_t>(event.position().y()); }

    static bool IsShutOff() { return QApplication::activeModalWidget() != nullptr; }

    static void TakeAsCopy(QDropEvent& event) {
        event.setDropAction(Qt::CopyAction);
        event.accept();
    }

    Canvas& canvas_;
};

void Canvas::AcceptFileDrop(const std::string& fileTypeName) {
    acceptedTypes_.push_back(fileTypeName);
}

void Canvas::Event_Paint(Graphics& graphics) {
    if (Paint)
        Paint(graphics);
}

void Canvas::MakeWidget(NativeControl& native) {
    native.widget = new CanvasWidget(native.parent, *this);
}

void Canvas::UpdateScreen() {
    Control::UpdateScreen();
    AnnounceRowsSoon();
}

// A bar has changed, or goes with its row.
void Canvas::RepaintUnderneath() {
    if (QWidget* const canvas = WidgetOf(*this))
        canvas->update();
    AnnounceRowsSoon();
}

// When the change of the rows is done that this is a part of.
void Canvas::AnnounceRowsSoon() {
    if (!QAccessible::isActive())
        return;
    PostToMainThread([self = Self(this)] {
        if (QWidget* const canvas = WidgetOf(*self))
            AnnounceRows(*canvas);
    });
}
