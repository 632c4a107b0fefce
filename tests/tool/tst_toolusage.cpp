#include "TestMain.h"
#include "ToolFixtures.h"

#include <QFileInfo>
#include <QTest>

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
        << QStringList(u"fly"_qs) << QByteArray("tavel: unknown command 'fly'; see 'tavel --help'");
    QTest::newRow("unknown option")
        << QStringList(u"--fly"_qs)
        << QByteArray("tavel: Unknown option 'fly'; see 'tavel --help'");
    QTest::newRow("new takes no --json")
        << QStringList{u"new"_qs, u"--json"_qs, u"a.tavel"_qs}
        << QByteArray("tavel: Unknown option 'json'; see 'tavel new --help'");
    QTest::newRow("cat without an item")
        << QStringList{u"cat"_qs, u"a.tavel"_qs}
        << QByteArray("tavel: ITEM is missing; see 'tavel cat --help'");
    QTest::newRow("search without a text")
        << QStringList{u"search"_qs, u"a.tavel"_qs}
        << QByteArray("tavel: TEXT is missing; see 'tavel search --help'");
    QTest::newRow("import without a file")
        << QStringList{u"import"_qs, u"a.tavel"_qs}
        << QByteArray("tavel: FILE is missing; see 'tavel import --help'");
    QTest::newRow("an empty separator")
        << QStringList{u"import"_qs, u"a.tavel"_qs, u"a.txt"_qs, u"--split"_qs, QString()}
        << QByteArray("tavel: the text of --split is empty");
    QTest::newRow("snapshot alone")
        << QStringList(u"snapshot"_qs)
        << QByteArray("tavel: it isn't said what to do; see 'tavel snapshot --help'");
    QTest::newRow("snapshot with an unknown word")
        << QStringList{u"snapshot"_qs, u"fly"_qs, u"a.tavel"_qs}
        << QByteArray("tavel: unknown command 'snapshot fly'; see 'tavel snapshot --help'");
    QTest::newRow("snapshot add without an item")
        << QStringList{u"snapshot"_qs, u"add"_qs, u"a.tavel"_qs}
        << QByteArray("tavel: ITEM is missing; see 'tavel snapshot add --help'");
    QTest::newRow("snapshot add with two titles")
        << QStringList{u"snapshot"_qs, u"add"_qs, u"a.tavel"_qs, u"4"_qs, u"A"_qs, u"B"_qs}
        << QByteArray("tavel: one argument too many: 'B'; see 'tavel snapshot add --help'");
    QTest::newRow("snapshot restore without which")
        << QStringList{u"snapshot"_qs, u"restore"_qs, u"a.tavel"_qs, u"4"_qs}
        << QByteArray("tavel: WHICH is missing; see 'tavel snapshot restore --help'");
    for (const char *command : {"new", "info", "outline", "check"}) {
        const QString name = QString::fromLatin1(command);
        const QByteArray hint = QByteArray("; see 'tavel ") + command + " --help'";
        QTest::addRow("%s without a path", command)
            << QStringList(name) << "tavel: PATH is missing" + hint;
        QTest::addRow("%s with two paths", command)
            << QStringList{name, u"a.tavel"_qs, u"b.tavel"_qs}
            << "tavel: one argument too many: 'b.tavel'" + hint;
        QTest::addRow("%s with an unknown option", command)
            << QStringList{name, u"a.tavel"_qs, u"--fly"_qs}
            << "tavel: Unknown option 'fly'" + hint;
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

    QTest::newRow("the tool") << QStringList(u"--help"_qs) << QByteArray(" [options] COMMAND\n");
    QTest::newRow("in short") << QStringList(u"-h"_qs) << QByteArray(" [options] COMMAND\n");
    QTest::newRow("import") << QStringList{u"import"_qs, u"--help"_qs}
                            << QByteArray(" import [options] PATH FILE...\n");
    QTest::newRow("search") << QStringList{u"search"_qs, u"--help"_qs}
                            << QByteArray(" search [options] PATH TEXT\n");
    QTest::newRow("snapshot") << QStringList{u"snapshot"_qs, u"--help"_qs}
                              << QByteArray("tavel snapshot COMMAND\n");
    QTest::newRow("snapshot add") << QStringList{u"snapshot"_qs, u"add"_qs, u"-h"_qs}
                                  << QByteArray(" snapshot add [options] PATH ITEM [TITLE]\n");
    for (const char *command : {"new", "info", "outline", "check"}) {
        const QByteArray usage = ' ' + QByteArray(command) + " [options] PATH\n";
        QTest::newRow(command) << QStringList{QString::fromLatin1(command), u"--help"_qs} << usage;
        QTest::addRow("%s with a path", command)
            << QStringList{QString::fromLatin1(command), u"a.tavel"_qs, u"-h"_qs} << usage;
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
    const QByteArray help = runTool({u"--help"_qs}).output;
    for (const char *command : {"new", "info", "outline", "cat", "import", "search", "snapshot add",
                                "snapshot list", "snapshot show", "snapshot restore", "check"})
        QVERIFY2(help.contains(QByteArray("\n  ") + command + ' '), command);
}

void TstToolUsage::theVersionIsThatOfTheProject()
{
    for (const QString &option : {u"--version"_qs, u"-v"_qs}) {
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
    const ProgramResult before = runTool({u"outline"_qs, u"--json"_qs, project.path()});
    const ProgramResult behind = runTool({u"outline"_qs, project.path(), u"--json"_qs});
    QVERIFY(before.json().isArray());
    QCOMPARE(behind.output, before.output);
}

void TstToolUsage::noDisplayIsLookedFor_data()
{
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QString>("value");
    QTest::newRow("none") << QString() << QString();
    QTest::newRow("a display that is gone") << u"DISPLAY"_qs << u":4711"_qs;
    QTest::newRow("a compositor that is gone") << u"WAYLAND_DISPLAY"_qs << u"wayland-4711"_qs;
    QTest::newRow("a platform that isn't there") << u"QT_QPA_PLATFORM"_qs << u"nosuchplatform"_qs;
    QTest::newRow("a platform that needs a display") << u"QT_QPA_PLATFORM"_qs << u"xcb"_qs;
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
         {QStringList{u"--version"_qs}, QStringList{u"outline"_qs, project.path()}}) {
        const ProgramResult result = runTool(arguments, place);
        QVERIFY(!result.crashed);
        QCOMPARE(result.status, 0);
        QCOMPARE(result.errors, QByteArray());
    }
}

void TstToolUsage::anOutputThatCannotBeWrittenIsAFailure()
{
    const QString fullDevice = u"/dev/full"_qs;
    QVERIFY(QFileInfo::exists(fullDevice));
    const TestProject project;
    writeSoundProject(project);
    ProgramPlace place;
    place.outputFile = fullDevice;
    for (const QString &command : {u"info"_qs, u"outline"_qs, u"check"_qs}) {
        const ProgramResult result = runTool({command, project.path(), u"--json"_qs}, place);
        QCOMPARE(result.status, 1);
        QCOMPARE(result.errors, QByteArray("tavel: standard output can't be written\n"));
    }
}

void TstToolUsage::diagnosticsAppearOnlyWhenAskedFor()
{
    const TestProject project;
    const QByteArray unheardOf = "<Unheard/>";
    writeProject(project, binderXml(systemFolders({}), unheardOf));
    const QStringList arguments{u"outline"_qs, project.path()};
    QCOMPARE(runTool(arguments).errors, QByteArray());

    ProgramPlace place;
    place.environment.insert(u"QT_LOGGING_RULES"_qs, u"default.debug=true"_qs);
    const ProgramResult result = runTool(arguments, place);
    QCOMPARE(result.status, 0);
    QVERIFY2(result.errors.contains("Skipped Binder XML tag:"), result.errors);
}

TVL_TEST(TstToolUsage)
#include "tst_toolusage.moc"
