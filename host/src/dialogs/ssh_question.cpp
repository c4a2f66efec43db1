// SPDX-License-Identifier: MIT
#include "dialogs/ssh_question.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace {

/// Whether others may read the answer: ssh asks for a word, and not for a secret.
bool isOpenQuestion(const QString& text)
{
    return text.contains("(yes/no");
}

} // namespace

SshQuestion::SshQuestion(const QString& text, const QString& kind, QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(tr("ssh asks"));
    auto* layout = new QVBoxLayout(this);
    auto* label = new QLabel(text, this);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setMinimumWidth(fontMetrics().averageCharWidth() * 60);
    layout->addWidget(label);
    if (kind != "confirm" && kind != "none") {
        fEdit = new QLineEdit(this);
        fEdit->setEchoMode(isOpenQuestion(text) ? QLineEdit::Normal : QLineEdit::Password);
        fEdit->setAccessibleName(text);
        layout->addWidget(fEdit);
    }
    auto* buttons = new QDialogButtonBox(this);
    buttons->setStandardButtons(kind == "none" ? QDialogButtonBox::Close
                                               : QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

QString SshQuestion::answer() const
{
    return fEdit ? fEdit->text() : QString();
}
