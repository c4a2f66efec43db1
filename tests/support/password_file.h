// SPDX-License-Identifier: MIT
#pragma once

#include <QTemporaryFile>

/// A file whose first line is a password, for programs that sign in.
class PasswordFile : public QTemporaryFile
{
public:
    explicit PasswordFile(const QByteArray& password)
    {
        if (!open() || write(password + '\n') < 0 || !flush())
            qFatal("the test cannot write a password file");
    }
};
