// SPDX-License-Identifier: MIT
#pragma once

#include <tarvek/tarvek_widget.h>

#include <QPointer>
#include <QStackedWidget>

#include <vector>

class PluginLoader;
class QTabWidget;
struct PanelPlugin;

/// The middle of a window: its panels as tabs, or the start page while there are none.
class PanelArea : public QStackedWidget
{
    Q_OBJECT

public:
    PanelArea(const PluginLoader& plugins, QWidget* parent);

    /// Takes the panel over and brings it to the front.
    void add(TarvekWidget* panel, PanelPlugin* plugin);
    /// The panel in front; null when there is none.
    TarvekWidget* current() const;

    /// Tells every panel that the robot is lost.
    void tellDisconnected();
    static void tellDisconnected(TarvekWidget* panel, PanelPlugin* plugin);

signals:
    void chosen(PanelPlugin* plugin); ///< on the start page
    void currentChanged();

private slots:
    void xUpdate();

private:
    void addCloseButton(TarvekWidget* panel);

    struct Entry
    {
        QPointer<TarvekWidget> panel;
        PanelPlugin* plugin;
    };

    QTabWidget* fTabs;
    std::vector<Entry> fEntries;
};
