// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/register_test.h"
#include "support/robot.h"
#include "windows/sealed_bytes.h"
#include "workspace/workspace.h"

#include <zo/error.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>
#include <QtTest>

#include <functional>

using Change = std::function<void(Workspace&)>;

Q_DECLARE_METATYPE(Change)

/// Workspaces as texts.
class TestWorkspace : public GuardedTest
{
    Q_OBJECT

private slots:
    void allOfItComesBack();
    void blanksOfNamesAndPathsStay();
    void passwordsStayOut();
    void filesBesideItAreFoundWhereverItGoes();
    void anotherKindOfTextIsRefused_data();
    void anotherKindOfTextIsRefused();
    void partsThatMakeNoSenseAreToldAndTheRestIsOpened_data();
    void partsThatMakeNoSenseAreToldAndTheRestIsOpened();
    void tooMuchOfAnythingIsRefused();
    void whatCouldNotBeOpenedIsNotWritten_data();
    void whatCouldNotBeOpenedIsNotWritten();
    void whatIsTooLargeToBeReadIsLeftOut();
    void whatFitsCanAlwaysBeWritten();
    void whatAnotherVersionWroteCountsToo();
    void changedLooksAreIgnored();
    void looksThatSomebodyElseWroteAreIgnored();
    void aNewerVersionIsOpenedWithWhatIsKnown();
    void whatANewerVersionWroteStays();
    void panelsAndWindowsThatAreNoMoreGo();
    void whatCannotBeReadStays();
    void aNewerVersionOfAnotherShapeIsLeftAlone();
    void theSameWorkspaceIsTheSameText();

private:
    static Workspace example();
    static QJsonObject objectOf(const QByteArray& text)
    {
        return QJsonDocument::fromJson(text).object();
    }
    static QByteArray textOf(const QJsonObject& object) { return QJsonDocument(object).toJson(); }
    /// The example's text after a change of its first window.
    static QByteArray changed(const std::function<void(QJsonObject& window)>& change);
};

Workspace TestWorkspace::example()
{
    WorkspaceWindow window;
    window.robot.address = ZoAddress::fromText("robot.example:6380");
    window.robot.prefix = "robot7/";
    window.robot.user = "panel";
    window.robot.tls = true;
    window.robot.caFile = "/robots/keys/ca.pem";
    window.robot.certFile = "/elsewhere/cert.pem";
    window.robot.keyFile = "/elsewhere/key.pem";
    window.robot.jumpHost = "me@gate";
    window.robot.timeout = 1500;
    window.content.look.geometry = QByteArray("\0\xff geometry", 11);
    window.content.look.docks = "docks";
    window.content.look.titles = {{"Glimmet 2", "left \"arm\""}};
    window.content.panels = {{"Glimmet", "Glimmet 2", {{"QSplitter1", "1,2"}}},
                             {"Probe", "Probe 1", {}}};
    WorkspaceWindow other;
    other.robot.address = ZoAddress::fromText("10.0.0.7");
    return {{window, other}, {}};
}

QByteArray TestWorkspace::changed(const std::function<void(QJsonObject& window)>& change)
{
    QJsonObject all = objectOf(workspaceText(example(), "/robots"));
    QJsonArray windows = all["windows"].toArray();
    QJsonObject window = windows[0].toObject();
    change(window);
    windows[0] = window;
    all["windows"] = windows;
    return textOf(all);
}

void TestWorkspace::allOfItComesBack()
{
    const Workspace read = workspaceFrom(workspaceText(example(), "/robots"), "/robots");
    QCOMPARE(read.problems, QStringList());
    QCOMPARE(read.windows.size(), 2);
    const WorkspaceWindow& window = read.windows.at(0);
    const WorkspaceWindow wanted = example().windows.at(0);
    QCOMPARE(window.robot.wayText(), QString("robot7/ at robot.example:6380 by way of me@gate"));
    QCOMPARE(window.robot.user, wanted.robot.user);
    QCOMPARE(window.robot.tls, true);
    QCOMPARE(window.robot.caFile, wanted.robot.caFile);
    QCOMPARE(window.robot.certFile, wanted.robot.certFile);
    QCOMPARE(window.robot.keyFile, wanted.robot.keyFile);
    QCOMPARE(window.robot.timeout, 1500);
    QCOMPARE(window.content.look.geometry, wanted.content.look.geometry);
    QCOMPARE(window.content.look.docks, wanted.content.look.docks);
    QCOMPARE(window.content.look.titles, wanted.content.look.titles);
    QCOMPARE(window.content.panels.size(), 2);
    QCOMPARE(window.content.panels.at(0).plugin, QString("Glimmet"));
    QCOMPARE(window.content.panels.at(0).dock, QString("Glimmet 2"));
    QCOMPARE(window.content.panels.at(0).arrangement, wanted.content.panels.at(0).arrangement);
    QCOMPARE(read.windows.at(1).robot.addressText(), QString("10.0.0.7:6379"));
    QVERIFY(!read.windows.at(1).robot.tls);
}

