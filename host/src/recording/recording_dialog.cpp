// SPDX-License-Identifier: MIT
#include "recording/recording_dialog.h"

#include "dialogs/error_reporter.h"
#include "dialogs/file_field.h"
#include "windows/saved_file.h"

#include <kit/option_words.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDateTime>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFormLayout>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QSettings>
#include <QSpinBox>
#include <QStandardPaths>

namespace {

constexpr char folderName[] = "folders/recordings";
constexpr int largestRotation = 9999;
constexpr int fieldWidth = 64; ///< of letters: a file's name is to be read

QString browseConfiguration(QWidget* parent, const QString& title, const QString& file)
{
    return QFileDialog::getOpenFileName(
        parent, title, file, RecordingDialog::tr("Configuration files (*.xml);;All files (*)"));
}

/// What happens to a file that is there is asked later: it is never replaced.
QString browseOutput(QWidget* parent, const QString& title, const QString& file)
{
    return QFileDialog::getSaveFileName(
        parent, title, file, RecordingDialog::tr("Comma-separated values (*.csv);;All files (*)"),
        nullptr, QFileDialog::DontConfirmOverwrite);
}

QString suggestedFile(const QString& robot)
{
    const QString last = QSettings().value(folderName).toString();
    const QString usual = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    QDir folder(QDir(usual).exists() ? usual : QDir::homePath());
    if (!last.isEmpty() && QDir(last).exists())
        folder.setPath(last);
    const QString now = QDateTime::currentDateTime().toString(" yyyy-MM-dd HH.mm.ss");
    return folder.filePath(harmlessName(robot + now) + ".csv");
}

/// A number and a unit of the recorder's, as in 100MB.
QRegularExpressionMatch rotationIn(const QString& text)
{
    static const QRegularExpression form("^([1-9][0-9]{0,3})(MB|GB|min|h|d)$");
    return form.match(text);
}

} // namespace

