// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/register_test.h"
#include "windows/item_search.h"

#include <QStandardItemModel>
#include <QStringListModel>
#include <QtTest>

/// Looking for a text in a model.
class TestItemSearch : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void goesFromMatchToMatchAndRoundTheEnd();
    void goesBackwards();
    void theCellItBeginsAtMayCountAsFound();
    void aSingleMatchIsFoundAgain();
    void findsNothingWhereNothingIs();
    void looksBelowRows();
    void looksInTheseColumnsOnly();
    void countsEveryCell();
    void agreesWithAPlainSearch();
    void rowsThatGoAreNoHarm();
    void aModelThatGoesMeanwhileEndsTheSearch();
    void aLargeModelIsSearchedInSlices();

private:
    QString stepFrom(const QModelIndex& from, bool isForward = true, bool orThere = false);
    QModelIndex at(int row, int column) const { return fModel->index(row, column); }
    int counted();

    QScopedPointer<QStandardItemModel> fModel;
    QScopedPointer<ItemSearch> fSearch;
    QModelIndex fFound;
};

void TestItemSearch::init()
{
    fSearch.reset(new ItemSearch);
    fModel.reset(new QStandardItemModel);
    for (const QStringList& texts :
         {QStringList{"arm a", "x"}, {"leg", "ARM b"}, {"head", "y"}, {"arm c", "arm d"}}) {
        QList<QStandardItem*> row;
        for (const QString& text : texts)
            row += new QStandardItem(text);
        fModel->appendRow(row);
    }
    fSearch->look(fModel.data(), {}, {0, 1}, "arm");
}

QString TestItemSearch::stepFrom(const QModelIndex& from, bool isForward, bool orThere)
{
    QSignalSpy ended(fSearch.data(), &ItemSearch::found);
    fSearch->step(from, isForward, orThere);
    if (ended.isEmpty() && !ended.wait(patience))
        return "never ended";
    fFound = ended.first().first().toModelIndex();
    return fFound.data().toString();
}

int TestItemSearch::counted()
{
    fSearch->count();
    const bool ended = QTest::qWaitFor([this] { return !fSearch->isCounting(); }, patience);
    return ended ? fSearch->matches() : -1;
}

void TestItemSearch::goesFromMatchToMatchAndRoundTheEnd()
{
    QCOMPARE(stepFrom({}), QString("arm a"));
    QCOMPARE(stepFrom(fFound), QString("ARM b"));
    QCOMPARE(stepFrom(fFound), QString("arm c"));
    QCOMPARE(stepFrom(fFound), QString("arm d"));
    QCOMPARE(stepFrom(fFound), QString("arm a"));
    QCOMPARE(stepFrom(at(2, 1)), QString("arm c"));
}

void TestItemSearch::goesBackwards()
{
    QCOMPARE(stepFrom({}, false), QString("arm d"));
    QCOMPARE(stepFrom(fFound, false), QString("arm c"));
    QCOMPARE(stepFrom(fFound, false), QString("ARM b"));
    QCOMPARE(stepFrom(fFound, false), QString("arm a"));
    QCOMPARE(stepFrom(fFound, false), QString("arm d"));
}

void TestItemSearch::theCellItBeginsAtMayCountAsFound()
{
    QCOMPARE(stepFrom(at(3, 0), true, true), QString("arm c"));
    QCOMPARE(stepFrom(at(3, 0), false, true), QString("arm c"));
    QCOMPARE(stepFrom(at(2, 0), true, true), QString("arm c"));
}

void TestItemSearch::aSingleMatchIsFoundAgain()
{
    fSearch->look(fModel.data(), {}, {0, 1}, "arm c");
    QCOMPARE(stepFrom(at(3, 0)), QString("arm c"));
    QCOMPARE(stepFrom(at(3, 0), false), QString("arm c"));
}

void TestItemSearch::findsNothingWhereNothingIs()
{
    fSearch->look(fModel.data(), {}, {0, 1}, "tail");
    QCOMPARE(stepFrom(at(1, 0)), QString());
    QVERIFY(!fFound.isValid());
    QCOMPARE(counted(), 0);
    fSearch->look(fModel.data(), {}, {0, 1}, "");
    QCOMPARE(stepFrom({}), QString());
    fSearch->look(nullptr, {}, {}, "arm");
    QCOMPARE(stepFrom({}), QString());
    QStandardItemModel empty;
    fSearch->look(&empty, {}, {0}, "arm");
    QCOMPARE(stepFrom({}), QString());
    QCOMPARE(counted(), 0);
}

