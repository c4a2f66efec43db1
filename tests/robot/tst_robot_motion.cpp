// SPDX-License-Identifier: MIT
#include "motion.h"
#include "noise.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <QtTest>

#include <cmath>
#include <set>

namespace {

constexpr double step = 0.01;
constexpr double minutes = 60;

} // namespace

class TestRobotMotion : public GuardedTest
{
    Q_OBJECT

private slots:
    void scatterFillsTheUnitInterval();
    void scatterDiffersBySeedAndIndex();
    void noiseIsSmoothAndBounded();
    void noiseGoesOnBelowZero();
    void smoothStepIsFlatOutsideAndEvenInside();
    void smoothStepAreaIsItsIntegral();
    void fractionStaysBelowOne();
    void roundedHasShortDecimalsAndNoNegativeZero();
    void walksReachesAndStandsInEveryCycle();
    void neverWalksAndReachesAtOnce();
    void stridesGrowWithWalkingOnly();
    void stridesAreTheIntegralOfWalking();
    void allFeetAreDownWhileStanding();
    void diagonalFeetSwingTogetherAndTwoAreAlwaysDown();
    void feetMoveWithoutJumps();
    void headingStaysWithinOneTurn();
    void seedsMakeDifferentRobots();
};

void TestRobotMotion::scatterFillsTheUnitInterval()
{
    double sum = 0;
    std::set<int> tenths;
    for (std::uint64_t i = 0; i < 1000; ++i) {
        const double number = scatter(7, i);
        QVERIFY(number >= 0 && number < 1);
        sum += number;
        tenths.insert(static_cast<int>(10 * number));
    }
    QVERIFY(std::abs(sum / 1000 - 0.5) < 0.05);
    QCOMPARE(tenths.size(), std::size_t{10});
}

void TestRobotMotion::scatterDiffersBySeedAndIndex()
{
    std::set<double> seen;
    for (std::uint32_t seed = 0; seed < 30; ++seed)
        for (std::uint64_t index = 0; index < 30; ++index)
            seen.insert(scatter(seed, index));
    QCOMPARE(seen.size(), std::size_t{900});
    QCOMPARE(scatter(3, 4), scatter(3, 4));
}

void TestRobotMotion::noiseIsSmoothAndBounded()
{
    double lowest = 1;
    double highest = -1;
    for (double x = 0; x < 200; x += step) {
        const double value = smoothNoise(5, x);
        QVERIFY(value >= -1 && value <= 1);
        QVERIFY(std::abs(smoothNoise(5, x + step) - value) < 0.05);
        lowest = std::min(lowest, value);
        highest = std::max(highest, value);
    }
    QVERIFY(lowest < -0.8 && highest > 0.8);
}

void TestRobotMotion::noiseGoesOnBelowZero()
{
    for (double x = -3; x < 3; x += step)
        QVERIFY(std::abs(smoothNoise(5, x + step) - smoothNoise(5, x)) < 0.05);
}

void TestRobotMotion::smoothStepIsFlatOutsideAndEvenInside()
{
    QCOMPARE(smoothStep(-2), 0.0);
    QCOMPARE(smoothStep(0), 0.0);
    QCOMPARE(smoothStep(0.5), 0.5);
    QCOMPARE(smoothStep(1), 1.0);
    QCOMPARE(smoothStep(9), 1.0);
    QVERIFY(smoothStep(0.2) < 0.2 && smoothStep(0.8) > 0.8);
}

void TestRobotMotion::smoothStepAreaIsItsIntegral()
{
    double area = 0;
    for (double x = -1; x < 3; x += 0.001) {
        QVERIFY(std::abs(smoothStepArea(x) - area) < 0.002);
        area += 0.001 * smoothStep(x);
    }
}

void TestRobotMotion::fractionStaysBelowOne()
{
    QCOMPARE(fraction(3.25), 0.25);
    QCOMPARE(fraction(-0.25), 0.75);
    QCOMPARE(fraction(4), 0.0);
    QCOMPARE(fraction(-1e-18), 0.0);
}