RecordingDialog::RecordingDialog(const QString& robot, const RecordingPlan& last,
                                 ErrorReporter& errors, QWidget* parent)
    : QDialog(parent), fErrors(errors)
{
    setWindowTitle(tr("Record %1").arg(robot));
    auto* form = new QFormLayout(this);
    setUpSubject(form);
    setUpRows(form);
    setUpFile(form, robot);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    QPushButton* record = buttons->addButton(tr("&Record"), QDialogButtonBox::AcceptRole);
    record->setObjectName("record");
    record->setDefault(true);
    form->addRow(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &RecordingDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    fillIn(last);
}

void RecordingDialog::setUpSubject(QFormLayout* form)
{
    fConfigurationButton = new QRadioButton(tr("What a &configuration file watches:"), this);
    fConfigurationButton->setObjectName("byConfiguration");
    fConfigurationField =
        new FileField(tr("Configuration file"), "configuration", this, browseConfiguration);
    fConfigurationField->setPlaceholder(tr("a file that a panel has saved"));
    fKeysButton = new QRadioButton(tr("These &keys, one a line:"), this);
    fKeysButton->setObjectName("byKeys");
    fKeysEdit = new QPlainTextEdit(this);
    fKeysEdit->setObjectName("keys");
    fKeysEdit->setTabChangesFocus(true);
    fKeysEdit->setFixedHeight(fKeysEdit->fontMetrics().lineSpacing() * 5);
    fAllButton = new QRadioButton(tr("&All keys that the robot has at the start"), this);
    fAllButton->setObjectName("all");
    form->addRow(fConfigurationButton, fConfigurationField);
    form->addRow(fKeysButton, fKeysEdit);
    form->addRow(fAllButton);
    for (QRadioButton* button : {fConfigurationButton, fKeysButton, fAllButton})
        connect(button, &QRadioButton::toggled, this, &RecordingDialog::xUpdate);
    const auto goTo = [](QWidget* field) { return [field] { field->setFocus(); }; };
    connect(fConfigurationButton, &QRadioButton::clicked, fConfigurationField,
            goTo(fConfigurationField));
    connect(fKeysButton, &QRadioButton::clicked, fKeysEdit, goTo(fKeysEdit));
}

void RecordingDialog::setUpRows(QFormLayout* form)
{
    fPeriodBox = new QSpinBox(this);
    fPeriodBox->setObjectName("period");
    fPeriodBox->setRange(1, kit::longestTime);
    fPeriodBox->setSuffix(tr(" ms"));
    fChangesBox = new QCheckBox(tr("Only what c&hanged: a row for each value"), this);
    fChangesBox->setObjectName("changes");
    fKeyNamesBox = new QCheckBox(tr("Call col&umns by keys, not by aliases"), this);
    fKeyNamesBox->setObjectName("keyNames");
    fKeyNamesBox->setToolTip(tr("So that a robot that plays the recording has these keys"));
    fGapRowsBox = new QCheckBox(tr("An empty row where the robot was &lost"), this);
    fGapRowsBox->setObjectName("gapRows");
    form->addRow(tr("A row e&very:"), fPeriodBox);
    for (QCheckBox* box : {fChangesBox, fKeyNamesBox, fGapRowsBox})
        form->addRow(QString(), box);
    connect(fChangesBox, &QCheckBox::toggled, this, &RecordingDialog::xUpdate);
}

void RecordingDialog::setUpFile(QFormLayout* form, const QString& robot)
{
    fFileField = new FileField(tr("File to record into"), "file", this, browseOutput);
    fFileField->setFile(suggestedFile(robot));
    fFileField->setMinimumWidth(fieldWidth * fontMetrics().averageCharWidth());
    fRotateBox = new QCheckBox(tr("Another &file every"), this);
    fRotateBox->setObjectName("rotate");
    fRotationBox = new QSpinBox(this);
    fRotationBox->setObjectName("rotation");
    fRotationBox->setRange(1, largestRotation);
    fUnitBox = new QComboBox(this);
    fUnitBox->setObjectName("unit");
    fUnitBox->addItem(tr("MB"), "MB");
    fUnitBox->addItem(tr("GB"), "GB");
    fUnitBox->addItem(tr("minutes"), "min");
    fUnitBox->addItem(tr("hours"), "h");
    fUnitBox->addItem(tr("days"), "d");
    auto* line = new QHBoxLayout;
    line->addWidget(fRotationBox);
    line->addWidget(fUnitBox, 1);
    form->addRow(tr("&Into:"), fFileField);
    form->addRow(fRotateBox, line);
    connect(fRotateBox, &QCheckBox::toggled, this, &RecordingDialog::xUpdate);
}

void RecordingDialog::fillIn(const RecordingPlan& plan)
{
    fConfigurationButton->setChecked(plan.what == RecordingPlan::What::Configuration);
    fKeysButton->setChecked(plan.what == RecordingPlan::What::Keys);
    fAllButton->setChecked(plan.what == RecordingPlan::What::All);
    fConfigurationField->setFile(plan.configuration);
    fKeysEdit->setPlainText(plan.keys.join('\n'));
    fPeriodBox->setValue(plan.period);
    fChangesBox->setChecked(plan.changes);
    fKeyNamesBox->setChecked(plan.keyNames);
    fGapRowsBox->setChecked(plan.gapRows);
    const QRegularExpressionMatch rotation = rotationIn(plan.rotation);
    fRotateBox->setChecked(rotation.hasMatch());
    fRotationBox->setValue(rotation.hasMatch() ? rotation.captured(1).toInt() : 100);
    fUnitBox->setCurrentIndex(std::max(0, fUnitBox->findData(rotation.captured(2))));
    xUpdate();
}

void RecordingDialog::xUpdate()
{
    fConfigurationField->setEnabled(fConfigurationButton->isChecked());
    fKeysEdit->setEnabled(fKeysButton->isChecked());
    // The other form of a recording has no columns.
    fKeyNamesBox->setEnabled(fConfigurationButton->isChecked() && !fChangesBox->isChecked());
    fRotationBox->setEnabled(fRotateBox->isChecked());
    fUnitBox->setEnabled(fRotateBox->isChecked());
}

QStringList RecordingDialog::keys() const
{
    QStringList keys;
    for (const QString& line : fKeysEdit->toPlainText().split('\n'))
        keys += line.trimmed();
    keys.removeAll(QString());
    keys.removeDuplicates();
    return keys;
}

RecordingPlan RecordingDialog::plan() const
{
    RecordingPlan plan;
    if (fKeysButton->isChecked())
        plan.what = RecordingPlan::What::Keys;
    else if (fAllButton->isChecked())
        plan.what = RecordingPlan::What::All;
    plan.configuration = fConfigurationField->file();
    plan.keys = keys();
    plan.period = fPeriodBox->value();
    plan.output = fFileField->file();
    if (fRotateBox->isChecked())
        plan.rotation = QString::number(fRotationBox->value()) + fUnitBox->currentData().toString();
    plan.changes = fChangesBox->isChecked();
    plan.keyNames = fKeyNamesBox->isChecked();
    plan.gapRows = fGapRowsBox->isChecked();
    return plan;
}

/// Of what stands in the fields; empty: none.
QString RecordingDialog::problem() const
{
    const RecordingPlan wanted = plan();
    if (wanted.what == RecordingPlan::What::Configuration && wanted.configuration.isEmpty())
        return tr("Choose a configuration file, or say otherwise what to record.");
    if (wanted.what == RecordingPlan::What::Configuration &&
        !QFileInfo(wanted.configuration).isFile())
        return tr("There is no file %1. Choose one that a panel has saved.")
            .arg(wanted.configuration);
    if (wanted.what == RecordingPlan::What::Keys && wanted.keys.isEmpty())
        return tr("Enter the keys to record, one a line.");
    if (wanted.output.isEmpty())
        return tr("Choose the file to record into.");
    if (wanted.output.endsWith('/') || QFileInfo(wanted.output).isDir())
        return tr("%1 is a folder. Add the name of the file to record into.").arg(wanted.output);
    return {};
}

void RecordingDialog::accept()
{
    const QString text = problem();
    const RecordingPlan wanted = plan();
    if (!text.isEmpty())
        fErrors.report(this, text);
    else if (wanted.rotation.isEmpty() && QFileInfo::exists(wanted.output))
        askToContinue();
    else
        finish();
}

void RecordingDialog::askToContinue()
{
    auto* box = new QMessageBox(
        QMessageBox::Question, tr("The file is there already"),
        tr("%1 is there already. Go on behind its last row? It is never replaced; if it is no "
           "recording of the same columns, it is left as it is, and nothing is recorded.")
            .arg(plan().output),
        QMessageBox::Cancel, this);
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setObjectName("continueQuestion");
    const QPushButton* goOn = box->addButton(tr("&Go on behind it"), QMessageBox::AcceptRole);
    connect(goOn, &QPushButton::clicked, this, &RecordingDialog::finish);
    box->open();
}

void RecordingDialog::finish()
{
    rememberPlan(plan());
    QSettings().setValue(folderName, QFileInfo(plan().output).absolutePath());
    QDialog::accept();
}
