#include "framework/windows/OpenDialog.h"

#include "framework/files/FileType.h"
#include "framework/files/FolderItem.h"
#include "framework/text/Text.h"
#include "framework/windows/ModalRun.h"
#include "framework/windows/Native.h"
#include "framework/windows/Window.h"

#include <QFile>
#include <QFileDialog>

namespace {

// "Name (*.000 *.001 ...)", or empty for all files.
QString NameFilter(const std::string& typeName) {
    const Ref<FileType> type = FileType::Named(typeName);
    if (type.IsNil() || type->Extensions.empty())
        return {};
    const std::string patterns = "*" + ReplaceAll(type->Extensions, ";", " *");
    return ToScreen(type->Name + " (" + patterns + ")");
}

} // namespace

Ref<FolderItem> OpenDialog::ShowModalWithin(const Ref<Window>& parent) {
    QFileDialog dialog(parent->Native().widget);
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    const QString filter = NameFilter(Filter);
    if (!filter.isEmpty())
        dialog.setNameFilter(filter);
    const ModalRun modalRun;
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return nullptr;
    return New<FolderItem>(QFile::encodeName(dialog.selectedFiles().constFirst()).toStdString());
}