void TestWorkspace::blanksOfNamesAndPathsStay()
{
    Workspace workspace = example();
    workspace.windows[0].robot.user = " two  blanks ";
    workspace.windows[0].robot.caFile = "/my  files/a.pem";
    const Workspace read = workspaceFrom(workspaceText(workspace, "/robots"), "/robots");
    QCOMPARE(read.windows.at(0).robot.user, QString(" two  blanks "));
    QCOMPARE(read.windows.at(0).robot.caFile, QString("/my  files/a.pem"));
}

void TestWorkspace::passwordsStayOut()
{
    Workspace workspace = example();
    workspace.windows[0].robot.password = "swordfish";
    QVERIFY(!workspaceText(workspace, "/robots").contains("swordfish"));
}

void TestWorkspace::filesBesideItAreFoundWhereverItGoes()
{
    const QByteArray text = workspaceText(example(), "/robots");
    QVERIFY(text.contains("\"keys/ca.pem\""));
    const Workspace read = workspaceFrom(text, "/moved");
    QCOMPARE(read.windows.at(0).robot.caFile, QString("/moved/keys/ca.pem"));
    QCOMPARE(read.windows.at(0).robot.certFile, QString("/elsewhere/cert.pem"));
}

void TestWorkspace::anotherKindOfTextIsRefused_data()
{
    QTest::addColumn<QByteArray>("text");
    const QByteArray whole = workspaceText(example(), "/");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("cut") << whole.left(whole.size() / 2);
    QTest::newRow("binary") << QByteArray("\0\xff\xfe", 3);
    QTest::newRow("array") << QByteArray("[1]");
    QTest::newRow("another format") << QByteArray("{\"format\": \"x\", \"windows\": []}");
    QTest::newRow("without windows") << QByteArray("{\"format\": \"tarvek-workspace\"}");
    QTest::newRow("deep") << QByteArray(100000, '[');
}

void TestWorkspace::anotherKindOfTextIsRefused()
{
    QFETCH(QByteArray, text);
    QVERIFY_EXCEPTION_THROWN(workspaceFrom(text, "/"), ZoError);
}

void TestWorkspace::partsThatMakeNoSenseAreToldAndTheRestIsOpened_data()
{
    QTest::addColumn<QString>("member");
    QTest::addColumn<QByteArray>("value"); // in an array
    QTest::addColumn<QString>("problem");
    QTest::newRow("no robot") << "robot" << QByteArray("[1]") << "Window 1: ";
    QTest::newRow("no address") << "robot" << QByteArray("[{\"address\": \"\"}]") << "Window 1: ";
    QTest::newRow("an address that is a list")
        << "robot" << QByteArray("[{\"address\": [1]}]") << "Window 1: \"address\" is no text";
    QTest::newRow("a long user") << "robot"
                                 << QByteArray("[{\"address\": \"a\", \"user\": \"" +
                                               QByteArray(2000, 'x') + "\"}]")
                                 << "Window 1: \"user\" is no text, or too long";
    QTest::newRow("a user of two lines")
        << "robot" << QByteArray("[{\"address\": \"a\", \"user\": \"b\\nc\"}]")
        << "Window 1: \"user\" has characters that no text of one line has";
    QTest::newRow("a prefix that no access list names")
        << "robot" << QByteArray("[{\"address\": \"a\", \"prefix\": \"a b\"}]")
        << "Window 1: prefix \"a b\": there is a blank in it";
    QTest::newRow("a jump host that is an option of ssh")
        << "robot" << QByteArray("[{\"address\": \"a\", \"jumpHost\": \"-oProxyCommand=x\"}]")
        << "Window 1: ";
    QTest::newRow("a panel that is none")
        << "panels" << QByteArray("[[7, {\"plugin\": \"Probe\"}]]")
        << "Window 1, panel 1: no plug-in is named";
    QTest::newRow("a title that is none")
        << "panels" << QByteArray("[[{\"plugin\": \"Probe\", \"title\": 7}]]")
        << "Window 1, panel 1: \"title\" is no text";
}

