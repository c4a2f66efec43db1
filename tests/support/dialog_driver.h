#pragma once

#include <QApplication>
#include <QLineEdit>
#include <QTimer>
#include <QtTest>

#include <functional>

/// Does with the next modal dialog what a user would. Dialogs run their own event loops, so this
/// is set up before the dialog is asked for.
class DialogDriver
{
public:
    using Action = std::function<void(QWidget& dialog)>;

    explicit DialogDriver(Action action) : fAction(std::move(action))
    {
        QObject::connect(&fTimer, &QTimer::timeout, [this] { look(); });
        fTimer.start(5);
    }

    bool wasShown() const { return !fAction; }

private:
    void look()
    {
        QWidget* dialog = QApplication::activeModalWidget();
        if (!dialog || !dialog->isVisible())
            return;
        fTimer.stop();
        const Action action = std::move(fAction);
        fAction = nullptr;
        action(*dialog);
    }

    Action fAction;
    QTimer fTimer;
};

inline void cancelDialog(QWidget& dialog)
{
    QTest::keyClick(&dialog, Qt::Key_Escape);
}

inline void acceptDialog(QWidget& dialog)
{
    QTest::keyClick(&dialog, Qt::Key_Return);
}

/// Types a path into a file dialog and confirms it.
inline void chooseFile(QWidget& dialog, const QString& path)
{
    auto* edit = dialog.findChild<QLineEdit*>("fileNameEdit");
    QVERIFY(edit);
    edit->clear();
    QTest::keyClicks(edit, path);
    QTest::keyClick(edit, Qt::Key_Return);
}
