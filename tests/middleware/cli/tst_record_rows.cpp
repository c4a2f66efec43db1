// SPDX-License-Identifier: MIT
#include "support/files.h"
#include "support/guarded_test.h"
#include "support/program.h"
#include "support/register_test.h"

#include <columns.h>
#include <field.h>
#include <rows.h>

#include <kit/usage_error.h>

#include <zo/json.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <numeric>
#include <random>

using namespace std::chrono_literals;

/// What answers of a robot become in a recording.
class TestRecordRows : public GuardedTest
{
    Q_OBJECT

private slots:
    void aRowHasTheTimeAndEachValueAsJson();
    void valuesThatDidNotChangeStandInEachRow();
    void aGapIsARowWithoutValues();
    void changesHaveARowEach();
    void fieldsAreQuotedWhereTheyMustBe();
    void namesThatRepeatAreToldApartByTheirKeys();
    void aTableThatLooksLikeChangesIsRefused();
    void aNameThatIsNoUtf8IsTakenForLatin1();
    void rowsAreTold();
    void pythonReadsBackWhateverWasWritten();
};

namespace {

ZoListAnswer answerOf(const ZoValue::Elements& values, const std::vector<int>& changed)
{
    return {ZoValue::fromElements(values), {}, changed};
}

ZoValue randomValue(std::mt19937& random)
{
    static const std::string pieces[] = {"a", "\"", ",",  "\n",     "\r\n",     "\\",  " ",
                                         "",  "'",  "\t", "\u00e9", "\xff\x80", "NaN", "3"};
    std::string text;
    for (std::uint64_t count = random() % 5; count > 0; --count)
        text += pieces[random() % std::size(pieces)];
    switch (random() % 6) {
    case 0:
        return {};
    case 1:
        return static_cast<std::int64_t>(random()) - (std::int64_t{1} << 31);
    case 2:
        return std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 200) - 100);
    case 3:
        return random() % 2 == 0;
    case 4:
        return ZoValue::fromElements({1, "a,\"b\"\n", true, 0.5, ZoValue()});
    default:
        return text;
    }
}

/// Of a file of CSV: its rows without the header as JSON, of which a cell that holds JSON is that.
constexpr const char* pythonReader = R"(
import csv, json, sys
def cell(text):
    return json.loads(text) if text else None
with open(sys.argv[1], newline="", encoding="utf-8") as file:
    rows = list(csv.reader(file, strict=True))
names = rows[0]
print(json.dumps([names] + [[float(row[0])] + [cell(c) for c in row[1:]] for row in rows[1:]]))
)";

} // namespace

void TestRecordRows::aRowHasTheTimeAndEachValueAsJson()
{
    TableRows rows(columnsOf({"a", "b", "c", "d", "e", "f"}));
    QCOMPARE(rows.header(), std::string("time,a,b,c,d,e,f\r\n"));
    QCOMPARE(rows.fields(), std::size_t(7));
    std::string text;
    rows.add(1700000000007ms, answerOf({3, "3", 3.0, true, {}, {}}, {0, 1, 2, 3, 4, 5}), text);
    QCOMPARE(text, std::string("1700000000.007,3,\"\"\"3\"\"\",3.0,true,,\r\n"));
}

void TestRecordRows::valuesThatDidNotChangeStandInEachRow()
{
    TableRows rows(columnsOf({"a", "b"}));
    std::string text;
    rows.add(1000ms, answerOf({1, 2}, {0, 1}), text);
    rows.add(2000ms, answerOf({1, {}}, {1}), text);
    rows.add(3000ms, answerOf({1, {}}, {}), text);
    QCOMPARE(text, std::string("1.000,1,2\r\n2.000,1,\r\n3.000,1,\r\n"));
}

void TestRecordRows::aGapIsARowWithoutValues()
{
    std::string text;
    TableRows table(columnsOf({"a", "b"}));
    table.addGap(1000ms, text);
    QCOMPARE(text, std::string("1.000,,\r\n"));
    text.clear();
    ChangeRows changes(columnsOf({"a", "b"}));
    changes.addGap(1000ms, text);
    QCOMPARE(text, std::string("1.000,,gap,\r\n"));
    text.clear();
    changes.add(2000ms, answerOf({1, 2}, {1}), text);
    changes.add(3000ms, answerOf({1, 3}, {1}), text);
    QCOMPARE(text, std::string("2.000,a,int,1\r\n2.000,b,int,2\r\n3.000,b,int,3\r\n"));
}

void TestRecordRows::changesHaveARowEach()
{
    ChangeRows rows(columnsOf({"a", "b,c"}));
    QCOMPARE(rows.header(), std::string("time,key,type,value\r\n"));
    QCOMPARE(rows.fields(), std::size_t(4));
    std::string text;
    rows.add(1000ms, answerOf({0.5, "x"}, {0, 1}), text);
    rows.add(2000ms, answerOf({0.5, "x"}, {}), text);
    rows.add(3000ms, answerOf({0.5, {}}, {1}), text);
    QCOMPARE(text, std::string("1.000,a,float,0.5\r\n1.000,\"b,c\",string,\"\"\"x\"\"\"\r\n"
                               "3.000,\"b,c\",invalid,\r\n"));
    text.clear();
    rows.addFirst(4000ms, answerOf({0.5, 2}, {1}), text);
    QCOMPARE(text, std::string("4.000,a,float,0.5\r\n4.000,\"b,c\",int,2\r\n"));
}

