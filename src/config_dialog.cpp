// SPDX-License-Identifier: MIT
#include "config_dialog.h"

#include "config_files.h"
#include "config_manager.h"
#include "latin1.h"
#include "modal_dialog.h"
#include "module.h"
#include "stmlist_dialog.h"

#include <QFontInfo>
#include <QIcon>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace {

const int dialogWidth = 225;  // px
const int dialogHeight = 120; // px
const int smallestFont = 8;   // px

int widestOf(const QList<QPushButton*>& buttons)
{
    int widest = 0;
    for (const QPushButton* button : buttons)
        widest = std::max(widest, button->sizeHint().width());
    return widest;
}

// The dialog's size is fixed and the desktop's font is not: better small texts than cut ones.
void fitTexts(const QList<QPushButton*>& buttons, int width)
{
    buttons.first()->ensurePolished();
    QFont font = buttons.first()->font();
    for (int size = QFontInfo(font).pixelSize(); size > smallestFont && widestOf(buttons) > width;
         --size) {
        font.setPixelSize(size - 1);
        for (QPushButton* button : buttons)
            button->setFont(font);
    }
}

void addChosen(Module& module, const QList<QPair<QString, QString>>& chosen)
{
    std::vector<std::string> aliases;
    aliases.reserve(static_cast<std::size_t>(chosen.size()));
    for (const auto& each : chosen) {
        aliases.push_back(toLatin1(each.second));
        module.addSTMVal(toLatin1(each.first), aliases.back());
    }
    module.graphStmVals(aliases, true);
}

} // namespace

const QString ConfigDialog::fOpenImage = "buttons/open.png";
const QString ConfigDialog::fNewImage = "buttons/new.png";

// NOLINTNEXTLINE(performance-unnecessary-value-param): a weak reference cannot be moved from it
ConfigDialog::ConfigDialog(boost::shared_ptr<Module> module, const std::string& imageDir,
                           QWidget* parent)
    : QDialog(parent), fModule(module)
{
    setFixedSize(dialogWidth, dialogHeight);
    setWindowTitle("Glimmet configuration");
    auto* layout = new QVBoxLayout(this);
    const QString images = fromLatin1(imageDir);
    auto* create = new QPushButton(QIcon(images + fNewImage), "New configuration file", this);
    auto* open = new QPushButton(QIcon(images + fOpenImage), "Open configuration file", this);
    auto* all = new QPushButton("Do not use a config file (slow)", this);
    layout->addWidget(create);
    layout->addWidget(open);
    layout->addWidget(all);
    connect(create, SIGNAL(clicked()), this, SLOT(xOnNew()));
    connect(open, SIGNAL(clicked()), this, SLOT(xOnOpen()));
    connect(all, SIGNAL(clicked()), this, SLOT(xOnAll()));
    const QMargins margins = layout->contentsMargins();
    fitTexts({create, open, all}, dialogWidth - margins.left() - margins.right());
}

void ConfigDialog::xOnOpen()
{
    const boost::shared_ptr<Module> module = fModule.lock();
    if (!module)
        return;
    const QPointer<ConfigDialog> self(this);
    const ConfigFiles files(*this);
    const QString name = files.askToOpen(tr("Open File"));
    if (name.isEmpty())
        return;
    try {
        ConfigManager::loadConfigurationFile(module, name);
        accept();
    } catch (const std::runtime_error& error) {
        files.showError(tr(error.what()));
        if (self)
            reject();
    }
}

void ConfigDialog::xOnNew()
{
    const boost::shared_ptr<Module> module = fModule.lock();
    if (!module)
        return;
    std::vector<std::string> names;
    module->getListDatas(names);
    const QPointer<ConfigDialog> self(this);
    ModalDialog<StmListDialog> dialog(names, this);
    if (!dialog.exec())
        return;
    const QList<QPair<QString, QString>> chosen = dialog->chosen();
    addChosen(*module, chosen);
    xSaveAliases(chosen);
    if (self)
        accept();
}

// What is saved is the whole model, which holds more than the list when it was not empty before.
void ConfigDialog::xSaveAliases(const QList<QPair<QString, QString>>& /*list*/)
{
    const boost::shared_ptr<Module> module = fModule.lock();
    if (module)
        ConfigFiles(*this).save(module->fModel);
}

void ConfigDialog::xOnAll()
{
    const boost::shared_ptr<Module> module = fModule.lock();
    if (!module)
        return;
    std::vector<std::string> names;
    module->getListDatas(names);
    for (const std::string& name : names)
        module->addSTMVal(name, name);
    accept();
}
