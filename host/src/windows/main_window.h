// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_monitor.h"
#include "connection/connection_settings.h"
#include "connection/loss_limit.h"
#include "windows/window_content.h"

#include <QMainWindow>

#include <chrono>
#include <string>

class ConnectionBar;
class ErrorReporter;
class FileMenu;
class OutageBar;
class PanelCommands;
class PanelDock;
class PanelDocks;
class PanelMenu;
class PluginLoader;
class Recordings;
class StartPage;
struct PanelPlugin;

/// What all windows share; outlives them.
struct WindowContext
{
    const PluginLoader& plugins;
    ErrorReporter& errors;
    std::string imageDir; ///< as panels take it
    std::chrono::seconds lossLimit = defaultLossLimit;
};

/// The window of one robot. It stays hidden, but alive, after it was closed: whoever made it
/// deletes it as soon as `isIdle()`, because dialogs may still be running in it until then.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    MainWindow(const WindowContext& context, const ConnectionSettings& settings,
               const boost::shared_ptr<ZoBroker>& broker);
    ~MainWindow() override;

    const ConnectionSettings& settings() const { return fSettings; }
    ConnectionMonitor& monitor() { return fMonitor; }

    /// Opens the links of this window and its panels anew, to the same robot. The panels stay.
    /// Throws what ConnectionMonitor::reconnect does, and then has changed nothing.
    void reconnect(const ConnectionSettings& settings);
    /// Opens those that are down with the settings that they have; what the robot refused is asked
    /// for anew.
    void reconnect();
    /// Takes over how `other` reaches its robot, as far as that is so here, too: all of it when
    /// both share a link, and the password when it is the same robot and user.
    void learnFrom(const MainWindow& other);

    /// Makes one more panel, unless one is being made; an error ends in an error box.
    void openPanel(PanelPlugin* plugin);
    /// The same, like another one was; returns what went wrong.
    QString openPanelLike(PanelPlugin* plugin, const PanelContent& like);
    /// The dock that commands mean; null when there is none.
    PanelDock* frontDock() const;

    /// Takes this size and place; panels to come get their places and titles.
    void setLook(const WindowLook& look);
    /// Puts the panels, which are all there, where `content` has them.
    void arrange(const WindowContent& content);
    WindowContent content() const;
    /// Panels that are still to come, or cannot, count among its content: all of these, until one
    /// has come, or nobody wants it any more.
    void keepPlaces(const QList<PanelContent>& panels);
    void dropPlace(const PanelContent& panel);
    /// For the next window.
    void saveLook() const;

    int recordings() const; ///< that are running
    /// The user has agreed that they end; the window closes when they have ended well.
    void endRecordingsAndClose();
    /// Lets recordings end without asking the user: nobody may be there to answer.
    void endRecordings();

    /// Closes the dialogs that still run in this closed window; true once none does.
    bool isIdle();

signals:
    void newConnectionRequested();
    void saveWorkspaceRequested();                    ///< of all windows
    void openWorkspaceRequested(const QString& file); ///< empty: the user is to choose one
    void connectAgainRequested();                     ///< to the same robot, which has refused
    void lossLimitChosen(std::chrono::seconds limit);
    void quitRequested();
    void closed();

protected:
    void closeEvent(QCloseEvent* event) override;

private slots:
    void xClosePanel();
    void xBringIntoSight();
    void xOnFailed(const QString& problem);
    void xOnChanged();
    void xShowTitle();
    void xChooseLossLimit();
    void xUpdateActions();
    void xOnDocksChanged();

private:
    void setUpMenus();
    void setUpHelpMenu();
    QString diagnosticsText() const;
    void setUpStatus();
    QSize firstSize() const;
    void setUpLook();
    void setDocks(const QByteArray& docks);
    WindowLook look() const;
    bool isAnotherShown() const;
    void addPanel(PanelPlugin* plugin, const PanelContent& like);
    void openWithSettings();
    void tellWhenLost(PanelDock* dock, const boost::shared_ptr<ZoBroker>& broker);
    void rejectDialogs();

    WindowContext fContext;
    ConnectionSettings fSettings;
    const boost::shared_ptr<ZoBroker> fBroker;
    ConnectionMonitor fMonitor;
    PanelDocks* fDocks;
    PanelCommands* fCommands;
    FileMenu* fFileMenu;
    PanelMenu* fPanelMenu = nullptr;
    Recordings* fRecordings;
    StartPage* fStartPage;
    OutageBar* fOutageBar;
    ConnectionBar* fBar;
    QString fTitlePrefix; ///< what the title begins with now
    bool fIsMakingPanel = false;
    bool fIsClosed = false;
};