void TestWorkspace::partsThatMakeNoSenseAreToldAndTheRestIsOpened()
{
    QFETCH(QString, member);
    QFETCH(QByteArray, value);
    QFETCH(QString, problem);
    const QByteArray text = changed([&](QJsonObject& window) {
        window[member] = QJsonDocument::fromJson(value).array().at(0);
    });
    const Workspace read = workspaceFrom(text, "/");
    QCOMPARE(read.problems.size(), 1);
    QVERIFY2(read.problems.at(0).startsWith(problem), qPrintable(read.problems.at(0)));
    QCOMPARE(read.windows.last().robot.addressText(), QString("10.0.0.7:6379"));
}

void TestWorkspace::tooMuchOfAnythingIsRefused()
{
    QJsonObject all = objectOf(workspaceText(example(), "/"));
    QJsonArray windows = all["windows"].toArray();
    while (windows.size() <= mostWorkspaceWindows)
        windows += windows[1];
    all["windows"] = windows;
    QVERIFY_EXCEPTION_THROWN(workspaceFrom(textOf(all), "/"), ZoError);
    const Workspace read = workspaceFrom(changed([](QJsonObject& window) {
                                             QJsonArray panels = window["panels"].toArray();
                                             while (panels.size() <= mostWorkspacePanels)
                                                 panels += panels[1];
                                             window["panels"] = panels;
                                         }),
                                         "/");
    QCOMPARE(read.windows.size(), 1);
    QCOMPARE(read.problems, QStringList("Window 1: more than 100 panels"));
}

void TestWorkspace::whatCouldNotBeOpenedIsNotWritten_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<QString>("problem");
    const auto row = [](const char* name, const Change& change, const QString& problem) {
        QTest::newRow(name) << change << problem;
    };
    const QString window = "the window of robot.example:6380";
    const auto first = [](Workspace& workspace) -> WindowContent& {
        return workspace.windows[0].content;
    };
    row(
        "windows",
        [](Workspace& workspace) {
            while (workspace.windows.size() <= mostWorkspaceWindows)
                workspace.windows += workspace.windows.at(1);
        },
        "it has more than 50 windows");
    row(
        "panels",
        [first](Workspace& workspace) {
            while (first(workspace).panels.size() <= mostWorkspacePanels)
                first(workspace).panels += PanelContent{"Probe", "Probe 1", {}};
        },
        window + ": more than 100 panels");
    row(
        "user", [](Workspace& workspace) { workspace.windows[0].robot.user = QString(1001, 'x'); },
        window + ": \"user\" is no text, or too long");
}

void TestWorkspace::whatCouldNotBeOpenedIsNotWritten()
{
    QFETCH(Change, change);
    QFETCH(QString, problem);
    Workspace workspace = example();
    change(workspace);
    QCOMPARE(errorOf([&] { workspaceText(workspace, "/"); }), problem.toStdString());
}

void TestWorkspace::whatIsTooLargeToBeReadIsLeftOut()
{
    Workspace workspace = example();
    WindowContent& content = workspace.windows[0].content;
    content.look.titles["Glimmet 2"] = QString(1001, 'x');
    content.look.docks = QByteArray(50000, 'x');
    content.panels[0].arrangement["columns"] = QString(16385, 'x'); // of a very wide table
    for (int i = 0; i <= 1000; ++i)
        content.panels[1].arrangement[QString::number(i)] = "1,2";
    const QByteArray text = workspaceText(workspace, "/");
    QVERIFY(!text.contains(QByteArray(1001, 'x')));
    const QJsonObject written = objectOf(text)["windows"].toArray()[0].toObject();
    QCOMPARE(written["docks"].toString(), QString());
    QCOMPARE(written["panels"].toArray()[1].toObject()["arrangement"].toObject().size(), 1000);
    const Workspace read = workspaceFrom(text, "/");
    QCOMPARE(read.problems, QStringList());
    QCOMPARE(read.windows.size(), 2);
    const WindowContent& left = read.windows.at(0).content;
    QVERIFY(left.look.titles.isEmpty() && left.look.docks.isEmpty());
    QCOMPARE(left.look.geometry, content.look.geometry);
    QCOMPARE(left.panels.size(), 2);
    QCOMPARE(left.panels.at(0).arrangement, example().windows.at(0).content.panels[0].arrangement);
    QCOMPARE(left.panels.at(1).arrangement.size(), 1000);
}

