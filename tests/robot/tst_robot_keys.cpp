// SPDX-License-Identifier: MIT
#include "robot_keys.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <QtTest>

#include <cmath>
#include <map>
#include <set>

namespace {

using Values = std::map<std::string, ZoValue>;

Values valuesAt(const std::vector<RobotKey>& keys, double t)
{
    Values values;
    for (const RobotKey& key : keys)
        values[key.name] = key.value(t);
    return values;
}

const RobotKey& keyCalled(const std::vector<RobotKey>& keys, std::string_view name)
{
    for (const RobotKey& key : keys)
        if (key.name == name)
            return key;
    throw std::runtime_error("no key " + std::string(name));
}

double number(const ZoValue& value)
{
    return std::get<double>(value.data());
}

/// Lowest, highest value and greatest change within `step` of a float over `seconds`.
struct Range
{
    double lowest = 1e9;
    double highest = -1e9;
    double jump = 0;
};

Range rangeOf(const RobotKey& key, double from, double seconds, double step)
{
    Range range;
    double last = number(key.value(from));
    for (double t = from; t < from + seconds; t += step) {
        const double now = number(key.value(t));
        range.lowest = std::min(range.lowest, now);
        range.highest = std::max(range.highest, now);
        range.jump = std::max(range.jump, std::abs(now - last));
        last = now;
    }
    return range;
}

bool endsWith(const std::string& text, const std::string& end)
{
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

} // namespace

class TestRobotKeys : public GuardedTest
{
    Q_OBJECT

private slots:
    void givesAsManyKeysAsAskedFor_data();
    void givesAsManyKeysAsAskedFor();
    void fewerKeysAreTheFirstOnes();
    void allTypesOccur();
    void aKeyKeepsItsType();
    void sameSeedAndTimeGiveTheSameValues();
    void anotherSeedGivesOtherValues();
    void numbersAreFinite();
    void jointsSweepSmoothly();
    void velocitiesAreTheSlopesOfTheirAngles();
    void encodersFollowTheirJoints();
    void thePoseIsMadeOfItsParts();
    void everyStrideIsTwoSteps();
    void footContactsComeAndGo();
    void onlyAFootOnTheGroundIsPressed();
    void powerIsVoltageTimesCurrent();
    void batteryFallsSlowly();
    void batteryIsReplacedBeforeItIsEmpty();
    void temperaturesDrift();
    void countersNeverFall();
    void someKeysAreRawDeviceValues();
    void theValuesOfAPatchOfSkinAgree();

private:
    double at(const std::string& name, double t) const
    {
        return number(keyCalled(fKeys, name).value(t));
    }

