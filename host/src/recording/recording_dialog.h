// SPDX-License-Identifier: MIT
#pragma once

#include "recording/recording_plan.h"

#include <QDialog>

class ErrorReporter;
class FileField;
class QCheckBox;
class QComboBox;
class QFormLayout;
class QPlainTextEdit;
class QRadioButton;
class QSpinBox;

/// Asks what to record of a robot, how, and into which file. It closes with what can be begun,
/// which is remembered for the next time.
class RecordingDialog : public QDialog
{
    Q_OBJECT

public:
    /// `robot` is its address, `last` what stands in the fields.
    RecordingDialog(const QString& robot, const RecordingPlan& last, ErrorReporter& errors,
                    QWidget* parent);

    RecordingPlan plan() const;

public slots:
    void accept() override;

private slots:
    void xUpdate();

private:
    void setUpSubject(QFormLayout* form);
    void setUpRows(QFormLayout* form);
    void setUpFile(QFormLayout* form, const QString& robot);
    void fillIn(const RecordingPlan& plan);
    QStringList keys() const;
    QString problem() const;
    void askToContinue();
    void finish();

    ErrorReporter& fErrors;
    QRadioButton* fConfigurationButton;
    QRadioButton* fKeysButton;
    QRadioButton* fAllButton;
    FileField* fConfigurationField;
    QPlainTextEdit* fKeysEdit;
    QSpinBox* fPeriodBox;
    QCheckBox* fChangesBox;
    QCheckBox* fKeyNamesBox;
    QCheckBox* fGapRowsBox;
    FileField* fFileField;
    QCheckBox* fRotateBox;
    QSpinBox* fRotationBox;
    QComboBox* fUnitBox;
};
