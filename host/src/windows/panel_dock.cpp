// SPDX-License-Identifier: MIT
#include "windows/panel_dock.h"

#include "connection/connection_text.h"
#include "plugins/plugin_loader.h"
#include "windows/dock_title.h"
#include "windows/drawing_paper.h"
#include "windows/first_sizes.h"
#include "windows/window_settings.h"

#include <QCloseEvent>
#include <QVBoxLayout>

PanelDock::PanelDock(PanelPlugin& plugin, QWidget* window)
    : QDockWidget(window), fPlugin(plugin), fTitle(new DockTitle(this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setTitleBarWidget(fTitle);
    auto* holder = new QWidget(this);
    auto* layout = new QVBoxLayout(holder);
    layout->setContentsMargins(0, 0, 0, 0);
    setWidget(holder);
    hide();
    connect(fTitle, &DockTitle::renamed, this, &PanelDock::setUsersTitle);
    connect(holder, &QWidget::windowTitleChanged, this, &PanelDock::wantedTitleChanged);
    connect(this, &QDockWidget::visibilityChanged, this, &PanelDock::xOnVisibilityChanged);
}

void PanelDock::setPanel(TarvekWidget* panel)
{
    fPanel = panel;
    letPanesShrink(*panel);
    givePaper(*panel);
    holder()->layout()->addWidget(panel);
    panel->show();
    connect(panel, &QObject::destroyed, this, &QWidget::close, Qt::QueuedConnection);
}

void PanelDock::arrangePanel()
{
    if (!fPanel)
        return;
    delete fPanel->findChild<FirstSizes*>();
    fUsersArrangement =
        fWantedArrangement.isEmpty() ? savedArrangement(fPlugin.name) : fWantedArrangement;
    arrange(*fPanel, fUsersArrangement);
    if (!hasSizes(fUsersArrangement))
        new FirstSizes(fPanel);
    fFirstArrangement = arrangementOf(*fPanel);
    fIsArranged = true;
}

PanelArrangement PanelDock::arrangement() const
{
    if (!fPanel || !fIsArranged)
        return {};
    const PanelArrangement now = arrangementOf(*fPanel);
    if (!fPanel->findChild<FirstSizes*>())
        return now;
    PanelArrangement users = fUsersArrangement;
    users.insert(withoutSizes(now, fFirstArrangement));
    return users;
}

void PanelDock::saveArrangement() const
{
    if (fPanel && fIsArranged)
        ::saveArrangement(fPlugin.name, arrangement());
}

QString PanelDock::wantedTitle() const
{
    if (!fUsersTitle.isEmpty())
        return fUsersTitle;
    const QString panels = holder()->windowTitle();
    return panels.isEmpty() ? fPlugin.name : panels;
}

void PanelDock::editTitle()
{
    raise();
    fTitle->edit();
}

void PanelDock::setUsersTitle(const QString& title)
{
    fUsersTitle = title;
    emit wantedTitleChanged();
}

void PanelDock::setInFront(bool isInFront)
{
    fTitle->setInFront(isInFront);
}

void PanelDock::xOnVisibilityChanged(bool visible)
{
    fIsInSight = visible;
    emit sightChanged();
}

bool PanelDock::event(QEvent* event)
{
    if (event->type() == QEvent::MouseButtonPress)
        emit pressed();
    return QDockWidget::event(event);
}

void PanelDock::showState(const ConnectionState& state, const QString& address)
{
    const QStringList sentences{connectionHeadline(state, address, QDateTime::currentDateTime()),
                                connectionAdvice(state), connectionReason(state)};
    fTitle->setNews(connectionTitlePrefix(state), sentences.join('\n').trimmed());
}

void PanelDock::tellDisconnected()
{
    if (!fPanel)
        return;
    // As an event of its own: an exception out of one panel's slot must not keep the news from
    // the next panel.
    const auto tell = [panel = fPanel.data(), plugin = fPlugin.panels] {
        emit panel->disconnected(plugin);
    };
    QMetaObject::invokeMethod(fPanel, tell, Qt::QueuedConnection);
}

void PanelDock::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange && fPanel)
        givePaper(*fPanel);
    QDockWidget::changeEvent(event);
}

void PanelDock::closeEvent(QCloseEvent* event)
{
    saveArrangement();
    emit closing();
    QDockWidget::closeEvent(event);
}
