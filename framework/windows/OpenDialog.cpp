#include "framework/windows/OpenDialog.h"

#include "framework/files/FileType.h"
#include "framework/files/FolderItem.h"
#include "framework/text/Text.h"
#include "framework/windows/ModalRun.h"
#include "framework/windows/Native.h"
#include "framework/windows/Window.h"

#include <QFile>
#include <QFileDialog>
#include <QFileSystemModel>
#include <QSortFilterProxyModel>

#include <utility>

namespace {

// "Name (*.000 *.001 ...)", or empty for all files.
QString NameFilter(const std::string& typeName) {
    const Ref<FileType> type = FileType::Named(typeName);
    if (type.IsNil() || type->Extensions.empty())
        return {};
    const std::string patterns = "*" + ReplaceAll(type->Extensions, ";", " *");
    return ToScreen(type->Name + " (" + patterns + ")");
}

// Lets folders through, and files of that type, by their codes or else by their names.
class TypeFilter : public QSortFilterProxyModel {
public:
    explicit TypeFilter(std::string typeName) : typeName_(std::move(typeName)) {}

protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override {
        const auto& files = static_cast<const QFileSystemModel&>(*sourceModel()); // as file dialogs have it
        const QModelIndex file = files.index(row, 0, parent);
        return files.isDir(file) ||
               FolderItem(QFile::encodeName(files.filePath(file)).toStdString()).Type() == typeName_;
    }

private:
    const std::string typeName_;
};

// By Qt's own dialog for the files that are of the type. A desktop's dialog takes no model, but names.
void ShowOnly(QFileDialog& dialog, const std::string& typeName, const QString& nameFilter) {
    auto* const type = new TypeFilter(typeName);
    type->setParent(&dialog);
    dialog.setProxyModel(type);
    const bool takesModel = dialog.proxyModel() == type;
    dialog.setNameFilter(takesModel ? nameFilter.section(QLatin1String(" ("), 0, 0) + QLatin1String(" (*)")
                                    : nameFilter);
}

} // namespace

Ref<FolderItem> OpenDialog::ShowModalWithin(const Ref<Window>& parent) {
    QFileDialog dialog(parent->Native().widget);
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    const QString filter = NameFilter(Filter);
    if (!filter.isEmpty())
        ShowOnly(dialog, Filter, filter);
    const ModalRun modalRun;
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return nullptr;
    return New<FolderItem>(QFile::encodeName(dialog.selectedFiles().constFirst()).toStdString());
}
