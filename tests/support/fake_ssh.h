// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QtTest>

/// A program `ssh` in front of the PATH for as long as this lives. It notes its words, and connects
/// its input and output with 127.0.0.1, at the port of -W.
class FakeSsh
{
public:
    FakeSsh() : fPath(qgetenv("PATH"))
    {
        write("relay.py", "import os, socket, sys, threading\n"
                          "s = socket.create_connection(('127.0.0.1', int(sys.argv[1])))\n"
                          "def send():\n"
                          "    while True:\n"
                          "        data = os.read(0, 65536)\n"
                          "        if not data: break\n"
                          "        s.sendall(data)\n"
                          "    s.shutdown(socket.SHUT_WR)\n"
                          "threading.Thread(target=send, daemon=True).start()\n"
                          "while True:\n"
                          "    data = s.recv(65536)\n"
                          "    if not data: break\n"
                          "    os.write(1, data)\n");
        act("while [ \"$1\" != -W ]; do shift; done; exec python3 \"$folder/relay.py\" "
            "\"${2##*:}\"");
        qputenv("PATH", QFile::encodeName(fFolder.path()) + ':' + fPath);
    }
    ~FakeSsh() { qputenv("PATH", fPath); }
    FakeSsh(const FakeSsh&) = delete;
    FakeSsh& operator=(const FakeSsh&) = delete;

    /// What it does from now on, as a shell says it.
    void act(const QByteArray& script) const
    {
        write("ssh", "#!/bin/sh\nfolder=${0%/*}\n"
                     "echo \"$$ asks=$SSH_ASKPASS $*\" >>\"$folder/log\"\n" +
                         script + "\n");
    }

    /// A line for each start: its process, its SSH_ASKPASS, its words.
    QStringList starts() const
    {
        QFile log(fFolder.filePath("log"));
        return log.open(QIODevice::ReadOnly)
                   ? QString::fromLocal8Bit(log.readAll()).split('\n', Qt::SkipEmptyParts)
                   : QStringList();
    }
    qint64 lastProcess() const { return starts().last().section(' ', 0, 0).toLongLong(); }

private:
    void write(const QString& name, const QByteArray& text) const
    {
        // In place at once: somebody may be starting it.
        QFile file(fFolder.filePath(name + ".new"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        file.close();
        QFile::remove(fFolder.filePath(name));
        QVERIFY(file.rename(fFolder.filePath(name)));
    }

    const QByteArray fPath;
    QTemporaryDir fFolder;
};
