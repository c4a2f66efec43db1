// SPDX-License-Identifier: MIT
#pragma once

#include "support/patience.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTimer>
#include <QWidget>
#include <QtTest>

#include <deque>
#include <functional>
#include <utility>

/// Answers modal dialogs the way a user does: each step waits until a dialog of its kind is in
/// front, then acts on it. Make it before the call that opens the first dialog.
///
/// A step that was never taken fails the test when this ends. A dialog that stays in front for
/// longer than the deadline fails it at once; all dialogs are closed then, since nothing else
/// would end the loops that they run.
class ModalDriver : public QObject
{
public:
    static constexpr int fPatience = patience; ///< ms

    explicit ModalDriver(int deadline = fPatience) : fDeadline(deadline)
    {
        connect(&fTimer, &QTimer::timeout, this, [this] { look(); });
        fTimer.start(5);
    }

    /// With one step, for whatever window comes.
    explicit ModalDriver(const std::function<void(QWidget&)>& action, int deadline = fPatience)
        : ModalDriver(deadline)
    {
        then<QWidget>(action);
    }

    ~ModalDriver() override
    {
        if (!isDone())
            fail("These dialogs never came: " + pendingSteps());
    }

    template <class Dialog>
    void then(std::function<void(Dialog&)> action)
    {
        then<Dialog>(
            Dialog::staticMetaObject.className(), [](const Dialog&) { return true; },
            std::move(action));
    }

    /// For a dialog with this object or class name; an empty name is that of any.
    void then(const QString& name, std::function<void(QDialog&)> action)
    {
        then<QDialog>(
            name.isEmpty() ? "any" : name,
            [name](const QDialog& dialog) {
                return name.isEmpty() || dialog.objectName() == name ||
                       dialog.metaObject()->className() == name;
            },
            std::move(action));
    }

    /// True when every step was taken.
    bool isDone() const { return fSteps.empty(); }

private:
    struct Step
    {
        QString kind; ///< for messages
        std::function<bool(QWidget*)> isFor;
        std::function<void(QWidget*)> act;
    };

    template <class Dialog>
    void then(const QString& kind, std::function<bool(const Dialog&)> isFor,
              std::function<void(Dialog&)> action)
    {
        fSteps.push_back({kind,
                          [isFor = std::move(isFor)](QWidget* front) {
                              const auto* dialog = dynamic_cast<Dialog*>(front);
                              return dialog && isFor(*dialog);
                          },
                          [action = std::move(action)](QWidget* front) {
                              action(dynamic_cast<Dialog&>(*front));
                          }});
    }

    void look()
    {
        QWidget* front = QApplication::activeModalWidget();
        if (front != fFront)
            fInFront.start();
        fFront = front;
        if (!front)
            return;
        if (fInFront.elapsed() > fDeadline)
            closeAll();
        else if (!fIsBeginning && isNextFor(front))
            begin();
    }

    bool isNextFor(QWidget* front) const
    {
        return front && front->isVisible() && !isDone() && fSteps.front().isFor(front);
    }

    // Not from within the timer, which does not fire again while it is at work.
    void begin()
    {
        fIsBeginning = true;
        QTimer::singleShot(0, this, [this] {
            fIsBeginning = false;
            QWidget* front = QApplication::activeModalWidget();
            if (!isNextFor(front))
                return;
            const Step step = std::move(fSteps.front());
            fSteps.pop_front();
            fInFront.start();
            step.act(front); // which may delete this driver
        });
    }

    void closeAll()
    {
        fail(QString("A dialog was still open after %1 ms: %2 \"%3\". Next step: %4")
                 .arg(QString::number(fDeadline), fFront->metaObject()->className(),
                      fFront->windowTitle(), isDone() ? QString("none") : pendingSteps()));
        for (QPointer<QWidget> front = fFront; front; front = QApplication::activeModalWidget()) {
            close(*front);
            if (!front.isNull() && front->isVisible())
                return;
        }
    }

    static void close(QWidget& front)
    {
        if (auto* dialog = qobject_cast<QDialog*>(&front))
            dialog->reject();
        else
            front.close();
    }

    QString pendingSteps() const
    {
        QStringList kinds;
        for (const Step& step : fSteps)
            kinds += step.kind;
        return kinds.join(", ");
    }

    // Once: whatever comes behind the first failure follows from it.
    static void fail(const QString& text)
    {
        if (!QTest::currentTestFailed())
            QTest::qFail(qPrintable(text), __FILE__, __LINE__);
    }

    const int fDeadline;
    QTimer fTimer;
    QPointer<QWidget> fFront;
    QElapsedTimer fInFront; ///< since `fFront` is in front, or since a step began on it
    bool fIsBeginning = false;
    std::deque<Step> fSteps;
};

/// The button of `window` with exactly this text.
inline QAbstractButton* buttonOf(const QWidget& window, const QString& text)
{
    for (auto* button : window.findChildren<QAbstractButton*>()) {
        if (button->text() == text)
            return button;
    }
    return nullptr;
}

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
