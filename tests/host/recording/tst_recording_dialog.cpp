// SPDX-License-Identifier: MIT
#include "dialogs/error_reporter.h"
#include "recording/recording_dialog.h"
#include "support/files.h"
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/register_test.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QSettings>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QtTest>

using What = RecordingPlan::What;

/// The dialog that asks what to record.
class TestRecordingDialog : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void whatWasTypedIsThePlan();
    void keysAreOneALine();
    void suggestsAFileOfRobotAndDate();
    void remembersFolderAndFields();
    void whatCannotBeIsNotFilledIn();
    void namesWhatIsMissing_data();
    void namesWhatIsMissing();
    void aFileThatIsThereIsContinuedOnlyIfWanted();
    void filesAreBrowsedFor();
    void fieldsThatDoNotCountAreDisabled();
    void keysOfLabelsLeadToTheirFields();

private:
    void open(const RecordingPlan& last = {});
    template <typename Widget>
    Widget* field(const char* name) const
    {
        return fDialog->findChild<Widget*>(name);
    }
    void type(const char* name, const QString& text) const;
    void clickRecord() const { QTest::mouseClick(field<QPushButton>("record"), Qt::LeftButton); }
    void browse(const char* name, const QString& file) const;

    QScopedPointer<ErrorReporter> fErrors;
    QScopedPointer<RecordingDialog> fDialog;
    QScopedPointer<QTemporaryDir> fFolder;
};

void TestRecordingDialog::init()
{
    QSettings().clear();
    fFolder.reset(new QTemporaryDir);
    fErrors.reset(new ErrorReporter);
    open();
}

void TestRecordingDialog::cleanup()
{
    fDialog.reset();
    GuardedTest::cleanup();
}

void TestRecordingDialog::open(const RecordingPlan& last)
{
    fDialog.reset(new RecordingDialog("[::1]:6380", last, *fErrors, nullptr));
    fDialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(fDialog.data()));
}

void TestRecordingDialog::type(const char* name, const QString& text) const
{
    auto* edit = field<QLineEdit>(name);
    edit->selectAll();
    QTest::keyClicks(edit, text);
}

void TestRecordingDialog::whatWasTypedIsThePlan()
{
    const QString configuration = fFolder->filePath("c.xml");
    writeBytes(configuration, "<stm_viewer/>");
    type("configuration", configuration);
    type("file", fFolder->filePath("a.csv"));
    field<QSpinBox>("period")->selectAll();
    QTest::keyClicks(field<QSpinBox>("period"), "50");
    field<QCheckBox>("rotate")->click();
    field<QSpinBox>("rotation")->setValue(2);
    field<QComboBox>("unit")->setCurrentIndex(4);
    field<QCheckBox>("gapRows")->click();
    field<QCheckBox>("keyNames")->click();
    clickRecord();
    QCOMPARE(fDialog->result(), int(QDialog::Accepted));
    const RecordingPlan plan = fDialog->plan();
    QCOMPARE(int(plan.what), int(What::Configuration));
    QCOMPARE(plan.configuration, configuration);
    QCOMPARE(plan.output, fFolder->filePath("a.csv"));
    QCOMPARE(plan.period, 50);
    QCOMPARE(plan.rotation, QString("2d"));
    QVERIFY(!plan.changes && plan.keyNames && !plan.gapRows);
}

void TestRecordingDialog::keysAreOneALine()
{
    field<QRadioButton>("byKeys")->click();
    field<QPlainTextEdit>("keys")->setPlainText(" Arm/Elbow \n\nBody, all\nArm/Elbow\n");
    QCOMPARE(int(fDialog->plan().what), int(What::Keys));
    QCOMPARE(fDialog->plan().keys, (QStringList{"Arm/Elbow", "Body, all"}));
    field<QRadioButton>("all")->click();
    QCOMPARE(int(fDialog->plan().what), int(What::All));
}

void TestRecordingDialog::suggestsAFileOfRobotAndDate()
{
    const QFileInfo file(field<QLineEdit>("file")->text());
    QVERIFY(file.isAbsolute());
    const QRegularExpression form(R"(^\[--1\]-6380 \d{4}-\d\d-\d\d \d\d\.\d\d\.\d\d\.csv$)");
    QVERIFY2(form.match(file.fileName()).hasMatch(), qPrintable(file.fileName()));
}

void TestRecordingDialog::remembersFolderAndFields()
{
    field<QRadioButton>("byKeys")->click();
    field<QPlainTextEdit>("keys")->setPlainText("a\nb");
    field<QCheckBox>("changes")->click();
    field<QCheckBox>("rotate")->click();
    field<QSpinBox>("rotation")->setValue(30);
    field<QComboBox>("unit")->setCurrentIndex(2);
    type("file", fFolder->filePath("a.csv"));
    clickRecord();
    const RecordingPlan first = fDialog->plan();
    open(lastPlan());
    RecordingPlan second = fDialog->plan();
    QCOMPARE(QFileInfo(second.output).absolutePath(), fFolder->path());
    QVERIFY(second.output != first.output);
    QCOMPARE(int(second.what), int(What::Keys));
    QCOMPARE(second.keys, first.keys);
    QCOMPARE(second.rotation, QString("30min"));
    QVERIFY(second.changes);
    fFolder.reset();
    open(lastPlan());
    QVERIFY(QFileInfo(QFileInfo(fDialog->plan().output).path()).isDir());
}

