// SPDX-License-Identifier: MIT
#pragma once

#include "windows/window_content.h"

#include <QList>
#include <QMap>
#include <QObject>

class PanelDock;
class QMainWindow;
class QTabBar;

/// The docks of one window: where a new one goes, what they are called, and which one is in front.
class PanelDocks : public QObject
{
    Q_OBJECT

public:
    explicit PanelDocks(QMainWindow* window);

    /// The titles that docks get which are added under these names.
    void setTitles(const QMap<QString, QString>& titles) { fTitles = titles; }
    /// Those that the user gave, by the docks' names.
    QMap<QString, QString> titles() const;

    /// Panels that are still to come, or cannot: they count among `content` and `titles` as if they
    /// were there, unless another one gets their name.
    void keepPlaces(const QList<PanelContent>& panels) { fAbsent = panels; }
    /// This one has come, or nobody wants it any more.
    void dropPlace(const PanelContent& panel);
    QList<PanelContent> content() const;

    /// Shows `dock`, which has its panel, in front of the others: in the place of this name, if it
    /// is free.
    void add(PanelDock* dock, const QString& name = {});

    const QList<PanelDock*>& docks() const { return fDocks; } ///< in the order of their making
    /// The one that was used last among those that can be seen; null when there is none.
    PanelDock* front() const;
    /// Brings the one beside the front one, in the order of their making, to the front.
    void step(int offset);

    /// Of each kind of panel that of the one used last, for the next one.
    void saveArrangements() const;

signals:
    void changed(); ///< which ones there are, their titles, or which one is in front

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private slots:
    void xOnFocusChanged(QWidget* old, QWidget* now);
    void xUpdate();

private:
    void place(PanelDock* dock);
    void forget(PanelDock* dock);
    void toFront(PanelDock* dock);
    void updateTitle(PanelDock* dock);
    bool isTaken(const QString& title, const PanelDock* besides) const;
    bool isName(const QString& name) const;
    QString freeName(const QString& kind) const;
    void watch(QTabBar* tabs);
    PanelDock* behindTab(const QTabBar& tabs, int index) const;

    QMainWindow* fWindow;
    QList<PanelDock*> fDocks;
    QMap<QString, QString> fTitles;
    QList<PanelContent> fAbsent;
    QList<PanelDock*> fUsedOrder; ///< the same, the one used last at the end
};