void TestItemSearch::looksBelowRows()
{
    auto* below = new QStandardItem("finger");
    below->appendRow(new QStandardItem("arm deep"));
    fModel->item(1, 0)->appendRow(below);
    QCOMPARE(stepFrom(at(1, 1)), QString("arm deep"));
    QCOMPARE(stepFrom(fFound), QString("arm c"));
    QCOMPARE(stepFrom(fFound, false), QString("arm deep"));
    QCOMPARE(stepFrom(fFound, false), QString("ARM b"));
    QCOMPARE(counted(), 5);
}

void TestItemSearch::looksInTheseColumnsOnly()
{
    fSearch->look(fModel.data(), {}, {1}, "arm");
    QCOMPARE(stepFrom({}), QString("ARM b"));
    QCOMPARE(counted(), 2);
}

void TestItemSearch::countsEveryCell()
{
    QCOMPARE(counted(), 4);
    QCOMPARE(fSearch->percent(), 100);
}

void TestItemSearch::agreesWithAPlainSearch()
{
    for (const char* text : {"a", "e", "x", "arm", "d", "zz"}) {
        fSearch->look(fModel.data(), {}, {0, 1}, text);
        QStringList expected;
        for (int i = 0; i < 8; ++i)
            if (at(i / 2, i % 2).data().toString().contains(text, Qt::CaseInsensitive))
                expected += at(i / 2, i % 2).data().toString();
        QCOMPARE(counted(), static_cast<int>(expected.size()));
        QStringList forward;
        QStringList backward;
        QModelIndex last;
        for (int i = 0; i < expected.size(); ++i, last = fFound)
            forward += stepFrom(last);
        last = {};
        for (int i = 0; i < expected.size(); ++i, last = fFound)
            backward.prepend(stepFrom(last, false));
        QCOMPARE(forward, expected);
        QCOMPARE(backward, expected);
    }
}

void TestItemSearch::rowsThatGoAreNoHarm()
{
    fSearch->look(fModel.data(), {}, {0, 1}, "nowhere");
    fSearch->count();
    fModel->removeRows(0, 4);
    QVERIFY(!fSearch->isCounting());
    QCOMPARE(stepFrom({}), QString());
    fModel.reset();
    QCOMPARE(stepFrom({}), QString());
}

void TestItemSearch::aModelThatGoesMeanwhileEndsTheSearch()
{
    QStringList names;
    for (int i = 0; i < 100000; ++i)
        names += "Device/Joint" + QString::number(i) + "/Position";
    QScopedPointer<QStringListModel> model(new QStringListModel(names));
    fSearch->look(model.data(), {}, {0}, "nowhere");
    fSearch->count();
    fSearch->step({}, true);
    QVERIFY(fSearch->isCounting());
    const QSignalSpy found(fSearch.data(), &ItemSearch::found);
    model.reset();
    QVERIFY(!fSearch->isCounting());
    QCoreApplication::processEvents(); // where the walk would go on
    QCOMPARE(found.size(), 0);
}

void TestItemSearch::aLargeModelIsSearchedInSlices()
{
    QStringList names;
    for (int i = 0; i < 100000; ++i)
        names += "Device/Joint" + QString::number(i) + "/Position";
    QStringListModel model(names);
    fSearch->look(&model, {}, {0}, "joint99999/");
    int turns = 0;
    QTimer others; // whatever else the program has to do
    connect(&others, &QTimer::timeout, [&turns] { ++turns; });
    others.start(0);
    QCOMPARE(stepFrom({}), names.last());
    const int turnsOfStep = turns;
    QCOMPARE(counted(), 1);
    QVERIFY2(turnsOfStep >= 2, qPrintable(QString::number(turnsOfStep)));
    QVERIFY2(turns >= turnsOfStep + 2, qPrintable(QString::number(turns)));
}

REGISTER_TEST(TestItemSearch, QCoreApplication)
#include "tst_item_search.moc"
