#pragma once

#include "framework/windows/Control.h"

#include <string>
#include <vector>

// A list of one column, of which always one row is selected once there is any. Rows count from 0. Before the window has
// made the list, and after Close, its operations are nil object failures. Main thread.
class Listbox : public Control {
public:
    // Set before the window makes the control.
    std::string Heading;

    void AddRow(const std::string& text);
    int32_t LastIndex() const; // the row added last, -1 at first
    int32_t ListCount() const;

    // The object that goes with a cell. A row that is not there is an out-of-range failure.
    Ref<Object> CellTag(int32_t row, int32_t column) const;
    void SetCellTag(int32_t row, int32_t column, const Ref<Object>& tag);

    // The selected row, or -1. Selecting a row that is not there does nothing.
    int32_t ListIndex() const;
    void SetListIndex(int32_t row);

    // Sorts the rows by their text, in the order of the desktop's language. The list has one column, so these two have
    // no say.
    void Sort();
    int32_t SortedColumn = 0;
    int32_t HeadingIndex = -1;
    // 0 or above ascending, below 0 descending.
    void SetColumnSortDirection(int32_t column, int32_t direction);

    void SetFocus();

    std::function<void()> Change; // another row has been selected
    std::function<void()> DoubleClick;

protected:
    void MakeWidget(NativeControl& native) override;

private:
    std::vector<Ref<Object>> tags_; // each row's widget knows its place in here
    int32_t direction_ = 0;
    int32_t lastIndex_ = -1;
};
