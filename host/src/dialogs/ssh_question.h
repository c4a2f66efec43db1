// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

class QLineEdit;

/// A question of ssh: for a password, a pass phrase, or whether a host is the right one.
class SshQuestion : public QDialog
{
    Q_OBJECT

public:
    /// `kind` is what ssh calls it: "confirm" wants no more than a yes or no, "none" not even that;
    /// anything else a line.
    SshQuestion(const QString& text, const QString& kind, QWidget* parent = nullptr);

    /// The line; empty where none is wanted.
    QString answer() const;

private:
    QLineEdit* fEdit = nullptr;
};
