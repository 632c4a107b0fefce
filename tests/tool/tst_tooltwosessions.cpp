#include "TestMain.h"
#include "TestScale.h"
#include "ToolFixtures.h"

#include "TVLProjectFolderFormat.h"
#include "TVLProjectGuard.h"
#include "TVLProjectNode.h"

#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include <array>

using namespace Qt::StringLiterals;

/** A variable of the environment and its value; none is taken out of it. */
using Variable = std::pair<QString, std::optional<QString>>;
/** What the environment of one run has in place of that of this test. */
using Session = QList<Variable>;

/** Two runs of the tool that change a project at once, each of a login session of its own. */
class TstToolTwoSessions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noTextOfTwoImportsAtOnceIsLost_data();
    void noTextOfTwoImportsAtOnceIsLost();
    void aProjectIsMadeOnce();
    void aProjectIsNotMadeWhereAnotherRunIsAtWork();
    void whoeverOnlyReadsIsNotKeptOut();
};

namespace {

const int Rounds = testCases(20);
const int Files = testSize(400);
constexpr int PatienceMs = 120'000;

/** Texts by their titles. */
using Texts = QMap<QString, QString>;

/** What one of two runs imports. */
Texts textsOf(std::size_t run)
{
    Texts texts;
    for (int i = 0; i < Files; ++i) {
        const QString title = u"Text %1 of run %2"_s.arg(i).arg(run);
        texts.insert(title, u"The words of '%1', and no others."_s.arg(title));
    }
    return texts;
}

/** Writes texts as files; the folder that they lie in. */
QString writeFiles(const Texts &texts, const TestProject &project)
{
    const QString folder = project.enclosingPath() + u"/files"_s;
    for (auto text = texts.begin(); text != texts.end(); ++text)
        writeFileAt(folder + u'/' + text.key() + u".txt"_s, text.value().toUtf8());
    return folder;
}

void startIn(const Session &session, QProcess *process, const QStringList &arguments)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const auto &[name, value] : session) {
        if (value) {
            QDir().mkpath(*value);
            // A folder of a session that others can look into isn't taken for one.
            QFile::setPermissions(*value, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
            environment.insert(name, *value);
        } else {
            environment.remove(name);
        }
    }
    process->setProcessEnvironment(environment);
    process->start(QStringLiteral(TAVEL_EXECUTABLE), arguments);
}

/** Whether a run that did nothing says why. */
bool isTruthful(const QProcess &run, const QByteArray &errors, const QString &projectPath)
{
    const QByteArray busy =
        u"tavel: another run of tavel is at work on '%1'\n"_s.arg(projectPath).toUtf8();
    const QByteArray locked = u"tavel: '%1' is locked by user "_s.arg(projectPath).toUtf8();
    if (run.exitStatus() != QProcess::NormalExit)
        return false;
    return run.exitCode() == 0
        ? errors.isEmpty()
        : run.exitCode() == 1 && (errors == busy || errors.startsWith(locked));
}

/** All texts in the Draft. */
Texts draftTextsOf(const TestProject &project)
{
    Texts texts;
    const TestModel model = project.open();
    if (!model)
        return {};
    tvlForEachNode(model->projectNode(model->draftFolder()), [&](const TVLProjectNode *node) {
        if (node->mNodeType == TVL::Text)
            texts.insert(node->mTitle, model->documentPlainText(model->index(node->mId), false));
    });
    return texts;
}

} // namespace

void TstToolTwoSessions::noTextOfTwoImportsAtOnceIsLost_data()
{
    QTest::addColumn<Session>("first");
    QTest::addColumn<Session>("second");
    const QString runtime = u"XDG_RUNTIME_DIR"_s;
    const QString temporary = u"TMPDIR"_s;
    const QString home = u"HOME"_s;
    const QString data = u"XDG_DATA_HOME"_s;
    const QString folder = QDir::homePath();
    QTest::newRow("of one user") << Session{{runtime, folder + u"/one"_s}}
                                 << Session{{runtime, folder + u"/two"_s}};
    QTest::newRow("that keep temporary files elsewhere")
        << Session{{runtime, {}}, {temporary, folder + u"/one"_s}}
        << Session{{runtime, {}}, {temporary, folder + u"/two"_s}};
    QTest::newRow("of two homes") << Session{{home, folder + u"/one"_s}, {data, folder + u"/one"_s}}
                                  << Session{{home, folder + u"/two"_s},
                                             {data, folder + u"/two"_s}};
    QTest::newRow("of which one has none of the variables")
        << Session{} << Session{{runtime, {}}, {temporary, {}}, {home, {}}};
}

