#include "framework/windows/Accessibility.h"

#include "framework/threads/ExceptionBoundary.h"
#include "framework/windows/Canvas.h"
#include "framework/windows/Native.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QLabel>
#include <QToolBar>

#include <algorithm>
#include <vector>

namespace {

Canvas* CanvasOf(QObject* object) {
    auto* const painter = dynamic_cast<CanvasPainter*>(object);
    return painter == nullptr ? nullptr : &painter->PaintedCanvas();
}

// Owned by Qt, by its number.
class RowInterface final : public QAccessibleInterface,
                           public QAccessibleValueInterface,
                           public QAccessibleActionInterface {
public:
    RowInterface(QWidget& canvas, AccessibleRow row)
        : canvas_(canvas), row_(std::move(row)), id_(QAccessible::registerAccessibleInterface(this)) {}

    QAccessible::Id Id() const { return id_; }

    bool IsOf(const AccessibleRow& row) const { return row_.Of == row.Of; }

    void Become(AccessibleRow row) {
        const AccessibleRow before = std::exchange(row_, std::move(row));
        if (before.Status != row_.Status)
            Announce(QAccessible::DescriptionChanged);
        if (before.Value != row_.Value) {
            QAccessibleValueChangeEvent event(this, row_.Value);
            QAccessible::updateAccessibility(&event);
        }
    }

    void Announce(QAccessible::Event what) {
        QAccessibleEvent event(this, what);
        QAccessible::updateAccessibility(&event);
    }

    bool isValid() const override { return true; }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(&canvas_); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QRect rect() const override {
        return {canvas_.mapToGlobal(QPoint(0, row_.Top)), QSize(canvas_.width(), row_.Height)};
    }
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QAccessible::State state() const override {
        QAccessible::State state;
        state.offscreen = row_.Top >= canvas_.height();
        state.invisible = !canvas_.isVisible();
        return state;
    }
    QString text(QAccessible::Text kind) const override {
        switch (kind) {
        case QAccessible::Name:
            return ToScreen(row_.Name);
        case QAccessible::Description:
            return ToScreen(row_.Status);
        default:
            return {};
        }
    }
    void setText(QAccessible::Text, const QString&) override {}
    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ActionInterface)
            return static_cast<QAccessibleActionInterface*>(this);
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface*>(this);
        return nullptr;
    }

    QVariant currentValue() const override { return row_.Value; }
    void setCurrentValue(const QVariant&) override {}
    QVariant maximumValue() const override { return row_.Maximum; }
    QVariant minimumValue() const override { return 0; }
    QVariant minimumStepSize() const override { return 1; }

    QStringList actionNames() const override { return {ToScreen(row_.ActionName)}; }
    QString localizedActionName(const QString& name) const override { return name; }
    void doAction(const QString& name) override {
        if (actionNames().contains(name))
            ExceptionBoundary::Run("accessible action", row_.Action);
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    QWidget& canvas_;
    AccessibleRow row_;
    const QAccessible::Id id_; // by which Qt deletes it
};

class ListInterface final : public QAccessibleWidget {
public:
    // Tells of no row: who hears of one would ask for this list, which Qt knows only once it is made.
    explicit ListInterface(QWidget& canvas) : QAccessibleWidget(&canvas, QAccessible::List) {
        for (AccessibleRow& row : CurrentRows())
            rows_.push_back(new RowInterface(*widget(), std::move(row)));
    }
    ~ListInterface() override {
        for (RowInterface* const row : rows_)
            QAccessible::deleteAccessibleInterface(row->Id());
    }

    void Update() {
        const std::vector<RowInterface*> before = std::exchange(rows_, {});
        std::vector<RowInterface*> added;
        for (AccessibleRow& row : CurrentRows()) {
            const auto known = std::find_if(before.begin(), before.end(), [&](auto* old) { return old->IsOf(row); });
            if (known != before.end()) {
                rows_.push_back(*known);
                (*known)->Become(std::move(row));
            } else {
                rows_.push_back(new RowInterface(*widget(), std::move(row)));
                added.push_back(rows_.back());
            }
        }
        for (RowInterface* const row : added)
            row->Announce(QAccessible::ObjectCreated);
        for (RowInterface* const row : before) {
            if (std::find(rows_.begin(), rows_.end(), row) == rows_.end()) {
                row->Announce(QAccessible::ObjectDestroyed);
                QAccessible::deleteAccessibleInterface(row->Id());
            }
        }
    }

