// SPDX-License-Identifier: MIT
#include "windows/panel_docks.h"

#include "dialogs/window_order.h"
#include "plugins/plugin_loader.h"
#include "windows/panel_dock.h"

#include <QApplication>
#include <QChildEvent>
#include <QMainWindow>
#include <QTabBar>
#include <QTimer>

#include <algorithm>
#include <utility>

PanelDocks::PanelDocks(QMainWindow* window) : QObject(window), fWindow(window)
{
    window->setDockNestingEnabled(true);
    window->setTabPosition(Qt::AllDockWidgetAreas, QTabWidget::North);
    window->setDocumentMode(true);
    window->installEventFilter(this); // for the tab bars that it makes
    connect(qApp, &QApplication::focusChanged, this, &PanelDocks::xOnFocusChanged);
}

void PanelDocks::add(PanelDock* dock, const QString& name)
{
    const bool isFree = !name.isEmpty() && !isName(name);
    dock->setObjectName(isFree ? name : freeName(dock->plugin().name));
    dock->setUsersTitle(fTitles.value(dock->objectName()));
    if (!fWindow->restoreDockWidget(dock)) // where it was when the window was closed
        place(dock);
    fDocks += dock;
    fUsedOrder += dock;
    connect(dock, &PanelDock::wantedTitleChanged, this, [this, dock] { updateTitle(dock); });
    connect(dock, &PanelDock::pressed, this, [this, dock] { toFront(dock); });
    connect(dock, &PanelDock::sightChanged, this, &PanelDocks::xUpdate);
    connect(dock, &PanelDock::closing, this, [this, dock] { forget(dock); });
    updateTitle(dock);
    dock->show();
    dock->raise();
    xUpdate();
    // As soon as the window has given it its size.
    QTimer::singleShot(0, dock, &PanelDock::arrangePanel);
}

void PanelDocks::saveArrangements() const
{
    for (const PanelDock* dock : fUsedOrder)
        dock->saveArrangement();
}

/// Behind a tab beside the one in front: each has the whole window at first.
void PanelDocks::place(PanelDock* dock)
{
    PanelDock* const beside = front();
    fWindow->addDockWidget(Qt::LeftDockWidgetArea, dock);
    if (beside && !beside->isFloating())
        fWindow->tabifyDockWidget(beside, dock);
}

QMap<QString, QString> PanelDocks::titles() const
{
    QMap<QString, QString> titles;
    for (const PanelDock* dock : fDocks) {
        if (!dock->usersTitle().isEmpty())
            titles[dock->objectName()] = dock->usersTitle();
    }
    for (const PanelContent& panel : fAbsent) {
        if (!isName(panel.dock) && fTitles.contains(panel.dock))
            titles[panel.dock] = fTitles[panel.dock];
    }
    return titles;
}

void PanelDocks::dropPlace(const PanelContent& panel)
{
    const auto found =
        std::find_if(fAbsent.begin(), fAbsent.end(), [&panel](const PanelContent& one) {
            return one.plugin == panel.plugin && one.dock == panel.dock;
        });
    if (found != fAbsent.end())
        fAbsent.erase(found);
}

QList<PanelContent> PanelDocks::content() const
{
    QList<PanelContent> panels;
    for (const PanelDock* dock : fDocks)
        panels += PanelContent{dock->plugin().name, dock->objectName(), dock->arrangement()};
    for (const PanelContent& panel : fAbsent)
        if (!isName(panel.dock))
            panels += panel;
    return panels;
}

bool PanelDocks::isName(const QString& name) const
{
    return std::any_of(fDocks.begin(), fDocks.end(),
                       [&name](const PanelDock* dock) { return dock->objectName() == name; });
}

/// What the window's arrangement knows the dock by.
QString PanelDocks::freeName(const QString& kind) const
{
    int number = 1;
    const auto name = [&] { return kind + ' ' + QString::number(number); };
    while (isName(name()))
        ++number;
    return name();
}

void PanelDocks::forget(PanelDock* dock)
{
    fTitles[dock->objectName()] = dock->usersTitle(); // for the next one in its place
    fUsedOrder.removeOne(dock);
    if (fDocks.removeOne(dock))
        xUpdate();
}

PanelDock* PanelDocks::front() const
{
    PanelDock* last = nullptr; // in a window that is not shown none can be seen
    for (PanelDock* dock : fUsedOrder) {
        if (dock->panel() && (dock->isInSight() || !last || !last->isInSight()))
            last = dock;
    }
    return last;
}

void PanelDocks::step(int offset)
{
    PanelDock* const from = front();
    if (!from)
        return;
    const int place = static_cast<int>(fDocks.indexOf(from)) + offset;
    PanelDock* const next = fDocks.at((place + fDocks.size()) % fDocks.size());
    next->raise();
    if (next->isFloating())
        bringToFront(*next);
    if (next->panel())
        next->panel()->setFocus();
    toFront(next);
}

void PanelDocks::toFront(PanelDock* dock)
{
    if (!fUsedOrder.removeOne(dock))
        return;
    fUsedOrder += dock;
    xUpdate();
}

void PanelDocks::xUpdate()
{
    const PanelDock* const inFront = front();
    for (PanelDock* dock : std::as_const(fDocks))
        dock->setInFront(inFront && dock == inFront);
    emit changed();
}

void PanelDocks::updateTitle(PanelDock* dock)
{
    const QString wanted = dock->wantedTitle();
    QString title = wanted;
    for (int number = 2; isTaken(title, dock); ++number)
        title = tr("%1 (%2)").arg(wanted, QString::number(number));
    dock->setWindowTitle(title);
    emit changed();
}

bool PanelDocks::isTaken(const QString& title, const PanelDock* besides) const
{
    return std::any_of(fDocks.begin(), fDocks.end(), [&](const PanelDock* dock) {
        return dock != besides && dock->windowTitle() == title;
    });
}

void PanelDocks::xOnFocusChanged(QWidget* /*old*/, QWidget* now)
{
    for (PanelDock* dock : std::as_const(fDocks)) {
        if (now && dock->isAncestorOf(now) && dock != front()) {
            toFront(dock);
            return;
        }
    }
}

bool PanelDocks::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::ChildPolished) {
        if (auto* tabs = qobject_cast<QTabBar*>(static_cast<QChildEvent*>(event)->child()))
            watch(tabs);
    }
    return QObject::eventFilter(watched, event);
}

void PanelDocks::watch(QTabBar* tabs)
{
    tabs->disconnect(this); // a bar may be polished again
    connect(tabs, &QTabBar::tabBarClicked, this, [this, tabs](int index) {
        if (PanelDock* dock = behindTab(*tabs, index))
            toFront(dock);
    });
    connect(tabs, &QTabBar::tabBarDoubleClicked, this, [this, tabs](int index) {
        if (PanelDock* dock = behindTab(*tabs, index))
            dock->editTitle();
    });
}

/// A bar of the toolkit's knows the docks behind its tabs by their addresses.
PanelDock* PanelDocks::behindTab(const QTabBar& tabs, int index) const
{
    const auto address = tabs.tabData(index).value<quintptr>();
    const auto found = std::find_if(fDocks.begin(), fDocks.end(), [address](QWidget* dock) {
        return reinterpret_cast<quintptr>(dock) == address;
    });
    return found == fDocks.end() ? nullptr : *found;
}
