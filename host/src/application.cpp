// SPDX-License-Identifier: MIT
#include "application.h"

#include "dialogs/error_reporter.h"
#include "plugins/resource_paths.h"

#include <kit/version_text.h>

#include <QEvent>
#include <QIcon>
#include <QWidget>

#include <clocale>
#include <exception>

namespace {

bool isUserAction(int eventType)
{
    switch (eventType) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
        return true;
    default:
        return false;
    }
}

} // namespace

void Application::prepare()
{
#if QT_VERSION_MAJOR == 5 // later ones do so always
    setAttribute(Qt::AA_EnableHighDpiScaling);
    setAttribute(Qt::AA_UseHighDpiPixmaps);
#endif
    // A screen of 1.5 is to be one: rounded, all would be a third too large.
    setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    setApplicationName("Tarvek Desktop");
    setOrganizationName("Tarvek");
    setApplicationVersion(QString::fromStdString(kit::programVersion()));
}

Application::Application(int& argc, char** argv)
    : QApplication(argc, argv), fErrors(new ErrorReporter(this))
{
    // The toolkit takes the user's locale for the C library, too. With a decimal comma there,
    // strtod() would read "0.5" as 0, and panels read the robot's numbers with it.
    std::setlocale(LC_NUMERIC, "C");
#if QT_VERSION_MAJOR == 5
    // A session that ends asks the windows to close, and may be called off when they are gone: what
    // is to be saved is saved without that. Later toolkits do not ask.
    setFallbackSessionManagementEnabled(false);
#endif
    // Dialogs come and go while windows are being made: the program itself knows when to end.
    setQuitOnLastWindowClosed(false);
    setWindowIcon(QIcon(ownIconFile()));
    setDesktopFileName("tarvek-desktop");
}

Application::~Application() = default;

bool Application::notify(QObject* receiver, QEvent* event)
{
    // Read now: whoever threw may have deleted both.
    const QEvent::Type type = event->type();
    try {
        return QApplication::notify(receiver, event);
    } catch (const std::exception& error) {
        reportException(type, QString::fromUtf8(error.what()));
    } catch (...) {
        reportException(type, tr("An error that does not describe itself."));
    }
    return true;
}

void Application::reportException(int eventType, const QString& text)
{
    QWidget* window = activeModalWidget() ? activeModalWidget() : activeWindow();
    fErrors->report(window, text,
                    isUserAction(eventType) ? ErrorReporter::Origin::UserAction
                                            : ErrorReporter::Origin::RunningWork);
}
