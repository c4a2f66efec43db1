// SPDX-License-Identifier: MIT
#include "windows/start_page.h"

#include "connection/plain_tool_tip.h"
#include "plugins/plugin_loader.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

QString introduction(const PluginLoader& plugins)
{
    if (!plugins.plugins().empty())
        return StartPage::tr("Choose a panel:");
    const QString failed =
        plugins.failures().empty()
            ? QString()
            : StartPage::tr(
                  "\n\nSome files could not be used: see \"Help\", \"Plug-ins that failed\".");
    return StartPage::tr("No panel was found. Panels were looked for in:\n%1\n\nStart the program "
                         "with --plugin-dir DIR or --plugin FILE to say where they are.")
               .arg(plugins.folders().join('\n')) +
           failed;
}

} // namespace

StartPage::StartPage(const PluginLoader& plugins, QWidget* parent) : QWidget(parent)
{
    auto* layout = new QVBoxLayout(this);
    layout->addStretch();
    auto* label = new QLabel(introduction(plugins), this);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignCenter);
    layout->addWidget(label);
    for (const auto& plugin : plugins.plugins()) {
        auto* button = new QPushButton(plugin->label, this);
        button->setToolTip(plainToolTip(plugin->file));
        fButtons[plugin.get()] = button;
        connect(button, &QPushButton::clicked, this,
                [this, chosenPlugin = plugin.get()] { emit chosen(chosenPlugin); });
        layout->addWidget(button, 0, Qt::AlignHCenter);
    }
    layout->addStretch();
}

void StartPage::setPossible(const PanelPlugin& plugin, bool isPossible)
{
    fButtons[&plugin]->setEnabled(isPossible);
}