void TstToolTwoSessions::noTextOfTwoImportsAtOnceIsLost()
{
    QFETCH(const Session, first);
    QFETCH(const Session, second);
    for (int round = 0; round < Rounds; ++round) {
        const TestProject project;
        writeProject(project, binderXml(systemFolders({}), labelAndStatusSections()));
        const std::array<TestProject, 2> places;
        const std::array<Session, 2> sessions{first, second};
        std::array<QProcess, 2> runs;
        for (std::size_t i = 0; i < runs.size(); ++i)
            startIn(sessions.at(i), &runs.at(i),
                    {u"import"_s, project.path(), writeFiles(textsOf(i), places.at(i))});

        Texts imported;
        for (std::size_t i = 0; i < runs.size(); ++i) {
            QVERIFY(runs.at(i).waitForFinished(PatienceMs));
            const QByteArray errors = runs.at(i).readAllStandardError();
            QVERIFY2(isTruthful(runs.at(i), errors, project.path()), errors.constData());
            if (runs.at(i).exitCode() == 0)
                imported.insert(textsOf(i));
        }
        QVERIFY(!imported.isEmpty());
        QCOMPARE(draftTextsOf(project), imported);
        QVERIFY(!QFileInfo::exists(TVLProjectGuard::filePath(project.path())));
        QVERIFY(!TVLProjectFolderFormat::lockExists(project.path()));
        QCOMPARE(runTool({u"check"_s, project.path()}).status, 0);
    }
}

void TstToolTwoSessions::aProjectIsMadeOnce()
{
    for (int round = 0; round < Rounds; ++round) {
        const TestProject project;
        std::array<QProcess, 4> runs;
        for (QProcess &run : runs)
            startIn({}, &run, {u"new"_s, project.path()});
        int made = 0;
        for (QProcess &run : runs) {
            QVERIFY(run.waitForFinished(PatienceMs));
            made += run.exitCode() == 0 ? 1 : 0;
        }
        QCOMPARE(made, 1);
        QVERIFY(!QFileInfo::exists(TVLProjectGuard::filePath(project.path())));
        QCOMPARE(runTool({u"check"_s, project.path()}).status, 0);
    }
}

void TstToolTwoSessions::aProjectIsNotMadeWhereAnotherRunIsAtWork()
{
    const TestProject project;
    QVERIFY(QDir().mkpath(project.path()));
    const auto guard = TVLProjectGuard::take(project.path());
    QVERIFY(guard);
    const auto before = everythingBelow(project.path());
    const ProgramResult result = runTool({u"new"_s, project.path()});
    QCOMPARE(result.status, 1);
    const QString program = QFileInfo(u"/proc/self/exe"_s).symLinkTarget().section(u'/', -1);
    QCOMPARE(
        result.errors,
        u"tavel: another run of %1 is at work on '%2'\n"_s.arg(program, project.path()).toUtf8());
    QCOMPARE(everythingBelow(project.path()), before);
}

void TstToolTwoSessions::whoeverOnlyReadsIsNotKeptOut()
{
    const TestProject project;
    writeSoundProject(project);
    const auto guard = TVLProjectGuard::take(project.path());
    QVERIFY(guard);
    for (const QStringList &command :
         {QStringList{u"check"_s, project.path()}, QStringList{u"info"_s, project.path()},
          QStringList{u"outline"_s, project.path()}, QStringList{u"cat"_s, project.path(), u"4"_s},
          QStringList{u"search"_s, project.path(), u"Gulls"_s}}) {
        const ProgramResult result = runTool(command);
        QCOMPARE(result.errors, QByteArray());
        QCOMPARE(result.status, 0);
        QVERIFY(!result.output.contains("guard"));
    }
    QVERIFY(!TVLProjectGuard::take(project.path()));
}

TVL_TEST(TstToolTwoSessions)
#include "tst_tooltwosessions.moc"
