// SPDX-License-Identifier: MIT
#pragma once

#include "support/files.h"
#include "support/redis_server.h"
#include "support/zo_program.h"

#include <QTemporaryDir>

#include <memory>

/// What tests of `zo record` share: a robot with three keys, and a file to record it into.
class RecordBench
{
protected:
    void setUp()
    {
        fFolder = std::make_unique<QTemporaryDir>();
        fServer = std::make_unique<RedisServer>();
        fServer->command({"MSET", "a", "0.5", "b", "walking", "c", "[1, \"x\\n\"]"});
    }

    QString path() const { return fFolder->filePath("a.csv"); }
    QStringList lines() const
    {
        return QString::fromUtf8(bytesOf(path())).split("\r\n", Qt::SkipEmptyParts);
    }
    QStringList recording(const QStringList& words) const
    {
        return at(*fServer, QStringList{"record", "--output", path()} + words);
    }

    std::unique_ptr<QTemporaryDir> fFolder;
    std::unique_ptr<RedisServer> fServer;
};
