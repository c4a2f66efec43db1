// SPDX-License-Identifier: MIT
#include "connection/elided_label.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <QTextDocument>
#include <QtTest>

/// A line that is cut where its widget ends, and says so.
class TestElidedLabel : public GuardedTest
{
    Q_OBJECT

private slots:
    void whatFitsIsShownWhole();
    void whatDoesNotFitEndsInAnEllipsis();
    void severalLinesBecomeOne();
    void theWholeTextIsInTheToolTipAsItIs();
    void paintsWhatItShows();
};

namespace {

const QString longText = "the robot went away, and nobody knows where to";

QImage imageOf(const QString& text, int width)
{
    ElidedLabel label(nullptr);
    label.resize(width, 20);
    label.showText(text);
    return label.grab().toImage();
}

} // namespace

void TestElidedLabel::whatFitsIsShownWhole()
{
    ElidedLabel label(nullptr);
    label.resize(1000, 20);
    label.showText(longText);
    QCOMPARE(label.shownText(), longText);
}

void TestElidedLabel::whatDoesNotFitEndsInAnEllipsis()
{
    ElidedLabel label(nullptr);
    label.resize(100, 20);
    label.showText(longText);
    QVERIFY2(label.shownText().endsWith(QChar(0x2026)), qPrintable(label.shownText()));
    QVERIFY(label.shownText().size() > 3);
    QVERIFY(longText.startsWith(label.shownText().chopped(1)));
    QCOMPARE(label.text(), longText);
}

void TestElidedLabel::severalLinesBecomeOne()
{
    ElidedLabel label(nullptr);
    label.resize(1000, 20);
    label.showText("one\ntwo");
    QCOMPARE(label.shownText(), QString("one two"));
}

void TestElidedLabel::theWholeTextIsInTheToolTipAsItIs()
{
    ElidedLabel label(nullptr);
    for (const char* text : {"<b>bold</b>", "\"bold\" & \n  <i>", "&lt;"}) {
        label.showText(text);
        // As the tool tip's own label does.
        QVERIFY2(Qt::mightBeRichText(label.toolTip()), qPrintable(label.toolTip()));
        QTextDocument shown;
        shown.setHtml(label.toolTip());
        QCOMPARE(shown.toPlainText(), QString(text));
    }
    QCOMPARE(label.textFormat(), Qt::PlainText);
}

void TestElidedLabel::paintsWhatItShows()
{
    ElidedLabel label(nullptr);
    label.resize(100, 20);
    label.showText(longText);
    const QString shown = label.shownText();
    QCOMPARE(imageOf(longText, 100), imageOf(shown, 100));
    QVERIFY(imageOf(longText, 100) != imageOf(shown.chopped(1), 100));
    QVERIFY(imageOf(longText, 100) != imageOf(QString(), 100));
}

REGISTER_TEST(TestElidedLabel, QApplication)
#include "tst_elided_label.moc"
