#include "TestMain.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

struct RtfiResult
{
    int status = -1;
    QByteArray errors;
};

RtfiResult runRtfi(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(RTFI), arguments);
    constexpr int Limit = 60'000;
    if (!process.waitForFinished(Limit) || process.exitStatus() != QProcess::NormalExit)
        return {};
    return {process.exitCode(), process.readAllStandardError()};
}

} // namespace

/** The program that checks rich text. */
class TstRtfi : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFileIsChecked_data();
    void aFileIsChecked();
    void controlCharactersAreTakenOutOnRequest();
    void aFileWithOtherErrorsIsLeftAlone();
    void aSoundFileIsNotWritten();
    void wrongUseIsTold_data();
    void wrongUseIsTold();
    void itStartsAtOnce();

private:
    [[nodiscard]] QString write(const QByteArray &content) const;
    [[nodiscard]] QByteArray content() const;

    QTemporaryDir mFolder;
};

QString TstRtfi::write(const QByteArray &content) const
{
    QFile file(mFolder.filePath(u"My \"text\".rtf"_s));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("could not write %s", qPrintable(file.fileName()));
    return file.fileName();
}

QByteArray TstRtfi::content() const
{
    QFile file(mFolder.filePath(u"My \"text\".rtf"_s));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void TstRtfi::aFileIsChecked_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("errors");
    QTest::newRow("sound") << QByteArray("{\\rtf1 x}") << 0 << QByteArray();
    QTest::newRow("empty") << QByteArray() << 1 << QByteArray("rtfi: not a rich text file\n");
    QTest::newRow("cut off") << QByteArray("{\\rtf1 x") << 1
                             << QByteArray("rtfi: ends before its text does\n");
    QTest::newRow("goes on") << QByteArray("{\\rtf1 x}y") << 1
                             << QByteArray("rtfi: goes on behind the end of its text\n");
    QTest::newRow("too deep") << QByteArray("{\\rtf1 ") + QByteArray(10'000, '{')
            + QByteArray(10'001, '}')
                              << 1 << QByteArray("rtfi: nested too deeply\n");
    QTest::newRow("control characters") << QByteArray("{\\rtf1 a\x01}") << 1
                                        << QByteArray("rtfi: control characters in the text\n");
}

void TstRtfi::aFileIsChecked()
{
    QFETCH(QByteArray, content);
    const RtfiResult result = runRtfi({write(content)});
    QTEST(result.status, "status");
    QTEST(result.errors, "errors");
    QCOMPARE(this->content(), content);
}

void TstRtfi::controlCharactersAreTakenOutOnRequest()
{
    const QString path = write("{\\rtf1 a\x01 b}");
    QCOMPARE(runRtfi({path, u"--removeinvalidchar"_s}).status, 0);
    QCOMPARE(content(), "{\\rtf1 a b}");
    QCOMPARE(runRtfi({path}).status, 0);
}

void TstRtfi::aFileWithOtherErrorsIsLeftAlone()
{
    const QByteArray broken = "{\\rtf1 a\x01 b";
    QCOMPARE(runRtfi({write(broken), u"--removeinvalidchar"_s}).status, 1);
    QCOMPARE(content(), broken);
}

void TstRtfi::aSoundFileIsNotWritten()
{
    const QString path = write("{\\rtf1 x}");
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    const QDateTime longAgo = QDateTime::fromSecsSinceEpoch(1'000'000);
    QVERIFY(file.setFileTime(longAgo, QFileDevice::FileModificationTime));
    file.close();
    QCOMPARE(runRtfi({path, u"--removeinvalidchar"_s}).status, 0);
    QCOMPARE(QFileInfo(path).lastModified(), longAgo);
}

void TstRtfi::wrongUseIsTold_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("status");
    QTest::newRow("nothing") << QStringList() << 2;
    QTest::newRow("two files") << QStringList({u"a.rtf"_s, u"b.rtf"_s}) << 2;
    QTest::newRow("no such file") << QStringList(u"/no/such/file.rtf"_s) << 1;
    QTest::newRow("a folder") << QStringList(u"/tmp"_s) << 1;
}

void TstRtfi::wrongUseIsTold()
{
    QFETCH(QStringList, arguments);
    const RtfiResult result = runRtfi(arguments);
    QTEST(result.status, "status");
    QVERIFY(!result.errors.isEmpty());
}

void TstRtfi::itStartsAtOnce()
{
#ifdef TVL_SANITIZED
    QSKIP("Sanitizers take their time to start");
#endif
    const QString path = write("{\\rtf1 x}");
    // The machine may be busy; what counts is that it can.
    constexpr int Tries = 50;
    qint64 best = std::numeric_limits<qint64>::max();
    for (int i = 0; i < Tries; ++i) {
        QElapsedTimer time;
        time.start();
        QCOMPARE(runRtfi({path}).status, 0);
        best = std::min(best, time.elapsed());
    }
    QVERIFY2(best < 30, qPrintable(QString::number(best)));
}

TVL_TEST(TstRtfi)
#include "tst_rtfi.moc"
