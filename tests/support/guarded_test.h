// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <memory>

/// Base of all test classes: a test function fails when the toolkit or the code under test
/// prints a warning. A derived class with an `initTestCase` or `cleanup` of its own calls this
/// class's too.
class GuardedTest : public QObject
{
    Q_OBJECT

public:
    /// Deletes `helper` when the running test function ends, which its destructor may still fail.
    static void keepUntilEnd(std::unique_ptr<QObject> helper);

protected slots:
    void initTestCase();
    void cleanup();
};