void TestWorkspace::whatFitsCanAlwaysBeWritten()
{
    Workspace workspace = example();
    workspace.windows[1].robot.user = QString(1001, 'x');
    WindowContent& content = workspace.windows[0].content;
    content.panels[1].plugin = QString(1001, 'x');
    for (int i = 0; i < 1000; ++i)
        content.panels[0].arrangement[QString::number(i)] = QString(16000, 'x');
    while (content.panels.size() <= mostWorkspacePanels + 1)
        content.panels += PanelContent{"Probe", "Probe 1", {}};
    while (workspace.windows.size() <= mostWorkspaceWindows + 1)
        workspace.windows += example().windows.at(1);
    const Workspace fit = fitting(workspace, "/");
    const QByteArray text = workspaceText(fit, "/");
    QVERIFY(text.size() <= largestWorkspace);
    const Workspace read = workspaceFrom(text, "/");
    QCOMPARE(read.problems, QStringList());
    QCOMPARE(read.windows.size(), mostWorkspaceWindows);
    QCOMPARE(read.windows.at(0).content.panels.size(), mostWorkspacePanels);
    QVERIFY(read.windows.at(1).robot.user.isEmpty());
}

void TestWorkspace::whatAnotherVersionWroteCountsToo()
{
    QJsonArray panels;
    while (panels.size() < mostWorkspacePanels)
        panels += QJsonObject{{"script", "x"}};
    const QByteArray before = changed([&](QJsonObject& window) { window["panels"] = panels; });
    QCOMPARE(errorOf([&] { workspaceText(example(), "/robots", before); }),
             std::string("more than 100 panels"));
}

void TestWorkspace::changedLooksAreIgnored()
{
    const auto docksOf = [](const QByteArray& bytes) {
        const QByteArray text = changed([&bytes](QJsonObject& window) {
            window["docks"] = QString::fromLatin1(bytes.toBase64());
        });
        return workspaceFrom(text, "/").windows.at(0).content.look.docks;
    };
    const QByteArray key = QSettings().value("workspaces/secret").toByteArray();
    QCOMPARE(docksOf(sealed("others", key)), QByteArray("others"));
    QCOMPARE(docksOf("others"), QByteArray());
    QCOMPARE(docksOf(sealed("others", key) + "x"), QByteArray());
    QCOMPARE(docksOf(sealed(QByteArray(100000, 'x'), key)), QByteArray());
    QCOMPARE(docksOf(sealed("others")), QByteArray()); // without the key
}

void TestWorkspace::looksThatSomebodyElseWroteAreIgnored()
{
    const QByteArray text = workspaceText(example(), "/robots");
    QSettings().clear(); // as another user
    const Workspace read = workspaceFrom(text, "/robots");
    const WindowContent content = read.windows.at(0).content;
    QVERIFY(content.look.docks.isEmpty() && content.look.geometry.isEmpty());
    QCOMPARE(content.look.titles, example().windows.at(0).content.look.titles);
    QCOMPARE(content.panels.at(0).arrangement,
             example().windows.at(0).content.panels.at(0).arrangement);
    QCOMPARE(read.problems, QStringList());
}

void TestWorkspace::aNewerVersionIsOpenedWithWhatIsKnown()
{
    QJsonObject newer = objectOf(changed([](QJsonObject& window) { window["colour"] = "red"; }));
    newer["version"] = workspaceVersion + 1;
    const Workspace read = workspaceFrom(textOf(newer), "/robots");
    QCOMPARE(read.windows.size(), 2);
    QCOMPARE(read.problems, QStringList());
}

