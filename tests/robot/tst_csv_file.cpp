// SPDX-License-Identifier: MIT
#include "support/files.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <replay/csv_file.h>

#include <QTemporaryDir>
#include <QtTest>

#include <random>
#include <sys/stat.h>

using Rows = std::vector<std::vector<std::string>>;

/// Reading a file of comma-separated values.
class TestCsvFile : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void rowsAreReadOneByOne();
    void anyEndOfLineWillDo();
    void quotedFieldsHoldAnything();
    void rowsLargerThanAPieceAreWhole();
    void aRowThatTheEndCutsIsLeftOut_data();
    void aRowThatTheEndCutsIsLeftOut();
    void aMisplacedQuoteIsNamedByItsRow();
    void aRowWithoutEndIsRefused();
    void itCanBeReadAgain();
    void aMarkOfUtf8IsNoPartOfIt();
    void whatIsNoFileIsNamed();

private:
    QString path() const { return fFolder->filePath("a.csv"); }
    Rows rowsOf(const QByteArray& text);
    QString error(const QByteArray& text);

    std::unique_ptr<QTemporaryDir> fFolder;
    std::uint64_t fCutRow = 0;
};

namespace {

std::vector<std::string> fieldsOf(const CsvRow& row)
{
    std::vector<std::string> fields;
    for (std::size_t i = 0; i < row.size(); ++i)
        fields.emplace_back(row[i]);
    return fields;
}

} // namespace

void TestCsvFile::init()
{
    fFolder = std::make_unique<QTemporaryDir>();
}

Rows TestCsvFile::rowsOf(const QByteArray& text)
{
    writeBytes(path(), text);
    CsvFile file(path().toStdString());
    Rows rows;
    for (CsvRow row; file.next(row);)
        rows.push_back(fieldsOf(row));
    fCutRow = file.cutRow();
    return rows;
}

QString TestCsvFile::error(const QByteArray& text)
{
    try {
        rowsOf(text);
    } catch (const std::runtime_error& caught) {
        return caught.what();
    }
    return {};
}

void TestCsvFile::rowsAreReadOneByOne()
{
    QCOMPARE(rowsOf("a,b\r\n1,\r\n,2\r\n"), (Rows{{"a", "b"}, {"1", ""}, {"", "2"}}));
    QCOMPARE(fCutRow, std::uint64_t(0));
    QCOMPARE(rowsOf(""), Rows{});
    QCOMPARE(fCutRow, std::uint64_t(0));
}

void TestCsvFile::anyEndOfLineWillDo()
{
    QCOMPARE(rowsOf("a,b\n1,2\n"), (Rows{{"a", "b"}, {"1", "2"}}));
    QCOMPARE(rowsOf("a\r1\r\n\r\n2\n"), (Rows{{"a"}, {"1"}, {"2"}}));
}

void TestCsvFile::quotedFieldsHoldAnything()
{
    QCOMPARE(rowsOf("\"a,b\",\"c\r\nd\",\"e\"\"f\",\"\",\" g \"\r\n"),
             (Rows{{"a,b", "c\r\nd", "e\"f", "", " g "}}));
}

void TestCsvFile::rowsLargerThanAPieceAreWhole()
{
    std::mt19937 random(3);
    Rows rows;
    QByteArray text;
    for (int i = 0; i < 50; ++i) {
        rows.emplace_back();
        for (int k = 0; k < 40; ++k) {
            const QByteArray field(static_cast<int>(random() % 5000),
                                   static_cast<char>('a' + k % 26));
            rows.back().push_back(field.toStdString() + "\n\"");
            text += (k > 0 ? ",\"" : "\"") + field + "\n\"\"\"";
        }
        text += "\r\n";
    }
    QCOMPARE(rowsOf(text), rows);
}

void TestCsvFile::aRowThatTheEndCutsIsLeftOut_data()
{
    QTest::addColumn<QByteArray>("end");
    QTest::newRow("value") << QByteArray("1,2");
    QTest::newRow("comma") << QByteArray("1,");
    QTest::newRow("quote") << QByteArray("1,\"2");
    QTest::newRow("closed quote") << QByteArray("1,\"2\"");
    QTest::newRow("one byte") << QByteArray("1");
}

void TestCsvFile::aRowThatTheEndCutsIsLeftOut()
{
    QFETCH(QByteArray, end);
    QCOMPARE(rowsOf("a,b\r\n" + end), (Rows{{"a", "b"}}));
    QCOMPARE(fCutRow, std::uint64_t(2));
}

void TestCsvFile::aMisplacedQuoteIsNamedByItsRow()
{
    const QString said = error("a,b\r\n1,2\r\n1,\"2\"3\r\n1,2\r\n");
    QVERIFY2(said.contains("row 3") && said.contains("quote") && said.contains(path()),
             qPrintable(said));
}

void TestCsvFile::aRowWithoutEndIsRefused()
{
    const QString field = error("a,b\r\n\"" + QByteArray(CsvFile::fMostBytes + 100000, 'x'));
    QVERIFY2(field.contains("row 2: it is larger than any row may be"), qPrintable(field));
    const QString fields = error(QByteArray(CsvFile::fMostFields + 100000, ','));
    QVERIFY2(fields.contains("row 1: it is larger than any row may be"), qPrintable(fields));
}

void TestCsvFile::itCanBeReadAgain()
{
    writeBytes(path(), "a\r\n1\r\n2");
    CsvFile file(path().toStdString());
    for (int round = 0; round < 3; ++round) {
        CsvRow row;
        QVERIFY(file.next(row));
        QCOMPARE(fieldsOf(row), std::vector<std::string>{"a"});
        QVERIFY(file.next(row));
        QVERIFY(round == 1 || !file.next(row));
        QCOMPARE(file.cutRow() > 0, round != 1);
        file.rewind();
    }
}

void TestCsvFile::aMarkOfUtf8IsNoPartOfIt()
{
    const Rows rows{{"time", "a"}, {"1", "2"}};
    writeBytes(path(), "\xef\xbb\xbf\"time\",a\r\n1,2\r\n");
    CsvFile file(path().toStdString());
    for (int round = 0; round < 2; ++round, file.rewind())
        for (const auto& fields : rows) {
            CsvRow row;
            QVERIFY(file.next(row));
            QCOMPARE(fieldsOf(row), fields);
        }
    QCOMPARE(rowsOf("\xef\xbb,a\r\n"), (Rows{{"\xef\xbb", "a"}}));
}

void TestCsvFile::whatIsNoFileIsNamed()
{
    QCOMPARE(::mkfifo(path().toLocal8Bit().constData(), 0600), 0);
    for (const QString& wrong : {path(), fFolder->path(), path() + "x"}) {
        try {
            CsvFile file(wrong.toStdString());
            QFAIL("it was opened");
        } catch (const std::runtime_error& caught) {
            QVERIFY2(QString(caught.what()).startsWith("cannot read the file '" + wrong),
                     caught.what());
        }
    }
}

REGISTER_TEST(TestCsvFile, NoApplication)
#include "tst_csv_file.moc"
