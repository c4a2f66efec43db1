// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>

class ErrorReporter;

/// The program's application object: no exception that a slot lets out ends the program.
class Application : public QApplication
{
    Q_OBJECT

public:
    /// Settings that the toolkit wants before the object exists: sharp and large enough on
    /// screens of high density.
    static void prepare();

    Application(int& argc, char** argv);
    ~Application() override;

    ErrorReporter& errors() { return *fErrors; }

    bool notify(QObject* receiver, QEvent* event) override;

private:
    void reportException(int eventType, const QString& text);

    ErrorReporter* fErrors;
};
