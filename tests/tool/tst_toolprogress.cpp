#include "TestMain.h"
#include "ToolFixtures.h"

#include <QTest>

#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/** A terminal of the test's own. */
class Terminal
{
public:
    Terminal()
        : mMaster(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK))
    {
        if (mMaster < 0 || grantpt(mMaster) != 0 || unlockpt(mMaster) != 0)
            return;
        mPath = QString::fromLocal8Bit(ptsname(mMaster));
        // As long as nobody has it open, what was written is lost.
        mSlave = open(qPrintable(mPath), O_RDWR | O_NOCTTY);
    }
    ~Terminal()
    {
        close(mSlave);
        close(mMaster);
    }
    Q_DISABLE_COPY_MOVE(Terminal)

    [[nodiscard]] bool isOpen() const { return mSlave >= 0; }
    [[nodiscard]] QString path() const { return mPath; }

    /** What was written to it. */
    [[nodiscard]] QByteArray shown() const
    {
        QByteArray all;
        char part[4096];
        for (;;) {
            const ssize_t size = read(mMaster, part, sizeof part);
            if (size <= 0)
                return all;
            all.append(part, size);
        }
    }

private:
    int mMaster;
    int mSlave = -1;
    QString mPath;
};

/** Imports four texts, one of which isn't one, with standard error going somewhere. */
ProgramResult importFour(const TestProject &project, const QString &errorFile)
{
    writeSoundProject(project);
    QStringList arguments = {u"import"_s, project.path()};
    for (const QString &name : {u"a.txt"_s, u"b.txt"_s, u"c.rtf"_s, u"d.txt"_s}) {
        const QString path = project.enclosingPath() + u'/' + name;
        writeFileAt(path, "Words.");
        arguments.append(path);
    }
    ProgramPlace place;
    place.errorFile = errorFile;
    return runTool(arguments, place);
}

QByteArray bar(int filled, const QByteArray &percent)
{
    return "\r[" + QByteArray(filled, '#') + QByteArray(40 - filled, ' ') + "] " + percent + " %";
}

const QByteArray Gone = "\r\x1b[K";

} // namespace

/** The bar that long work shows. */
class TstToolProgress : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aTerminalShowsABarThatGoes();
    void aFileGetsNoBar();
};

void TstToolProgress::aTerminalShowsABarThatGoes()
{
    const Terminal terminal;
    if (!terminal.isOpen())
        QSKIP("There are no terminals here.");
    const TestProject project;
    QCOMPARE(importFour(project, terminal.path()).status, 1);
    const QByteArray shown = terminal.shown();
    const QByteArray complaint = shown.mid(shown.indexOf("tavel: "));
    QVERIFY2(shown.startsWith(bar(0, "  0") + bar(10, " 25") + bar(20, " 50") + Gone + "tavel: "),
             shown.toPercentEncoding());
    QVERIFY2(complaint.contains("is not imported"), complaint);
    QVERIFY2(complaint.endsWith('\n' + bar(30, " 75") + Gone), shown.toPercentEncoding());
}

void TstToolProgress::aFileGetsNoBar()
{
    const TestProject project;
    const QString errors = project.enclosingPath() + u"/errors"_s;
    QCOMPARE(importFour(project, errors).status, 1);
    QFile file(errors);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    QVERIFY2(text.startsWith("tavel: '"), text);
    QCOMPARE(text.count('\n'), 1);
    QVERIFY(!text.contains('\r'));
}

TVL_TEST(TstToolProgress)
#include "tst_toolprogress.moc"
