#include "TestMain.h"
#include "ToolFixtures.h"

#include <QFileInfo>
#include <QTest>

using namespace Qt::StringLiterals;

/** What all of the tool's commands have in common. */
class TstToolUsage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wrongUseGivesStatusTwoAndOneLine_data();
    void wrongUseGivesStatusTwoAndOneLine();
    void helpGoesToStandardOutput_data();
    void helpGoesToStandardOutput();
    void theHelpListsEveryCommand();
    void theVersionIsThatOfTheProject();
    void optionsMayStandOnEitherSideOfThePath();
    void noDisplayIsLookedFor_data();
    void noDisplayIsLookedFor();
    void anOutputThatCannotBeWrittenIsAFailure();
    void diagnosticsAppearOnlyWhenAskedFor();
};

void TstToolUsage::wrongUseGivesStatusTwoAndOneLine_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("line");

    QTest::newRow("no command") << QStringList()
                                << QByteArray("tavel: no command given; see 'tavel --help'");
    QTest::newRow("unknown command")
        << QStringList(u"fly"_s) << QByteArray("tavel: unknown command 'fly'; see 'tavel --help'");
    QTest::newRow("unknown option")
        << QStringList(u"--fly"_s) << QByteArray("tavel: Unknown option 'fly'; see 'tavel --help'");
    QTest::newRow("new takes no --json")
        << QStringList{u"new"_s, u"--json"_s, u"a.tavel"_s}
        << QByteArray("tavel: Unknown option 'json'; see 'tavel new --help'");
    QTest::newRow("cat without an item")
        << QStringList{u"cat"_s, u"a.tavel"_s}
        << QByteArray("tavel: ITEM is missing; see 'tavel cat --help'");
    QTest::newRow("search without a text")
        << QStringList{u"search"_s, u"a.tavel"_s}
        << QByteArray("tavel: TEXT is missing; see 'tavel search --help'");
    QTest::newRow("import without a file")
        << QStringList{u"import"_s, u"a.tavel"_s}
        << QByteArray("tavel: FILE is missing; see 'tavel import --help'");
    QTest::newRow("an empty separator")
        << QStringList{u"import"_s, u"a.tavel"_s, u"a.txt"_s, u"--split"_s, QString()}
        << QByteArray("tavel: the text of --split is empty");
    QTest::newRow("snapshot alone")
        << QStringList(u"snapshot"_s)
        << QByteArray("tavel: it isn't said what to do; see 'tavel snapshot --help'");
    QTest::newRow("snapshot with an unknown word")
        << QStringList{u"snapshot"_s, u"fly"_s, u"a.tavel"_s}
        << QByteArray("tavel: unknown command 'snapshot fly'; see 'tavel snapshot --help'");
    QTest::newRow("snapshot add without an item")
        << QStringList{u"snapshot"_s, u"add"_s, u"a.tavel"_s}
        << QByteArray("tavel: ITEM is missing; see 'tavel snapshot add --help'");
    QTest::newRow("snapshot add with two titles")
        << QStringList{u"snapshot"_s, u"add"_s, u"a.tavel"_s, u"4"_s, u"A"_s, u"B"_s}
        << QByteArray("tavel: one argument too many: 'B'; see 'tavel snapshot add --help'");
    QTest::newRow("snapshot restore without which")
        << QStringList{u"snapshot"_s, u"restore"_s, u"a.tavel"_s, u"4"_s}
        << QByteArray("tavel: WHICH is missing; see 'tavel snapshot restore --help'");
    for (const char *command : {"new", "info", "outline", "check"}) {
        const QString name = QString::fromLatin1(command);
        const QByteArray hint = QByteArray("; see 'tavel ") + command + " --help'";
        QTest::addRow("%s without a path", command)
            << QStringList(name) << "tavel: PATH is missing" + hint;
        QTest::addRow("%s with two paths", command)
            << QStringList{name, u"a.tavel"_s, u"b.tavel"_s}
            << "tavel: one argument too many: 'b.tavel'" + hint;
        QTest::addRow("%s with an unknown option", command)
            << QStringList{name, u"a.tavel"_s, u"--fly"_s} << "tavel: Unknown option 'fly'" + hint;
    }
}

void TstToolUsage::wrongUseGivesStatusTwoAndOneLine()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const QByteArray, line);

    const ProgramResult result = runTool(arguments);
    QVERIFY(!result.crashed);
    QCOMPARE(result.status, 2);
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(result.errors, line + '\n');
}

