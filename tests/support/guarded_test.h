// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

#include <memory>

/// Base of all test classes: a test function fails when the toolkit or the code under test
/// prints a warning that the function did not announce with `expectWarning`, and when an
/// announced one does not come. A derived class with an `initTestCase` or `cleanup` of its own
/// calls this class's too.
class GuardedTest : public QObject
{
    Q_OBJECT

public:
    /// Deletes `helper` when the running test function ends, which its destructor may still fail.
    static void keepUntilEnd(std::unique_ptr<QObject> helper);

protected:
    /// Announces one warning whose text contains `part`.
    static void expectWarning(const QString& part);

protected slots:
    void initTestCase();
    void cleanup();
};
