// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QWidget>

#include <functional>

class QLineEdit;

/// Asks for a PEM file; empty: the user chose none.
QString browsePemFile(QWidget* parent, const QString& title, const QString& file);

/// A field for a file, with a button to look for one.
class FileField : public QWidget
{
    Q_OBJECT

public:
    /// Lets the user look for a file where `file` is; returns it, or nothing.
    using Browse =
        std::function<QString(QWidget* parent, const QString& title, const QString& file)>;

    /// The file dialog has `title`; the line has the object name `name`.
    FileField(const QString& title, const QString& name, QWidget* parent,
              Browse browse = browsePemFile);

    /// Its absolute path; empty: none.
    QString file() const;
    void setFile(const QString& file);
    void setPlaceholder(const QString& text);

private slots:
    void xBrowse();

private:
    const QString fTitle;
    const Browse fBrowse;
    QLineEdit* fEdit;
};
