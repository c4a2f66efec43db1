// SPDX-License-Identifier: MIT
#pragma once

#include "robots/robot_check.h"

#include <QDialog>

class QDialogButtonBox;
class QPlainTextEdit;

/// Tries a robot, and tells each step as text that can be copied. Closing it calls that off.
class CheckDialog : public QDialog
{
    Q_OBJECT

public:
    CheckDialog(const ConnectionSettings& settings, QWidget* parent);

private slots:
    void xShowStep(const ZoCheck::Step& pStep);
    void xFinish(bool pIsGood, const QString& pProblem);

private:
    const bool fHasTls;
    RobotCheck* fCheck;
    QPlainTextEdit* fText;
    QDialogButtonBox* fButtons;
};
