// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"
#include "support/request_for.h"

#include <memory/values_sink.h>
#include <value/json.h>

#include <QtTest>

#include <memory>

using namespace zo;

namespace {

constexpr int half = 500000; ///< elements of an array, written in just under 1 MiB

std::shared_ptr<const ListRequest> requestOf(int keys)
{
    std::vector<std::string> names;
    names.reserve(static_cast<std::size_t>(keys));
    for (int i = 0; i < keys; ++i)
        names.push_back("Arm/" + std::to_string(i));
    return std::make_shared<const ListRequest>(requestFor(names),
                                               std::make_shared<const ForbiddenKeys::Set>());
}

/// "[0,0,0]"
std::string zeros(int count)
{
    std::string text = "[";
    for (int i = 0; i < count; ++i)
        text += i > 0 ? ",0" : "0";
    return text + "]";
}

int decoded(const std::string& text, std::int64_t& elements)
{
    return decodeJson(text, elements).getType();
}

} // namespace

/// How the pieces of a reply become values.
class TestValuesSink : public GuardedTest
{
    Q_OBJECT

private slots:
    void textsAreDecodedInTheOrderAsked();
    void whatHasNoPlaceInAReplyIsRefused_data();
    void whatHasNoPlaceInAReplyIsRefused();
    void elementsOfAllDepthsAreCounted();
    void whatIsNoArrayCountsNothing();
    void anArrayBeyondTheLimitIsInvalidAlone();
};

void TestValuesSink::textsAreDecodedInTheOrderAsked()
{
    ValuesSink sink(requestOf(1001), ZoValue::Elements(1001, ZoValue("before")));
    QVERIFY(sink.take({0, 0, 0}, {ReplyKind::Array, {}, 1000}));
    QVERIFY(sink.take({0, 1, 0}, {ReplyKind::Text, "0.5"}));
    QVERIFY(sink.take({0, 1, 1}, {ReplyKind::Nil}));
    QVERIFY(sink.take({0, 1, 2}, {ReplyKind::TooLarge, {}, 2 << 20}));
    QVERIFY(sink.take({1, 0, 0}, {ReplyKind::Array, {}, 1}));
    QVERIFY(sink.take({1, 1, 0}, {ReplyKind::Text, "7"}));
    const ZoValue::Elements values = sink.takeValues();
    QVERIFY(values[0] == ZoValue(0.5));
    QVERIFY(values[1] == ZoValue());
    QVERIFY(values[2] == ZoValue());
    QVERIFY(values[3] == ZoValue("before"));
    QVERIFY(values[1000] == ZoValue(7));
}

void TestValuesSink::whatHasNoPlaceInAReplyIsRefused_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<bool>("isTaken"); // as a value; as a reply, it never is
    using Kind = ReplyKind;
    for (const Kind kind : {Kind::Status, Kind::Error, Kind::Integer, Kind::Boolean, Kind::Double,
                            Kind::BigNumber, Kind::Verbatim, Kind::Array, Kind::Map, Kind::Set})
        QTest::newRow(nameOf(kind)) << static_cast<int>(kind) << false;
    for (const Kind kind : {Kind::Text, Kind::Nil, Kind::TooLarge})
        QTest::newRow(nameOf(kind)) << static_cast<int>(kind) << true;
}

void TestValuesSink::whatHasNoPlaceInAReplyIsRefused()
{
    QFETCH(int, kind);
    QFETCH(bool, isTaken);
    const ReplyPiece piece{static_cast<ReplyKind>(kind), "1", 1};
    const std::string wanted = misplaced("MGET", piece.kind);
    ValuesSink value(requestOf(2), ZoValue::Elements(2));
    QCOMPARE(value.take({0, 1, 1}, piece), isTaken);
    QCOMPARE(value.problem(), isTaken ? std::string() : wanted);
    ValuesSink reply(requestOf(2), ZoValue::Elements(2));
    const bool isError = piece.kind == ReplyKind::Error;
    QCOMPARE(reply.take({0, 0, 0}, piece), isError);
    if (piece.kind == ReplyKind::Array)
        QCOMPARE(reply.problem(), std::string("malformed reply to MGET: 1 values for 2 keys"));
    else
        QCOMPARE(reply.problem(), isError ? std::string() : wanted);
    QCOMPARE(reply.refusals().size(), std::size_t(isError ? 1 : 0));
}

void TestValuesSink::elementsOfAllDepthsAreCounted()
{
    std::int64_t elements = 10;
    QCOMPARE(decoded("[1,[2,[]],\"a,b\"]", elements), int(ZoValue::Array));
    QCOMPARE(elements, std::int64_t{5});
    QCOMPARE(decoded("[1,2,3,4,5,6]", elements), int(ZoValue::Invalid));
    QCOMPARE(decoded("[[[[[[]]]]]]", elements), int(ZoValue::Array));
    QCOMPARE(elements, std::int64_t{0});
    QCOMPARE(decoded("[]", elements), int(ZoValue::Array));
    QCOMPARE(decoded("[0]", elements), int(ZoValue::Invalid));
    QCOMPARE(elements, std::int64_t{0});
}

void TestValuesSink::whatIsNoArrayCountsNothing()
{
    std::int64_t elements = 3;
    QCOMPARE(decoded("[1,2,x", elements), int(ZoValue::String));
    QCOMPARE(decoded("{\"a\":[1,2,3,4,5]}", elements), int(ZoValue::String));
    QCOMPARE(decoded("\"\\n[1,2,3,4,5]\"", elements), int(ZoValue::String));
    QCOMPARE(decoded("1.5", elements), int(ZoValue::Float));
    QCOMPARE(elements, std::int64_t{3});
}

void TestValuesSink::anArrayBeyondTheLimitIsInvalidAlone()
{
    const std::string large = zeros(half);
    QVERIFY(large.size() < std::size_t{1} << 20);
    constexpr int fitting = static_cast<int>(ValuesSink::fMaxElements / half);
    constexpr int keys = fitting + 4;
    ValuesSink sink(requestOf(keys), ZoValue::Elements(keys));
    QVERIFY(sink.take({0, 0, 0}, {ReplyKind::Array, {}, keys}));
    for (int i = 0; i < keys; ++i) {
        const bool isSmall = i == fitting + 1;
        QVERIFY(sink.take({0, 1, i}, {ReplyKind::Text, isSmall ? "[1,2]" : large}));
    }
    const ZoValue::Elements values = sink.takeValues();
    for (int i = 0; i < fitting; ++i)
        QCOMPARE(values[i].getSize(), half);
    QVERIFY(values[fitting] == ZoValue());
    QCOMPARE(values[fitting + 1].getSize(), 2);
    QVERIFY(values[fitting + 2] == ZoValue() && values[fitting + 3] == ZoValue());
}

REGISTER_TEST(TestValuesSink, NoApplication)
#include "tst_values_sink.moc"
