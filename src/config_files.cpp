// SPDX-License-Identifier: MIT
#include "config_files.h"

#include "config_manager.h"
#include "file_extension.h"
#include "modal_dialog.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QMessageBox>

#include <stdexcept>

namespace {

/// What it shows as a text of each of its parents, for who gathers the texts to translate.
[[maybe_unused]] constexpr const char* gatheredTexts[] = {
    QT_TRANSLATE_NOOP("ConfigDialog", "Xml file (*.xml)"),
    QT_TRANSLATE_NOOP("ConfigDialog", "Save configuration file"),
    QT_TRANSLATE_NOOP("ConfigDialog", "Error"),
    QT_TRANSLATE_NOOP("Widget", "Xml file (*.xml)"),
    QT_TRANSLATE_NOOP("Widget", "Save configuration file"),
    QT_TRANSLATE_NOOP("Widget", "Error")};

/// Empty when the user cancels.
QString chosenFile(ModalDialog<QFileDialog>& dialog)
{
    dialog->setSupportedSchemes({"file"});
    return dialog.exec() ? dialog->selectedFiles().value(0) : QString();
}

} // namespace

QString ConfigFiles::askToOpen(const QString& caption) const
{
    ModalDialog<QFileDialog> dialog(&fParent, caption, QCoreApplication::applicationDirPath(),
                                    xFilter());
    dialog->setAcceptMode(QFileDialog::AcceptOpen);
    dialog->setFileMode(QFileDialog::ExistingFile);
    return chosenFile(dialog);
}

void ConfigFiles::save(const boost::shared_ptr<const Model>& model) const
{
    ModalDialog<QFileDialog> dialog(&fParent, xTr("Save configuration file"),
                                    QCoreApplication::applicationDirPath(), xFilter());
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    const QString file = chosenFile(dialog);
    if (file.isEmpty())
        return;
    try {
        ConfigManager::saveConfigurationFile(model, withConfigFileExtension(file));
    } catch (const std::runtime_error& error) {
        showError(QString::fromUtf8(error.what()));
    }
}

void ConfigFiles::showError(const QString& text) const
{
    ModalDialog<QMessageBox> box(QMessageBox::Warning, xTr("Error"), text, QMessageBox::Ok,
                                 &fParent);
    box.exec();
}

QString ConfigFiles::xFilter() const
{
    return xTr(configFileFilter().constData());
}

QString ConfigFiles::xTr(const char* text) const
{
    return QCoreApplication::translate(fParent.metaObject()->className(), text);
}
