// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>
#include <optional>

class QMessageBox;
class QWidget;

/// Shows errors, one box at a time. Lives on the GUI thread.
class ErrorReporter : public QObject
{
    Q_OBJECT

public:
    /// What led to an error: a box answers an action, but running work may fail many times a
    /// second and must not bury the user.
    enum class Origin
    {
        UserAction,
        RunningWork
    };

    /// How long an error of running work must have been absent to get a box again, in ms.
    static constexpr int fQuietTime = 10000;

    /// A time in ms that never goes back.
    using Clock = std::function<qint64()>;

    explicit ErrorReporter(QObject* parent = nullptr);
    explicit ErrorReporter(Clock clock, QObject* parent = nullptr);
    ~ErrorReporter() override;

    /// Shows `text` in a box over `window` (null: over none) and returns at once. While a box is
    /// open, and when running work repeats its error, the text is only told by `noted`.
    void report(QWidget* window, const QString& text, Origin origin = Origin::UserAction);

signals:
    /// An error that got no box of its own; for status lines. One line.
    void noted(const QString& text);

private:
    bool isRepeated(const QString& text);
    void openBox(QWidget* window, const QString& text);

    const Clock fClock;
    QPointer<QMessageBox> fBox;
    QString fLastText;
    std::optional<qint64> fLastTime; ///< of any error
};
