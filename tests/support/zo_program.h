// SPDX-License-Identifier: MIT
#pragma once

#include "support/program.h"
#include "support/redis_server.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

/// Words for tests that run the program `zo`.

struct Ended
{
    int status; ///< -1: ended by a signal
    QByteArray output;
    QByteArray errors;
};

inline Ended endOf(Program& program)
{
    program.closeWriteChannel();
    const int status = program.waitForExit();
    return {status, program.output(), program.errors().toLocal8Bit()};
}

/// The running program.
class ZoProgram : public Program
{
public:
    explicit ZoProgram(const QStringList& words) : Program(ZO_PROGRAM, words) { start(); }
};

inline Ended run(const QStringList& words)
{
    ZoProgram zo(words);
    return endOf(zo);
}

inline QString addressOf(const RedisServer& server)
{
    return "127.0.0.1:" + QString::number(server.port());
}

/// Connected to `server`, with deadlines that a slow machine keeps.
inline QStringList at(const RedisServer& server, const QStringList& words)
{
    return QStringList{"--connect", addressOf(server), "--timeout", "20000"} + words;
}

inline int linesIn(const QByteArray& text)
{
    return static_cast<int>(text.count('\n'));
}
