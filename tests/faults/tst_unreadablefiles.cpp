#include "EditionsProject.h"
#include "OrdinaryRights.h"
#include "TestMain.h"
#include "TestScale.h"

#include "TVLCoreUtil.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

/** What becomes of a file that somebody damages while a project is worked on. */
struct Damage
{
    const char *name;
    void (*damage)(const QString &filePath);
    /** Whether the file is as it was left by the damage. */
    bool (*isUntouched)(const QString &filePath, const QByteArray &before);
    /** Whether the file can still be read, as far as it goes. */
    bool isReadable;
};

/** Whatever happens to a file, nothing that couldn't be read is written over, and nothing hangs. */
class TstUnreadableFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aSessionLeavesThemAlone_data();
    void aSessionLeavesThemAlone();
    void theToolLeavesThemAlone_data();
    void theToolLeavesThemAlone();

private:
    EditionsProject mOriginal;
    QStringList mFiles;
    int mRow = 0;
};

namespace {

constexpr int PatienceMs = 5000; ///< No command takes longer than that.
constexpr int StartMs = 60'000;

const QStringList Steps{u"open"_s, u"edit"_s, u"save"_s, u"search"_s, u"close"_s};

// --- What is done to files

void mustBeDone(bool ok, const QString &filePath)
{
    if (!ok)
        qFatal("could not damage %s", qPrintable(filePath));
}

QString wayOut(const QString &filePath)
{
    return filePath + u".nothing"_s;
}

QByteArray readableContentOf(const QString &filePath)
{
    QFile::setPermissions(filePath, QFile::ReadOwner | QFile::WriteOwner);
    return TVLCoreUtil::ReadBinaryFile(filePath);
}

void makeUnreadable(const QString &filePath)
{
    mustBeDone(QFile::setPermissions(filePath, {}), filePath);
}

bool isSameFile(const QString &filePath, const QByteArray &before)
{
    return QFileInfo(filePath).isFile() && !QFileInfo(filePath).isSymbolicLink()
        && readableContentOf(filePath) == before;
}

void makeFolder(const QString &filePath)
{
    mustBeDone(QFile::remove(filePath) && QDir().mkpath(filePath + u"/inside"_s), filePath);
}

bool isFolder(const QString &filePath, const QByteArray &)
{
    return QFileInfo(filePath + u"/inside"_s).isDir();
}

void makeDeadLink(const QString &filePath)
{
    mustBeDone(QFile::remove(filePath) && QFile::link(wayOut(filePath), filePath), filePath);
}

bool isDeadLink(const QString &filePath, const QByteArray &)
{
    return QFileInfo(filePath).symLinkTarget() == wayOut(filePath)
        && !QFileInfo::exists(wayOut(filePath));
}

void makePipe(const QString &filePath)
{
    constexpr mode_t Mode = 0600;
    mustBeDone(QFile::remove(filePath) && mkfifo(QFile::encodeName(filePath), Mode) == 0, filePath);
}

bool isPipe(const QString &filePath, const QByteArray &)
{
    struct stat status = {};
    return lstat(QFile::encodeName(filePath), &status) == 0 && S_ISFIFO(status.st_mode);
}

void makeEmpty(const QString &filePath)
{
    mustBeDone(QFile::resize(filePath, 0), filePath);
}

void cutOff(const QString &filePath)
{
    mustBeDone(QFile::resize(filePath, QFileInfo(filePath).size() / 2), filePath);
}

bool isEmptyFile(const QString &filePath, const QByteArray &)
{
    return isSameFile(filePath, {});
}

bool isFirstHalf(const QString &filePath, const QByteArray &before)
{
    return isSameFile(filePath, before.first(before.size() / 2));
}

constexpr Damage Damages[] = {{"unreadable", makeUnreadable, isSameFile, false},
                              {"a folder", makeFolder, isFolder, false},
                              {"a link to nothing", makeDeadLink, isDeadLink, false},
                              {"a pipe", makePipe, isPipe, false},
                              {"empty", makeEmpty, isEmptyFile, true},
                              {"cut off", cutOff, isFirstHalf, true}};

// --- What may become of them

/** Files that hold nothing of their own: they are made anew, also in place of something else. */
bool isDerived(const QString &file)
{
    return file.endsWith(u".autosave") || file.endsWith(u".backup")
        || file.endsWith(u"search.indexes") || file.endsWith(u"docs.checksum");
}

/** Files of which any bytes can be read, and those that a whole copy is read in place of. */
bool isReadInAnyState(const QString &file)
{
    return file.endsWith(u".tavelx") || file.endsWith(u"_synopsis.txt")
        || file.endsWith(u"version.txt");
}

/** The step in which a session reads a file, which it then knows and may write over. */
int readingStep(const QString &file)
{
    const bool isReadOnOpening = !file.contains(u"/Docs/") && !file.startsWith(u"Snapshots");
    return Steps.indexOf(isReadOnOpening ? u"open"_s : u"edit"_s);
}

/** What is wrong with a file that was damaged; empty when nothing is. */
QString complaintOf(const Damage &damage, const QString &file, const QString &filePath,
                    const QByteArray &before)
{
    if (QFileInfo::exists(wayOut(filePath)))
        return u"'%1' was written through the link"_s.arg(file);
    if (!isDerived(file) && !damage.isUntouched(filePath, before))
        return u"'%1' was written over"_s.arg(file);
    return {};
}

/** What is wrong with all others. */
QStringList complaintsOfOthers(const QString &file, const QString &path)
{
    QStringList complaints;
    const QStringList broken = brokenFiles(path);
    for (const QString &other : broken) {
        if (other != file)
            complaints.append(u"'%1' is broken"_s.arg(other));
    }
    return complaints;
}

/** Of how many tries in a row one is done, where there are more of them than elsewhere. */
int strideOf(int factor)
{
    return testStride() == 1 ? 1 : factor * testStride();
}

// --- Those who work on the project

/** A session of a writer in a process of its own. */
class WriterSession
{
public:
    explicit WriterSession(const QString &path)
    {
        mProcess.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        mProcess.start(QStringLiteral(FAULT_WORKER), {path, u"steps"_s});
        mIsRunning = mProcess.waitForStarted(StartMs);
    }
    ~WriterSession()
    {
        mProcess.kill();
        mProcess.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(WriterSession)

    /** Whether the step comes to its end, well or not. */
    [[nodiscard]] bool doStep(const QString &step)
    {
        mProcess.write(step.toLatin1() + '\n');
        QElapsedTimer timer;
        timer.start();
        while (mIsRunning && !mProcess.canReadLine() && timer.elapsed() < PatienceMs)
            mIsRunning = mProcess.waitForReadyRead(int(PatienceMs - timer.elapsed()));
        return mProcess.canReadLine() && mProcess.readLine().startsWith(step.toLatin1());
    }

private:
    QProcess mProcess;
    bool mIsRunning = false;
};

/** A session before one of whose steps a file is damaged; what there is to complain of. */
QStringList complaintsAfterSession(const TestProject &place, const QString &file,
                                   const Damage &damage, int damagedStep)
{
    const QString filePath = place.path(file);
    QByteArray before;
    WriterSession session(place.path());
    for (int step = 0; step < Steps.size(); ++step) {
        if (step == damagedStep) {
            before = readableContentOf(filePath);
            damage.damage(filePath);
        }
        if (!session.doStep(Steps.at(step)))
            return {u"'%1' doesn't come to its end"_s.arg(Steps.at(step))};
    }
    QStringList complaints = complaintsOfOthers(file, place.path());
    // What was read before it was damaged is known, and so is what any bytes mean.
    const bool mayBeWritten =
        damage.isReadable && (isReadInAnyState(file) || damagedStep > readingStep(file));
    if (const QString complaint = complaintOf(damage, file, filePath, before);
        !complaint.isEmpty() && !mayBeWritten)
        complaints.append(complaint);
    return complaints;
}

/** The commands of the tool, but for the project's path behind the first words. */
QList<QStringList> commandsOfTheTool(const QString &textFile)
{
    const QString chapter = u"Draft/Chapter 1"_s;
    return {{u"check"_s},
            {u"info"_s},
            {u"outline"_s},
            {u"cat"_s, chapter},
            {u"search"_s, u"edition"_s},
            {u"snapshot list"_s, chapter},
            {u"import"_s, textFile},
            {u"snapshot add"_s, chapter},
            {u"snapshot restore"_s, chapter, u"1"_s}};
}

/** A run of the tool on a project with a damaged file; what there is to complain of. */
QStringList complaintsAfterCommand(const TestProject &place, const QString &file,
                                   const Damage &damage, const QStringList &command)
{
    const QString filePath = place.path(file);
    const QByteArray before = readableContentOf(filePath);
    damage.damage(filePath);
    QProcess process;
    process.start(QStringLiteral(TAVEL_EXECUTABLE),
                  command.constFirst().split(u' ') + QStringList{place.path()} + command.mid(1));
    if (!process.waitForFinished(PatienceMs)) {
        process.kill();
        process.waitForFinished();
        return {u"it doesn't come to its end"_s};
    }
    if (process.exitStatus() != QProcess::NormalExit)
        return {u"it crashes"_s};
    QStringList complaints = complaintsOfOthers(file, place.path());
    const bool mayBeWritten = damage.isReadable && isReadInAnyState(file);
    if (const QString complaint = complaintOf(damage, file, filePath, before);
        !complaint.isEmpty() && !mayBeWritten)
        complaints.append(complaint);
    return complaints;
}

} // namespace

void TstUnreadableFiles::initTestCase()
{
    mOriginal = EditionsProject::make();
    mFiles = mOriginal.files.keys();
    QVERIFY(mFiles.size() > Steps.size());
}

void TstUnreadableFiles::aSessionLeavesThemAlone_data()
{
    QTest::addColumn<Damage>("damage");
    QTest::addColumn<int>("step");
    for (const Damage &damage : Damages) {
        for (int step = 0; step < Steps.size(); ++step)
            QTest::addRow("%s, before '%s'", damage.name, qPrintable(Steps.at(step)))
                << damage << step;
    }
}

void TstUnreadableFiles::aSessionLeavesThemAlone()
{
    QFETCH(const Damage, damage);
    QFETCH(const int, step);
    const int stride = strideOf(3);
    int losses = 0;
    for (qsizetype i = mRow++ % stride; i < mFiles.size(); i += stride) {
        const TestProject place;
        mOriginal.writeTo(place);
        const QStringList complaints = complaintsAfterSession(place, mFiles.at(i), damage, step);
        losses += complaints.isEmpty() ? 0 : 1;
        if (!complaints.isEmpty())
            qInfo("%s: %s", qPrintable(mFiles.at(i)), qPrintable(complaints.join(u"; "_s)));
    }
    QCOMPARE(losses, 0);
}

void TstUnreadableFiles::theToolLeavesThemAlone_data()
{
    QTest::addColumn<Damage>("damage");
    for (const Damage &damage : Damages)
        QTest::newRow(damage.name) << damage;
}

void TstUnreadableFiles::theToolLeavesThemAlone()
{
    QFETCH(const Damage, damage);
    const TestProject texts;
    texts.writeFile(u"New.txt"_s, "New words.");
    const QList<QStringList> commands = commandsOfTheTool(texts.path(u"New.txt"_s));
    const qsizetype tries = mFiles.size() * commands.size();
    // No divisor of it is one of the number of commands.
    const int stride = strideOf(5);
    int losses = 0;
    for (qsizetype i = mRow++ % stride; i < tries; i += stride) {
        const QString &file = mFiles.at(i / commands.size());
        const QStringList &command = commands.at(i % commands.size());
        const TestProject place;
        mOriginal.writeTo(place);
        const QStringList complaints = complaintsAfterCommand(place, file, damage, command);
        losses += complaints.isEmpty() ? 0 : 1;
        if (!complaints.isEmpty())
            qInfo("%s, %s: %s", qPrintable(command.constFirst()), qPrintable(file),
                  qPrintable(complaints.join(u"; "_s)));
    }
    QCOMPARE(losses, 0);
}

TVL_TEST_PREPARED(TstUnreadableFiles, dropRightsOfTheSuperuser)
#include "tst_unreadablefiles.moc"
