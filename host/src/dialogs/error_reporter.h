// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>

class QMessageBox;
class QWidget;

/// Shows errors, in one box a window, whose text can be selected and copied. Lives on the GUI
/// thread.
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

    /// How many errors a box shows at once, and how many it keeps in all.
    static constexpr int fMostInABox = 10;
    static constexpr int fMostKept = 200;

    /// Shows `text` in a box over `window` (null: over none) and returns at once. Joins those of a
    /// box that is open there already, each text once: behind the first ones in the details. What
    /// got no place in sight, or is repeated by running work, is told by `noted`, too.
    void report(QWidget* window, const QString& text, Origin origin = Origin::UserAction);

    /// Tells what matters less than an error, for status lines.
    void note(const QString& text) { emit noted(text.simplified()); }

signals:
    /// What is nowhere else in sight; for status lines. One line.
    void noted(const QString& text);

private:
    bool isRepeated(const QString& text);
    QMessageBox* boxOf(QWidget* window) const;
    static bool add(QMessageBox* box, const QString& text);
    QMessageBox* openBox(QWidget* window);

    const Clock fClock;
    QList<QPointer<QMessageBox>> fBoxes; ///< some have gone
    QHash<QString, qint64> fLastTimes;   ///< when each was there last, of those not absent
};