void TestRecordRows::fieldsAreQuotedWhereTheyMustBe()
{
    const std::vector<std::pair<std::string, std::string>> fields = {
        {"a", "a"},           {"a b", "a b"},     {"", "\"\""},           {" a", "\" a\""},
        {"a\t", "\"a\t\""},   {"a,b", "\"a,b\""}, {"a\"b", "\"a\"\"b\""}, {"a\nb", "\"a\nb\""},
        {"a\rb", "\"a\rb\""},
    };
    for (const auto& [text, field] : fields) {
        std::string row;
        appendField(text, row);
        QCOMPARE(row, field);
    }
}

void TestRecordRows::namesThatRepeatAreToldApartByTheirKeys()
{
    std::string told;
    const auto tell = [&told](const std::string& text) { told += text; };
    const Columns columns = withDistinctNames(
        {{"k1", "a"}, {"k2", "a"}, {"k1", "a"}, {"k3", "time"}, {"k1", "b"}, {"k4", "a (k2)"}},
        tell);
    QCOMPARE(told, std::string("the column of 'k2' is called 'a (k2)', as its name is that of "
                               "another; so are 2 more"));
    told.clear();
    withDistinctNames(columnsOf({"a", "b"}), tell);
    QCOMPARE(told, std::string());
    std::vector<std::string> names;
    std::vector<std::string> keys;
    for (const Column& column : columns) {
        names.push_back(column.name);
        keys.push_back(column.key);
    }
    QCOMPARE(names, (std::vector<std::string>{"a", "a (k2)", "time (k3)", "b", "a (k2) (k4)"}));
    QCOMPARE(keys, (std::vector<std::string>{"k1", "k2", "k3", "k1", "k4"}));
}

void TestRecordRows::aTableThatLooksLikeChangesIsRefused()
{
    QVERIFY_EXCEPTION_THROWN(checkNoChanges(columnsOf({"key", "type", "value"})), kit::UsageError);
    checkNoChanges(columnsOf({"value", "type", "key"}));
    checkNoChanges(columnsOf({"key", "type", "value", "a"}));
}

void TestRecordRows::aNameThatIsNoUtf8IsTakenForLatin1()
{
    QCOMPARE(recordedName("\u00e9"), std::string("\u00e9"));
    QCOMPARE(recordedName("\xe9"), std::string("\u00e9"));
    QCOMPARE(recordedName("\xc3"), std::string("\u00c3"));
    const std::string marked("\ufeff\u00e9");
    QCOMPARE(recordedName(marked), marked);
    const std::string cut("\u00e9\0\u00e9", 5);
    QCOMPARE(recordedName(cut), cut);
}

void TestRecordRows::rowsAreTold()
{
    QVERIFY(isRow("1.5,2", 2));
    QVERIFY(isRow("1.5,\"a,\"\"b\"", 2));
    QVERIFY(!isRow("1.5,2", 3));
    QVERIFY(!isRow("1.5,\"2", 2));
    QVERIFY(!isRow("x,2", 2));
    QVERIFY(!isRow("", 1));
    for (const char* time : {"nan,2", "inf,2", "-inf,2", "1e300,2", "1e999,2"})
        QVERIFY2(!isRow(time, 2), time);
    QVERIFY(timeOfRow("1.5,2") == 1500ms);
    QVERIFY(timeOfRow("nan,2") == 0ms);
}

void TestRecordRows::pythonReadsBackWhateverWasWritten()
{
    std::mt19937 random(7);
    const std::vector<std::string> keys = {"plain", "comma,", "\"quoted\"", "two\nlines", " ", ""};
    std::vector<int> all(keys.size());
    std::iota(all.begin(), all.end(), 0);
    TableRows rows(columnsOf(keys));
    std::string text = rows.header();
    QJsonArray written;
    for (int i = 0; i < 500; ++i) {
        ZoValue::Elements values;
        QJsonArray row{i * 0.125};
        for (std::size_t k = 0; k < keys.size(); ++k) {
            values.push_back(randomValue(random));
            const std::string json = "[" + ZoJson::textOf(values.back()) + "]";
            row.append(QJsonDocument::fromJson(json.c_str()).array()[0]);
        }
        rows.add(std::chrono::milliseconds(i * 125), answerOf(values, all), text);
        written.append(row);
    }
    const QTemporaryDir folder;
    writeBytes(folder.filePath("a.csv"), QByteArray::fromStdString(text));
    Program python("/usr/bin/python3", {"-c", pythonReader, folder.filePath("a.csv")});
    python.start();
    QCOMPARE(python.waitForExit(), 0);
    QJsonArray read = QJsonDocument::fromJson(python.output()).array();
    const QJsonArray names = read.takeAt(0).toArray();
    for (int k = 0; k < int(keys.size()); ++k)
        QCOMPARE(names[k + 1].toString().toStdString(), keys[std::size_t(k)]);
    QCOMPARE(read.size(), written.size());
    for (int i = 0; i < read.size(); ++i)
        QCOMPARE(read[i], written[i]);
}

REGISTER_TEST(TestRecordRows, NoApplication)
#include "tst_record_rows.moc"