void TstToolUsage::helpGoesToStandardOutput_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("usage");

    QTest::newRow("the tool") << QStringList(u"--help"_s) << QByteArray(" [options] COMMAND\n");
    QTest::newRow("in short") << QStringList(u"-h"_s) << QByteArray(" [options] COMMAND\n");
    QTest::newRow("import") << QStringList{u"import"_s, u"--help"_s}
                            << QByteArray(" import [options] PATH FILE...\n");
    QTest::newRow("search") << QStringList{u"search"_s, u"--help"_s}
                            << QByteArray(" search [options] PATH TEXT\n");
    QTest::newRow("snapshot") << QStringList{u"snapshot"_s, u"--help"_s}
                              << QByteArray("tavel snapshot COMMAND\n");
    QTest::newRow("snapshot add") << QStringList{u"snapshot"_s, u"add"_s, u"-h"_s}
                                  << QByteArray(" snapshot add [options] PATH ITEM [TITLE]\n");
    for (const char *command : {"new", "info", "outline", "check"}) {
        const QByteArray usage = ' ' + QByteArray(command) + " [options] PATH\n";
        QTest::newRow(command) << QStringList{QString::fromLatin1(command), u"--help"_s} << usage;
        QTest::addRow("%s with a path", command)
            << QStringList{QString::fromLatin1(command), u"a.tavel"_s, u"-h"_s} << usage;
    }
}

void TstToolUsage::helpGoesToStandardOutput()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const QByteArray, usage);

    const ProgramResult result = runTool(arguments);
    QCOMPARE(result.status, 0);
    QCOMPARE(result.errors, QByteArray());
    QVERIFY(result.output.startsWith("Usage: "));
    QVERIFY2(result.output.contains(usage), result.output);
}

void TstToolUsage::theHelpListsEveryCommand()
{
    const QByteArray help = runTool({u"--help"_s}).output;
    for (const char *command : {"new", "info", "outline", "cat", "import", "search", "snapshot add",
                                "snapshot list", "snapshot show", "snapshot restore", "check"})
        QVERIFY2(help.contains(QByteArray("\n  ") + command + ' '), command);
}

void TstToolUsage::theVersionIsThatOfTheProject()
{
    for (const QString &option : {u"--version"_s, u"-v"_s}) {
        const ProgramResult result = runTool({option});
        QCOMPARE(result.status, 0);
        QCOMPARE(result.output, QByteArray("tavel " TAVEL_VERSION "\n"));
        QCOMPARE(result.errors, QByteArray());
    }
}

void TstToolUsage::optionsMayStandOnEitherSideOfThePath()
{
    const TestProject project;
    writeSoundProject(project);
    const ProgramResult before = runTool({u"outline"_s, u"--json"_s, project.path()});
    const ProgramResult behind = runTool({u"outline"_s, project.path(), u"--json"_s});
    QVERIFY(before.json().isArray());
    QCOMPARE(behind.output, before.output);
}

void TstToolUsage::noDisplayIsLookedFor_data()
{
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QString>("value");
    QTest::newRow("none") << QString() << QString();
    QTest::newRow("a display that is gone") << u"DISPLAY"_s << u":4711"_s;
    QTest::newRow("a compositor that is gone") << u"WAYLAND_DISPLAY"_s << u"wayland-4711"_s;
    QTest::newRow("a platform that isn't there") << u"QT_QPA_PLATFORM"_s << u"nosuchplatform"_s;
    QTest::newRow("a platform that needs a display") << u"QT_QPA_PLATFORM"_s << u"xcb"_s;
}

void TstToolUsage::noDisplayIsLookedFor()
{
    QFETCH(const QString, variable);
    QFETCH(const QString, value);
    const TestProject project;
    writeSoundProject(project);
    ProgramPlace place;
    for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        place.environment.remove(QString::fromLatin1(name));
    if (!variable.isEmpty())
        place.environment.insert(variable, value);
    for (const QStringList &arguments :
         {QStringList{u"--version"_s}, QStringList{u"outline"_s, project.path()}}) {
        const ProgramResult result = runTool(arguments, place);
        QVERIFY(!result.crashed);
        QCOMPARE(result.status, 0);
        QCOMPARE(result.errors, QByteArray());
    }
}

void TstToolUsage::anOutputThatCannotBeWrittenIsAFailure()
{
    const QString fullDevice = u"/dev/full"_s;
    QVERIFY(QFileInfo::exists(fullDevice));
    const TestProject project;
    writeSoundProject(project);
    ProgramPlace place;
    place.outputFile = fullDevice;
    for (const QString &command : {u"info"_s, u"outline"_s, u"check"_s}) {
        const ProgramResult result = runTool({command, project.path(), u"--json"_s}, place);
        QCOMPARE(result.status, 1);
        QCOMPARE(result.errors, QByteArray("tavel: standard output can't be written\n"));
    }
}

void TstToolUsage::diagnosticsAppearOnlyWhenAskedFor()
{
    const TestProject project;
    const QByteArray unheardOf = "<Unheard/>";
    writeProject(project, binderXml(systemFolders({}), unheardOf));
    const QStringList arguments{u"outline"_s, project.path()};
    QCOMPARE(runTool(arguments).errors, QByteArray());

    ProgramPlace place;
    place.environment.insert(u"QT_LOGGING_RULES"_s, u"default.debug=true"_s);
    const ProgramResult result = runTool(arguments, place);
    QCOMPARE(result.status, 0);
    QVERIFY2(result.errors.contains("Skipped Binder XML tag:"), result.errors);
}

TVL_TEST(TstToolUsage)
#include "tst_toolusage.moc"
