// SPDX-License-Identifier: MIT
#pragma once

#include <kit/descriptor.h>

#include <QObject>

#include <array>

/// Turns the signals that end a program (SIGTERM, SIGINT, SIGHUP) into one of the event loop's, so
/// that it can put things in order before. The second one of a kind ends the program on the spot,
/// as without this. Those that were ignored already stay so. At most one at a time.
class EndingSignals : public QObject
{
    Q_OBJECT

public:
    /// Throws std::system_error.
    explicit EndingSignals(QObject* parent = nullptr);
    ~EndingSignals() override;

signals:
    void received();

private slots:
    void xRead();

private:
    static constexpr std::array<int, 3> numbers();

    kit::Descriptor fReadEnd;
    kit::Descriptor fWriteEnd;
};
