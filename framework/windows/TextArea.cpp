#include "framework/windows/TextArea.h"

#include "framework/text/Utf8.h"
#include "framework/windows/Native.h"

#include <QScrollBar>
#include <QTextEdit>

#include <array>
#include <utility>

namespace {

constexpr std::array kAlignments{Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};

// Laying out a text of many megabytes takes Qt minutes. One line is the dearest; the sum stays bearable.
constexpr std::size_t kMostOfPiece = 16'384; // bytes
constexpr int kMostOfText = 100'000;         // characters

void HideInactiveSelection(QWidget& widget) {
    QPalette palette = widget.palette();
    palette.setColor(QPalette::Inactive, QPalette::Highlight, Qt::transparent);
    palette.setBrush(QPalette::Inactive, QPalette::HighlightedText, palette.text());
    widget.setPalette(palette);
}

} // namespace

std::string TextArea::Text() const {
    if (const QTextEdit* const area = WidgetOf<QTextEdit>(*this))
        return FromScreen(area->toPlainText());
    std::string text;
    for (const Piece& piece : waiting_)
        text += piece.text;
    return text;
}

void TextArea::SetSelBold(bool bold) {
    selBold_ = bold;
}

void TextArea::SetSelText(const std::string& text) {
    if (WidgetOf<QTextEdit>(*this) == nullptr)
        waiting_.push_back({text, selBold_});
    else
        Insert({text, selBold_});
}

void TextArea::Insert(const Piece& piece) {
    QTextEdit& area = *WidgetOf<QTextEdit>(*this);
    if (area.document()->characterCount() > kMostOfText)
        return;
    std::string text(Utf8Beginning(piece.text, kMostOfPiece));
    if (text.size() < piece.text.size() && piece.text.ends_with('\n'))
        text += '\n';
    QTextCharFormat style;
    style.setFontWeight(Styled && piece.bold ? QFont::Bold : QFont::Normal);
    const int inView = area.verticalScrollBar()->value();
    QTextCursor cursor = area.textCursor();
    cursor.insertText(Multiline ? ToParagraphs(text) : ToScreen(text), style);
    area.setTextCursor(cursor);
    area.verticalScrollBar()->setValue(inView);
}

void TextArea::MakeWidget(NativeControl& native) {
    auto* const area = new QTextEdit(native.parent);
    native.widget = area;
    area->setAcceptRichText(false);
    area->setReadOnly(ReadOnly);
    area->setUndoRedoEnabled(!ReadOnly);
    area->setFont(SystemFont(TextFont == "SmallSystem", false));
    area->setAlignment(kAlignments[static_cast<std::size_t>(Alignment)]);
    area->setLineWrapMode(Multiline && !ScrollbarHorizontal ? QTextEdit::WidgetWidth : QTextEdit::NoWrap);
    area->setVerticalScrollBarPolicy(ScrollbarVertical ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
    area->setHorizontalScrollBarPolicy(ScrollbarHorizontal ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
    area->setTabChangesFocus(!AcceptTabs);
    area->setAttribute(Qt::WA_MacShowFocusRect, UseFocusRing);
    if (!Border)
        area->setFrameShape(QFrame::NoFrame);
    if (HideSelection)
        HideInactiveSelection(*area);
    for (const Piece& piece : std::exchange(waiting_, {}))
        Insert(piece);
}