void TestRobotMotion::roundedHasShortDecimalsAndNoNegativeZero()
{
    QCOMPARE(rounded(0.30004, 3), 0.3);
    QCOMPARE(rounded(-1.23456, 2), -1.23);
    QVERIFY(!std::signbit(rounded(-0.00001, 3)));
}

void TestRobotMotion::walksReachesAndStandsInEveryCycle()
{
    const Motion motion(1);
    for (int cycle = 0; cycle < 3; ++cycle) {
        std::set<std::string> modes;
        for (double t = 0; t < Motion::fCycle; t += step)
            modes.insert(motion.mode(cycle * Motion::fCycle + t));
        QCOMPARE(modes, (std::set<std::string>{"reaching", "standing", "walking"}));
    }
}

void TestRobotMotion::neverWalksAndReachesAtOnce()
{
    const Motion motion(1);
    for (double t = 0; t < minutes; t += step)
        QVERIFY(motion.walking(t) == 0 || motion.reaching(t) == 0);
}

void TestRobotMotion::stridesGrowWithWalkingOnly()
{
    const Motion motion(1);
    for (double t = 0; t < 2 * minutes; t += step) {
        const double grown = motion.strides(t + step) - motion.strides(t);
        QVERIFY(grown > -1e-9);
        if (motion.walking(t) == 0 && motion.walking(t + step) == 0)
            QVERIFY(grown < 1e-9);
    }
    QVERIFY(motion.strides(2 * minutes) > 20);
}

void TestRobotMotion::stridesAreTheIntegralOfWalking()
{
    const Motion motion(2);
    double distance = 0;
    for (double t = 0; t < 2 * minutes; t += step) {
        QVERIFY(std::abs(motion.distance(t) - distance) < 0.02);
        distance += step * motion.speed(t);
    }
}

void TestRobotMotion::allFeetAreDownWhileStanding()
{
    const Motion motion(1);
    for (double t = 0; t < minutes; t += step)
        if (motion.walking(t) == 0)
            for (int leg = 0; leg < Motion::fLegs; ++leg)
                QVERIFY(motion.footDown(leg, t));
}

void TestRobotMotion::diagonalFeetSwingTogetherAndTwoAreAlwaysDown()
{
    const Motion motion(1);
    bool swung = false;
    for (double t = 0; t < minutes; t += step) {
        QCOMPARE(motion.footDown(0, t), motion.footDown(3, t));
        QCOMPARE(motion.footDown(1, t), motion.footDown(2, t));
        QVERIFY(motion.footDown(0, t) || motion.footDown(1, t));
        swung = swung || !motion.footDown(1, t);
    }
    QVERIFY(swung);
}

void TestRobotMotion::feetMoveWithoutJumps()
{
    const Motion motion(1);
    for (int leg = 0; leg < Motion::fLegs; ++leg)
        for (double t = 0; t < minutes; t += step) {
            QVERIFY(std::abs(motion.footLift(leg, t + step) - motion.footLift(leg, t)) < 0.15);
            QVERIFY(std::abs(motion.legStroke(leg, t + step) - motion.legStroke(leg, t)) < 0.15);
        }
}

void TestRobotMotion::headingStaysWithinOneTurn()
{
    const Motion motion(1);
    for (double t = 0; t < 20 * minutes; t += 1)
        QVERIFY(motion.heading(t) >= 0 && motion.heading(t) < 2 * M_PI);
}

void TestRobotMotion::seedsMakeDifferentRobots()
{
    QVERIFY(Motion(1).distance(minutes) != Motion(2).distance(minutes));
    QCOMPARE(Motion(1).distance(minutes), Motion(1).distance(minutes));
}

REGISTER_TEST(TestRobotMotion, QCoreApplication)
#include "tst_robot_motion.moc"
