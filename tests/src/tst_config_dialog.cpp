// SPDX-License-Identifier: MIT
#include "latin1.h"
#include "support/captured_stderr.h"
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/register_test.h"
#include "support/start_bench.h"

#include <zo/error.h>

#include <QPushButton>
#include <QTemporaryDir>
#include <QVBoxLayout>
#include <QtTest>

/// The start-up dialog: how it looks, and how it ends without files.
class TestConfigDialog : public GuardedTest
{
    Q_OBJECT

private slots:
    void itShowsThreeButtonsInAFixedSize();
    void textsFitTheButtonsInAnyFont();
    void imagesAreFoundBehindThePrefix();
    void theKeyboardReachesAndOperatesEveryButton();
    void everyKeyIsFollowedWithoutAFile();
    void anUnreachableRobotHasNoKeys();
    void closingRejects();
    void withoutAModuleNothingHappens();
    void theModuleIsNotKeptAlive();
};

void TestConfigDialog::itShowsThreeButtonsInAFixedSize()
{
    const ConfigDialog dialog(StartBench().module, "", nullptr);
    QCOMPARE(dialog.minimumSize(), QSize(225, 120));
    QCOMPARE(dialog.maximumSize(), QSize(225, 120));
    QCOMPARE(dialog.windowTitle(), QString("Glimmet configuration"));
    auto* layout = qobject_cast<QVBoxLayout*>(dialog.layout());
    QVERIFY(layout && layout->count() == 3);
    const QStringList texts = {newText, openText, allText};
    for (int i = 0; i < 3; ++i) {
        auto* button = qobject_cast<QPushButton*>(layout->itemAt(i)->widget());
        QVERIFY(button);
        QCOMPARE(button->text(), texts[i]);
        QCOMPARE(layout->stretch(i), 0);
        QCOMPARE(layout->itemAt(i)->alignment(), Qt::Alignment());
    }
    QVERIFY(buttonOf(dialog, allText)->icon().isNull());
}

void TestConfigDialog::textsFitTheButtonsInAnyFont()
{
    const QFont usual = QApplication::font();
    for (const int size : {10, 13, 20, 30}) {
        QFont font = usual;
        font.setPixelSize(size);
        QApplication::setFont(font);
        ConfigDialog dialog(StartBench().module, "", nullptr);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog, patience));
        const QAbstractButton* longest = buttonOf(dialog, allText);
        QVERIFY(longest->fontMetrics().horizontalAdvance(allText) < longest->width());
        if (size == 10)
            QCOMPARE(longest->font().pixelSize(), 10);
    }
    QApplication::setFont(usual);
}

void TestConfigDialog::imagesAreFoundBehindThePrefix()
{
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QString prefix = folder.filePath(QString::fromUtf8("gr\xC3\xBC"
                                                             "n-"));
    QVERIFY(QDir().mkpath(prefix + "buttons"));
    QImage image(16, 16, QImage::Format_RGB32);
    image.fill(Qt::red);
    QVERIFY(image.save(prefix + "buttons/new.png"));
    image.fill(Qt::blue);
    QVERIFY(image.save(prefix + "buttons/open.png"));
    const ConfigDialog dialog(StartBench().module, toLatin1(prefix), nullptr);
    const auto colorOf = [&dialog](const QString& text) {
        return buttonOf(dialog, text)->icon().pixmap(16).toImage().pixelColor(8, 8);
    };
    QCOMPARE(colorOf(newText), QColor(Qt::red));
    QCOMPARE(colorOf(openText), QColor(Qt::blue));
    QCOMPARE(ConfigDialog::fOpenImage, QString("buttons/open.png"));
    QCOMPARE(ConfigDialog::fNewImage, QString("buttons/new.png"));
}

void TestConfigDialog::theKeyboardReachesAndOperatesEveryButton()
{
    const StartBench start;
    ConfigDialog dialog(start.module, "", nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog, patience));
    for (const QString& text : {newText, openText, allText}) {
        QCOMPARE(QApplication::focusWidget(), buttonOf(dialog, text));
        if (text != allText)
            QTest::keyClick(&dialog, Qt::Key_Tab);
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(start.values().size(), std::size_t(3));
}

void TestConfigDialog::everyKeyIsFollowedWithoutAFile()
{
    StartBench start;
    start.press(allText);
    QCOMPARE(start.run(), int(QDialog::Accepted));
    QCOMPARE(start.values().size(), std::size_t(3));
    for (std::size_t i = 0; i < 3; ++i) {
        QCOMPARE(start.values()[i]->names, std::make_pair(start.keys[i], start.keys[i]));
        QVERIFY(!start.values()[i]->watch && !start.values()[i]->graph);
    }
}

void TestConfigDialog::anUnreachableRobotHasNoKeys()
{
    StartBench start;
    start.memory.answer = [](const ZoValue&) -> ZoValue { throw ZoError("no link"); };
    start.press(allText);
    CapturedStderr captured;
    QCOMPARE(start.run(), int(QDialog::Accepted));
    QVERIFY(start.values().empty());
}

void TestConfigDialog::closingRejects()
{
    StartBench start;
    start.user.then<ConfigDialog>([](ConfigDialog& dialog) { dialog.close(); });
    QCOMPARE(start.run(), int(QDialog::Rejected));
}

void TestConfigDialog::withoutAModuleNothingHappens()
{
    StartBench start;
    ConfigDialog dialog(start.module, "", nullptr);
    start.module.reset();
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog, patience));
    for (const QString& text : {newText, openText, allText}) {
        QTest::mouseClick(buttonOf(dialog, text), Qt::LeftButton);
        QVERIFY(dialog.isVisible());
        QVERIFY(!QApplication::activeModalWidget());
    }
    QVERIFY(start.memory.calls.empty());
}

void TestConfigDialog::theModuleIsNotKeptAlive()
{
    StartBench start;
    const ConfigDialog dialog(start.module, "", nullptr);
    QCOMPARE(start.module.use_count(), 1L);
}

REGISTER_TEST(TestConfigDialog, QApplication)
#include "tst_config_dialog.moc"