void TestRecordingDialog::whatCannotBeIsNotFilledIn()
{
    RecordingPlan last;
    last.period = -5;
    last.rotation = "0 parsecs; --all";
    open(last);
    QCOMPARE(fDialog->plan().period, 1);
    QCOMPARE(fDialog->plan().rotation, QString());
}

void TestRecordingDialog::namesWhatIsMissing_data()
{
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<QString>("configuration");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("text");
    const QString by = "byConfiguration";
    QTest::newRow("configuration") << by << ""
                                   << "/a.csv"
                                   << "Choose a configuration file";
    QTest::newRow("no file") << by << "/no/such.xml"
                             << "/a.csv"
                             << "no file /no/such.xml";
    QTest::newRow("folder") << by << "/"
                            << "/a.csv"
                            << "no file /.";
    QTest::newRow("keys") << "byKeys"
                          << ""
                          << "/a.csv"
                          << "Enter the keys";
    QTest::newRow("file") << "all"
                          << ""
                          << ""
                          << "file to record into";
    QTest::newRow("folder to record into") << "all"
                                           << ""
                                           << "/usr"
                                           << "/usr is a folder";
    QTest::newRow("new folder to record into") << "all"
                                               << ""
                                               << "/no/such/"
                                               << "/no/such/ is a folder";
}

void TestRecordingDialog::namesWhatIsMissing()
{
    QFETCH(QString, chosen);
    QFETCH(QString, configuration);
    QFETCH(QString, file);
    QFETCH(QString, text);
    field<QLineEdit>("configuration")->setText(configuration);
    field<QRadioButton>(chosen.toLatin1())->click();
    field<QLineEdit>("file")->setText(file);
    clickRecord();
    QVERIFY(fDialog->isVisible());
    QVERIFY(shownBox() && shownBox()->text().contains(text));
    clickOk(shownBox());
}

void TestRecordingDialog::aFileThatIsThereIsContinuedOnlyIfWanted()
{
    const QString file = fFolder->filePath("a.csv");
    writeBytes(file, "time,a\r\n");
    field<QRadioButton>("all")->click();
    type("file", file);
    for (const char* button : {"Cancel", "&Go on behind it"}) {
        clickRecord();
        QMessageBox* box = shownBox();
        QVERIFY(box && box->text().contains(file) && fDialog->isVisible());
        for (QAbstractButton* each : box->buttons())
            if (each->text() == button)
                QTest::mouseClick(each, Qt::LeftButton);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!shownBox());
    }
    QCOMPARE(fDialog->result(), int(QDialog::Accepted));
    QCOMPARE(bytesOf(file), QByteArray("time,a\r\n"));
}

void TestRecordingDialog::browse(const char* name, const QString& file) const
{
    whenShown("QFileDialog", [file](QDialog& dialog) {
        auto* edit = dialog.findChild<QLineEdit*>();
        edit->setText(file);
        QTest::keyClick(edit, Qt::Key_Return);
    });
    auto* button = field<QLineEdit>(name)->parentWidget()->findChild<QPushButton*>();
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(field<QLineEdit>(name)->text(), file);
}

void TestRecordingDialog::filesAreBrowsedFor()
{
    const QString file = fFolder->filePath("there.xml");
    writeBytes(file, "<stm_viewer/>");
    browse("configuration", file);
    browse("file", fFolder->filePath("new.csv"));
    browse("file", file); // without a question: it would not be replaced
}

void TestRecordingDialog::fieldsThatDoNotCountAreDisabled()
{
    QVERIFY(field<QLineEdit>("configuration")->isEnabled());
    QVERIFY(!field<QPlainTextEdit>("keys")->isEnabled());
    QVERIFY(!field<QSpinBox>("rotation")->isEnabled());
    QVERIFY(field<QCheckBox>("keyNames")->isEnabled());
    field<QCheckBox>("changes")->click();
    QVERIFY(!field<QCheckBox>("keyNames")->isEnabled());
    field<QRadioButton>("byKeys")->click();
    QVERIFY(!field<QLineEdit>("configuration")->isEnabled());
    QVERIFY(field<QPlainTextEdit>("keys")->isEnabled());
    QCOMPARE(fDialog->focusWidget(), field<QPlainTextEdit>("keys"));
    field<QRadioButton>("byConfiguration")->click();
    QCOMPARE(fDialog->focusWidget(), field<QLineEdit>("configuration"));
}

void TestRecordingDialog::keysOfLabelsLeadToTheirFields()
{
    fDialog->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(fDialog.data()));
    QTest::keyClick(fDialog.data(), Qt::Key_V, Qt::AltModifier);
    QCOMPARE(fDialog->focusWidget(), field<QSpinBox>("period"));
    QTest::keyClick(fDialog.data(), Qt::Key_I, Qt::AltModifier);
    QCOMPARE(fDialog->focusWidget(), field<QLineEdit>("file"));
    QTest::keyClick(fDialog->focusWidget(), Qt::Key_Backtab);
    QCOMPARE(fDialog->focusWidget(), field<QCheckBox>("gapRows"));
}

REGISTER_TEST(TestRecordingDialog, HostApplication)
#include "tst_recording_dialog.moc"
