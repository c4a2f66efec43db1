// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

/// As long as it lives, the first dialog that asks for a file to open begins with `file`: for
/// panels that ask by themselves which file they shall open.
class OfferedFile : public QObject
{
    Q_OBJECT

public:
    /// Without a file it offers nothing.
    explicit OfferedFile(const QString& file);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QString fFile;
};
