#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <QWidget>

#include <deque>
#include <functional>
#include <utility>

/// Answers modal dialogs the way a user does: each step waits until a dialog of its kind is in
/// front, then acts on it. Make it before the call that opens the first dialog. A step whose
/// dialog does not come within the deadline ends the run: all dialogs are closed.
class ModalDriver : public QObject
{
public:
    ModalDriver()
    {
        connect(&fTimer, &QTimer::timeout, this, [this] { look(); });
        fTimer.start(5);
        fWaiting.start();
    }

    template <class Dialog>
    void then(std::function<void(Dialog&)> action)
    {
        fSteps.push_back([this, action = std::move(action)](QWidget* front) {
            auto* dialog = dynamic_cast<Dialog*>(front);
            if (dialog)
                begin([action, dialog] { action(*dialog); }, dialog);
            return dialog != nullptr;
        });
    }

    /// True when every step was taken.
    bool isDone() const { return fSteps.empty(); }

private:
    // Not from within the timer, which does not fire again while it is at work.
    void begin(const std::function<void()>& action, QWidget* dialog)
    {
        fIsBeginning = true;
        QTimer::singleShot(0, dialog, [this, action] {
            fIsBeginning = false;
            action();
        });
    }

    void look()
    {
        QWidget* front = QApplication::activeModalWidget();
        if (fWaiting.elapsed() > fDeadline)
            closeAll(front);
        else if (!fIsBeginning && front && front->isVisible() && !fSteps.empty() &&
                 fSteps.front()(front)) {
            fSteps.pop_front();
            fWaiting.restart();
        }
    }

    static void closeAll(QWidget* front)
    {
        for (; front; front = QApplication::activeModalWidget()) {
            front->close();
            if (front->isVisible())
                return;
        }
    }

    static constexpr qint64 fDeadline = 20000; // ms

    QTimer fTimer;
    QElapsedTimer fWaiting;
    bool fIsBeginning = false;
    std::deque<std::function<bool(QWidget*)>> fSteps;
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