void TestWorkspace::whatANewerVersionWroteStays()
{
    QJsonObject newer = objectOf(changed([](QJsonObject& window) {
        window["colour"] = "red";
        QJsonObject robot = window["robot"].toObject();
        robot["protocol"] = 4;
        window["robot"] = robot;
        QJsonArray panels = window["panels"].toArray();
        QJsonObject panel = panels[1].toObject();
        panel["keys"] = "/some/keys";
        panels[1] = panel;
        window["panels"] = panels;
    }));
    newer["version"] = workspaceVersion + 1;
    newer["stamp"] = "today";
    // Saved in another order, by this version.
    Workspace now = example();
    std::swap(now.windows[0], now.windows[1]);
    std::swap(now.windows[1].content.panels[0], now.windows[1].content.panels[1]);
    now.windows[1].content.look.titles.clear();
    const QJsonObject saved = objectOf(workspaceText(now, "/robots", textOf(newer)));
    QCOMPARE(saved["version"].toInt(), workspaceVersion + 1);
    QCOMPARE(saved["stamp"].toString(), QString("today"));
    const QJsonArray windows = saved["windows"].toArray();
    QCOMPARE(windows.size(), 2);
    QVERIFY(!windows[0].toObject().contains("colour"));
    const QJsonObject window = windows[1].toObject();
    QCOMPARE(window["colour"].toString(), QString("red"));
    QCOMPARE(window["robot"].toObject()["protocol"].toInt(), 4);
    const QJsonArray panels = window["panels"].toArray();
    QCOMPARE(panels.size(), 2);
    QCOMPARE(panels[0].toObject()["keys"].toString(), QString("/some/keys"));
    QVERIFY(!panels[1].toObject().contains("keys"));
    QCOMPARE(panels[1].toObject()["title"].toString(), QString()); // taken away by the user
}

void TestWorkspace::panelsAndWindowsThatAreNoMoreGo()
{
    const QByteArray before = workspaceText(example(), "/robots");
    Workspace now = example();
    now.windows.removeLast();
    now.windows[0].content.panels.removeFirst();
    const Workspace read = workspaceFrom(workspaceText(now, "/robots", before), "/robots");
    QCOMPARE(read.windows.size(), 1);
    QCOMPARE(read.windows.at(0).content.panels.size(), 1);
    QCOMPARE(read.windows.at(0).content.panels.at(0).plugin, QString("Probe"));
}

void TestWorkspace::whatCannotBeReadStays()
{
    QJsonObject newer = objectOf(changed([](QJsonObject& window) {
        window["panels"] = window["panels"].toArray() + QJsonObject{{"script", "x"}};
    }));
    newer["windows"] = newer["windows"].toArray() + QJsonObject{{"recording", "y"}};
    const QJsonObject saved = objectOf(workspaceText(example(), "/robots", textOf(newer)));
    const QJsonArray windows = saved["windows"].toArray();
    QCOMPARE(windows.size(), 3);
    QCOMPARE(windows[2].toObject()["recording"].toString(), QString("y"));
    const QJsonArray panels = windows[0].toObject()["panels"].toArray();
    QCOMPARE(panels.size(), 3);
    QCOMPARE(panels[2].toObject()["script"].toString(), QString("x"));
}

void TestWorkspace::aNewerVersionOfAnotherShapeIsLeftAlone()
{
    const QByteArray newer = "{\"format\": \"tarvek-workspace\", \"version\": 2, \"rooms\": {}}";
    QVERIFY_EXCEPTION_THROWN(workspaceText(example(), "/", newer), ZoError);
    QByteArray older = newer;
    older.replace("\"version\": 2", "\"version\": 1");
    QVERIFY(!workspaceText(example(), "/", older).contains("rooms"));
}

void TestWorkspace::theSameWorkspaceIsTheSameText()
{
    const QByteArray text = workspaceText(example(), "/robots");
    QCOMPARE(workspaceText(workspaceFrom(text, "/robots"), "/robots"), text);
    QCOMPARE(workspaceText(example(), "/robots", text), text);
}

REGISTER_TEST(TestWorkspace, HostApplication)
#include "tst_workspace.moc"