    const std::vector<RobotKey> fKeys = robotKeys(defaultRobotKeys, 1);
};

void TestRobotKeys::givesAsManyKeysAsAskedFor_data()
{
    QTest::addColumn<int>("count");
    for (const int count : {1, 2, 199, 200, 201, 10000, maxRobotKeys})
        QTest::addRow("%d", count) << count;
}

void TestRobotKeys::givesAsManyKeysAsAskedFor()
{
    QFETCH(int, count);
    const std::vector<RobotKey> keys = robotKeys(count, 1);
    QCOMPARE(static_cast<int>(keys.size()), count);
    QCOMPARE(static_cast<int>(valuesAt(keys, 1).size()), count); // each name once
}

void TestRobotKeys::fewerKeysAreTheFirstOnes()
{
    const std::vector<RobotKey> few = robotKeys(150, 1);
    QCOMPARE(few.size(), std::size_t{150});
    for (std::size_t i = 0; i < few.size(); ++i) {
        QCOMPARE(few[i].name, fKeys[i].name);
        QVERIFY(few[i].value(3) == fKeys[i].value(3));
    }
}

void TestRobotKeys::allTypesOccur()
{
    for (const int count : {defaultRobotKeys, 10000}) {
        std::set<int> types;
        for (const auto& value : valuesAt(robotKeys(count, 1), 5))
            types.insert(value.second.getType());
        QCOMPARE(types, (std::set<int>{ZoValue::Invalid, ZoValue::Array, ZoValue::Bool,
                                       ZoValue::Int, ZoValue::Float, ZoValue::String}));
    }
}

void TestRobotKeys::aKeyKeepsItsType()
{
    const Values first = valuesAt(fKeys, 0);
    for (double t = 0; t < 60; t += 0.5)
        for (const auto& value : valuesAt(fKeys, t))
            if (value.first != "State/HeldSample") // nothing, or a sample's name
                QCOMPARE(value.second.getType(), first.at(value.first).getType());
}

void TestRobotKeys::sameSeedAndTimeGiveTheSameValues()
{
    const std::vector<RobotKey> again = robotKeys(defaultRobotKeys, 1);
    valuesAt(again, 99); // what was asked before does not matter
    QVERIFY(valuesAt(again, 12.34) == valuesAt(fKeys, 12.34));
}

void TestRobotKeys::anotherSeedGivesOtherValues()
{
    const Values mine = valuesAt(fKeys, 12.34);
    int different = 0;
    for (const auto& value : valuesAt(robotKeys(defaultRobotKeys, 2), 12.34))
        different += value.second != mine.at(value.first);
    QVERIFY2(different > 100, qPrintable(QString::number(different)));
}

void TestRobotKeys::numbersAreFinite()
{
    for (const double t : {0.0, 0.02, 3600.0, 30.0 * 24 * 3600})
        for (const auto& value : valuesAt(fKeys, t))
            if (value.second.getType() == ZoValue::Float)
                QVERIFY2(std::isfinite(number(value.second)), value.first.c_str());
}

void TestRobotKeys::jointsSweepSmoothly()
{
    int joints = 0;
    for (const RobotKey& key : fKeys) {
        if (!endsWith(key.name, "/Angle"))
            continue;
        ++joints;
        const Range range = rangeOf(key, 0, 60, 0.02);
        const double sweep = range.highest - range.lowest;
        QVERIFY2(sweep > 0.05 && sweep < 4, key.name.c_str());
        QVERIFY2(range.jump < 0.15, key.name.c_str());
    }
    QCOMPARE(joints, 20);
}

void TestRobotKeys::velocitiesAreTheSlopesOfTheirAngles()
{
    constexpr double step = 0.01;
    double farthest = 0;
    for (const std::string joint : {"Arm/Elbow", "Leg/FrontLeft/Hip", "Head/Pan"}) {
        double travelled = 0;
        for (double t = 0; t < 30; t += step) {
            travelled += step * at(joint + "/Velocity", t + step / 2);
            const double angle = at(joint + "/Angle", t + step) - at(joint + "/Angle", 0);
            QVERIFY2(std::abs(travelled - angle) < 0.05, joint.c_str());
            farthest = std::max(farthest, std::abs(angle));
        }
    }
    QVERIFY(farthest > 1);
}

void TestRobotKeys::encodersFollowTheirJoints()
{
    const RobotKey& angle = keyCalled(fKeys, "Arm/Elbow/Angle");
    const RobotKey& encoder = keyCalled(fKeys, "Device/Arm/Elbow/Encoder");
    for (double t = 0; t < 30; t += 1) {
        const auto ticks = static_cast<double>(std::get<std::int64_t>(encoder.value(t).data()));
        const double radians = (ticks - 32768) * 2 * M_PI / 65536;
        QVERIFY(std::abs(radians - number(angle.value(t))) < 0.001);
    }
}

void TestRobotKeys::thePoseIsMadeOfItsParts()
{
    for (double t = 0; t < 60; t += 0.7) {
        const ZoValue pose = keyCalled(fKeys, "Body/Pose").value(t);
        QCOMPARE(pose.getSize(), 3);
        QVERIFY(std::abs(number(pose[0]) - at("Body/X", t)) < 0.0011);
        QVERIFY(std::abs(number(pose[1]) - at("Body/Y", t)) < 0.0011);
        QVERIFY(std::abs(number(pose[2]) - at("Body/Heading", t)) < 0.0011);
    }
}

void TestRobotKeys::everyStrideIsTwoSteps()
{
    const ZoValue steps = keyCalled(fKeys, "Counter/Steps").value(600);
    const double stride =
        2 * at("Body/Distance", 600) / static_cast<double>(std::get<std::int64_t>(steps.data()));
    QVERIFY2(stride > 0.31 && stride < 0.39, qPrintable(QString::number(stride))); // metres
}

void TestRobotKeys::footContactsComeAndGo()
{
    const RobotKey& contact = keyCalled(fKeys, "Foot/FrontLeft/Contact");
    int changes = 0;
    for (double t = 0; t < 30; t += 0.02)
        changes += contact.value(t) != contact.value(t + 0.02);
    QVERIFY2(changes > 10 && changes < 30, qPrintable(QString::number(changes)));
}

void TestRobotKeys::onlyAFootOnTheGroundIsPressed()
{
    const RobotKey& position = keyCalled(fKeys, "Foot/RearRight/Position");
    int lifted = 0;
    for (double t = 0; t < 30; t += 0.02) {
        const double height = number(position.value(t)[2]); // at most 0.06 m
        const double force = at("Foot/RearRight/Force", t);
        if (height > 0.02)
            QVERIFY2(force <= 2, qPrintable(QString::number(force)));
        if (height == 0)
            QVERIFY2(force >= 80, qPrintable(QString::number(force)));
        lifted += height > 0.02;
    }
    QVERIFY(lifted > 50);
}

void TestRobotKeys::powerIsVoltageTimesCurrent()
{
    for (double t = 0; t < 100; t += 3) {
        const double power = at("Battery/Voltage", t) * at("Battery/Current", t);
        QVERIFY(std::abs(at("Battery/Power", t) - power) < 0.03);
    }
}

void TestRobotKeys::batteryFallsSlowly()
{
    const RobotKey& charge = keyCalled(fKeys, "Battery/Charge");
    const Range range = rangeOf(charge, 0, 600, 1);
    QVERIFY(range.highest <= 100);
    QVERIFY(range.highest - range.lowest > 3 && range.highest - range.lowest < 15);
    QVERIFY(number(charge.value(600)) < number(charge.value(0)));
}

void TestRobotKeys::batteryIsReplacedBeforeItIsEmpty()
{
    const Range range = rangeOf(keyCalled(fKeys, "Battery/Charge"), 0, 24 * 3600, 10);
    QVERIFY(range.lowest > 10 && range.highest <= 100);
    const ZoValue packs = keyCalled(fKeys, "Battery/PacksUsed").value(24 * 3600);
    QVERIFY(std::get<std::int64_t>(packs.data()) > 5);
}

void TestRobotKeys::temperaturesDrift()
{
    for (const RobotKey& key : fKeys) {
        if (!endsWith(key.name, "/Temperature"))
            continue;
        const Range range = rangeOf(key, 0, 600, 1);
        QVERIFY2(range.lowest > 15 && range.highest < 80, key.name.c_str());
        QVERIFY2(range.highest - range.lowest > 1, key.name.c_str());
        QVERIFY2(range.jump < 0.5, key.name.c_str());
    }
}

void TestRobotKeys::countersNeverFall()
{
    for (const RobotKey& key : fKeys) {
        if (key.name.rfind("Counter/", 0) != 0)
            continue;
        const auto count = [&key](double t) { return std::get<std::int64_t>(key.value(t).data()); };
        for (double t = 0; t < 120; t += 0.1)
            QVERIFY2(count(t) <= count(t + 0.1), key.name.c_str());
        QVERIFY2(count(0) < count(120), key.name.c_str());
    }
}

void TestRobotKeys::someKeysAreRawDeviceValues()
{
    const auto devices = std::count_if(fKeys.begin(), fKeys.end(), [](const RobotKey& key) {
        return key.name.rfind("Device/", 0) == 0;
    });
    QCOMPARE(static_cast<int>(devices), 40);
}

void TestRobotKeys::theValuesOfAPatchOfSkinAgree()
{
    const std::vector<RobotKey> keys = robotKeys(1000, 1);
    std::set<bool> seen;
    for (const std::string patch : {"Skin/00001/", "Skin/00050/"}) {
        for (double t = 0; t < 60; t += 0.5) {
            const double pressure = number(keyCalled(keys, patch + "Pressure").value(t));
            const bool touched = pressure > 75;
            QVERIFY(keyCalled(keys, patch + "Touched").value(t) == ZoValue(touched));
            QVERIFY(keyCalled(keys, patch + "State").value(t) ==
                    ZoValue(touched ? "touched" : "free"));
            QVERIFY(keyCalled(keys, patch + "Raw").value(t) ==
                    ZoValue(static_cast<std::int64_t>(40 * pressure)));
            seen.insert(touched);
        }
    }
    QCOMPARE(seen.size(), std::size_t{2});
}

REGISTER_TEST(TestRobotKeys, QCoreApplication)
#include "tst_robot_keys.moc"
