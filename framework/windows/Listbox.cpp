#include "framework/windows/Listbox.h"

#include "framework/threads/ExceptionBoundary.h"
#include "framework/windows/Native.h"

#include <QHeaderView>
#include <QTreeWidget>

#include <stdexcept>

namespace {

constexpr int kTagRole = Qt::UserRole; // place of the row's tag

QTreeWidget& ListOf(const Listbox& box) {
    auto* const list = WidgetOf<QTreeWidget>(box);
    if (list == nullptr)
        throw NilObjectException(); // not made yet, or closed
    return *list;
}

QTreeWidgetItem& RowAt(const Listbox& box, int32_t row) {
    QTreeWidgetItem* const item = ListOf(box).topLevelItem(row);
    if (item == nullptr)
        throw std::out_of_range("no such row in the list");
    return *item;
}

std::size_t TagPlace(const QTreeWidgetItem& item) {
    return static_cast<std::size_t>(item.data(0, kTagRole).toULongLong());
}

} // namespace

void Listbox::AddRow(const std::string& text) {
    auto* const item = new QTreeWidgetItem(QStringList(ToScreen(text)));
    item->setData(0, kTagRole, qulonglong(tags_.size()));
    tags_.emplace_back();
    ListOf(*this).addTopLevelItem(item);
    lastIndex_ = ListCount() - 1;
}

int32_t Listbox::LastIndex() const {
    return lastIndex_;
}

int32_t Listbox::ListCount() const {
    return ListOf(*this).topLevelItemCount();
}

Ref<Object> Listbox::CellTag(int32_t row, int32_t /*column*/) const {
    return tags_[TagPlace(RowAt(*this, row))];
}

void Listbox::SetCellTag(int32_t row, int32_t /*column*/, const Ref<Object>& tag) {
    tags_[TagPlace(RowAt(*this, row))] = tag;
}

int32_t Listbox::ListIndex() const {
    QTreeWidget& list = ListOf(*this);
    return list.currentItem() == nullptr ? -1 : list.indexOfTopLevelItem(list.currentItem());
}

void Listbox::SetListIndex(int32_t row) {
    QTreeWidget& list = ListOf(*this);
    if (QTreeWidgetItem* const item = list.topLevelItem(row))
        list.setCurrentItem(item);
}

void Listbox::SetColumnSortDirection(int32_t /*column*/, int32_t direction) {
    direction_ = direction;
}

void Listbox::Sort() {
    ListOf(*this).sortItems(0, direction_ < 0 ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void Listbox::SetFocus() {
    ListOf(*this).setFocus();
}

void Listbox::MakeWidget(NativeControl& native) {
    auto* const list = new QTreeWidget(native.parent);
    list->setFont(SystemFont(false, false));
    list->setColumnCount(1);
    list->setHeaderLabel(ToScreen(Heading));
    list->header()->setSectionsClickable(false);
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    QObject::connect(list, &QTreeWidget::currentItemChanged, list, [this] {
        ExceptionBoundary::Run("list change", [self = Self(this)] {
            if (self->Change)
                self->Change();
        });
    });
    QObject::connect(list, &QTreeWidget::itemSelectionChanged, list, [list] {
        if (list->currentItem() != nullptr && list->selectedItems().isEmpty())
            list->currentItem()->setSelected(true); // one row is always selected
    });
    QObject::connect(list, &QTreeWidget::itemDoubleClicked, list, [this] {
        ExceptionBoundary::Run("double click", [self = Self(this)] {
            if (self->DoubleClick)
                self->DoubleClick();
        });
    });
    native.widget = list;
}
