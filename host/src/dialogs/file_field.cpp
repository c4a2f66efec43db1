// SPDX-License-Identifier: MIT
#include "dialogs/file_field.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

#include <utility>

QString browsePemFile(QWidget* parent, const QString& title, const QString& file)
{
    return QFileDialog::getOpenFileName(parent, title, file,
                                        FileField::tr("PEM files (*.pem *.crt *.key)"));
}

FileField::FileField(const QString& title, const QString& name, QWidget* parent, Browse browse)
    : QWidget(parent), fTitle(title), fBrowse(std::move(browse)), fEdit(new QLineEdit(this))
{
    fEdit->setObjectName(name);
    auto* button = new QPushButton(tr("Browse..."), this);
    button->setAccessibleName(title);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(fEdit);
    layout->addWidget(button);
    setFocusProxy(fEdit);
    setFocusPolicy(Qt::ClickFocus); // the key of a label does not lead to what has none
    connect(button, &QPushButton::clicked, this, &FileField::xBrowse);
}

QString FileField::file() const
{
    const QString text = fEdit->text().trimmed();
    return text.isEmpty() ? QString() : QFileInfo(text).absoluteFilePath();
}

void FileField::setFile(const QString& file)
{
    fEdit->setText(file);
}

void FileField::setPlaceholder(const QString& text)
{
    fEdit->setPlaceholderText(text);
}

void FileField::xBrowse()
{
    const QString file = fBrowse(this, fTitle, fEdit->text());
    if (!file.isEmpty())
        setFile(file);
}