    // Not the widgets within: the bars are the rows' values.
    int childCount() const override { return static_cast<int>(rows_.size()); }
    QAccessibleInterface* child(int index) const override {
        return index < 0 || index >= childCount() ? nullptr : rows_[static_cast<std::size_t>(index)];
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        const auto found = std::find(rows_.begin(), rows_.end(), child);
        return found == rows_.end() ? -1 : static_cast<int>(found - rows_.begin());
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        const auto found =
            std::find_if(rows_.begin(), rows_.end(), [=](auto* row) { return row->rect().contains(x, y); });
        return found == rows_.end() ? nullptr : *found;
    }

private:
    std::vector<AccessibleRow> CurrentRows() const { return CanvasOf(widget())->AccessibleRows().value(); }

    std::vector<RowInterface*> rows_;
};

// Leaves out what nobody sees either. Bears the window's name.
class FrameInterface final : public QAccessibleWidget {
public:
    FrameInterface(QWidget& frame, QAccessible::Role role) : QAccessibleWidget(&frame, role) {}

    QString text(QAccessible::Text kind) const override {
        const QString own = QAccessibleWidget::text(kind);
        if (kind != QAccessible::Name || !own.isEmpty())
            return own;
        return QAccessible::queryAccessibleInterface(widget()->window())->text(kind);
    }

    int childCount() const override { return static_cast<int>(Children().size()); }
    QAccessibleInterface* child(int index) const override {
        const auto children = Children();
        return index < 0 || index >= children.size() ? nullptr : children[index];
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        return static_cast<int>(Children().indexOf(child));
    }

private:
    QList<QAccessibleInterface*> Children() const {
        QList<QAccessibleInterface*> children;
        for (int i = 0; i < QAccessibleWidget::childCount(); ++i) {
            QAccessibleInterface* const child = QAccessibleWidget::child(i);
            if (child != nullptr && IsThere(child->object()))
                children << child;
        }
        return children;
    }

    bool IsThere(QObject* child) const {
        const auto* const there = qobject_cast<QWidget*>(child);
        if (there == nullptr || there->isHidden() || !widget()->rect().intersects(there->geometry()))
            return false;
        if (Canvas* const canvas = CanvasOf(child))
            return canvas->AccessibleRows().has_value();
        const bool isSpace = role() == QAccessible::ToolBar && there->metaObject() == &QWidget::staticMetaObject;
        return !isSpace;
    }
};

class LinkInterface final : public QAccessibleWidget {
public:
    LinkInterface(QLabel& label, LinkText& link) : QAccessibleWidget(&label, QAccessible::Link), link_(link) {}

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? static_cast<QLabel*>(widget())->text() : QAccessibleWidget::text(kind);
    }
    QStringList actionNames() const override { return {pressAction(), setFocusAction()}; }
    void doAction(const QString& name) override {
        if (name == pressAction())
            link_.Press();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    LinkText& link_; // the same object
};

// Qt asks once for each class of an object, its own first.
QAccessibleInterface* InterfaceFor(const QString&, QObject* object) {
    auto* const widget = qobject_cast<QWidget*>(object);
    if (Canvas* const canvas = CanvasOf(object); canvas != nullptr && canvas->AccessibleRows())
        return new ListInterface(*widget);
    if (qobject_cast<QToolBar*>(object) != nullptr)
        return new FrameInterface(*widget, QAccessible::ToolBar);
    if (dynamic_cast<ContentWidget*>(object) != nullptr)
        return new FrameInterface(*widget, QAccessible::Grouping);
    if (dynamic_cast<WindowWidget*>(object) != nullptr && widget->windowType() == Qt::Dialog)
        return new QAccessibleWidget(widget, QAccessible::Dialog);
    if (auto* const link = dynamic_cast<LinkText*>(object); link != nullptr && widget->focusPolicy() != Qt::NoFocus)
        return new LinkInterface(*qobject_cast<QLabel*>(object), *link);
    return nullptr;
}

} // namespace

void DescribeToScreenReaders() {
    QAccessible::installFactory(InterfaceFor);
}

void AnnounceRows(QWidget& canvas) {
    if (!QAccessible::isActive())
        return;
    if (auto* const list = dynamic_cast<ListInterface*>(QAccessible::queryAccessibleInterface(&canvas)))
        list->Update();
}
