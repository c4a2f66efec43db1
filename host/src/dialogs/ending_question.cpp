// SPDX-License-Identifier: MIT
#include "dialogs/ending_question.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QPushButton>

QMessageBox* makeEndingQuestion(QWidget* window, const QString& text, const QString& agreement,
                                const std::function<void()>& agreed)
{
    auto* question =
        new QMessageBox(QMessageBox::Question,
                        QCoreApplication::translate("EndingQuestion", "Recordings are running"),
                        text, QMessageBox::Cancel, window);
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->setObjectName("closeQuestion");
    QPushButton* end = question->addButton(agreement, QMessageBox::AcceptRole);
    QObject::connect(end, &QPushButton::clicked, window, agreed);
    question->setDefaultButton(QMessageBox::Cancel);
    return question;
}
