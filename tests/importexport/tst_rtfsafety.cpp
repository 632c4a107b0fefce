#include "StandIn.h"
#include "TestMain.h"

#include "TVLCoreUtil.h"
#include "TVLOptions.h"
#include "TVLTextTransform.h"
#include "TVLUnattendedMessageBoxes.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

/** Rich text is looked through before it is read. */
class TstRtfSafety : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void onlyFilesOfTheSuffixAreLookedThrough();
    void aMissingFileIsNotSafeAndNotTold();
    void withoutTheProgramAllIsSafe();
    void aSoundFileIsSafe();
    void anyNameAndRelativePathsReachTheProgram();
    void errorsAreAskedAbout();
    void theQuestionComesAgainUnlessTheAnswerIsRemembered();
    void aProgramThatDiesIsTold();
    void anOptionHasInvalidCharactersRemoved();

private:
    /** Makes the program of which the rest of the tests ask. */
    [[nodiscard]] QByteArray program(const QByteArray &script);
    [[nodiscard]] QString path(const QString &name) const { return mFolder->filePath(name); }
    [[nodiscard]] QString file(const QString &name);
    [[nodiscard]] int calls() const;

    std::unique_ptr<QTemporaryDir> mFolder;
};

void TstRtfSafety::init()
{
    mFolder = std::make_unique<QTemporaryDir>();
    tvlOptions()->setFilePath(path(u"options.ini"_s));
}

QByteArray TstRtfSafety::program(const QByteArray &script)
{
    QFile file(path(u"inspector"_s));
    if (!file.open(QIODevice::WriteOnly))
        qFatal("could not write the program");
    file.write("#!/bin/sh\necho \"$@\" >> \"" + path(u"calls"_s).toUtf8() + "\"\n" + script + '\n');
    file.close();
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return file.fileName().toUtf8();
}

QString TstRtfSafety::file(const QString &name)
{
    (void)TVLCoreUtil::WriteBinaryFile("{\\rtf1 x}", path(name), nullptr);
    return path(name);
}

int TstRtfSafety::calls() const
{
    return int(TVLCoreUtil::ReadBinaryFile(path(u"calls"_s)).count('\n'));
}

void TstRtfSafety::onlyFilesOfTheSuffixAreLookedThrough()
{
    const EnvironmentValue inspector("TAVEL_RTFI", program("exit 1"));
    QVERIFY(TVLTextTransform::isRtfSafeToLoad(file(u"a.RTF"_s), false));
    QVERIFY(TVLTextTransform::isRtfSafeToLoad(file(u"a.txt"_s), false));
    QVERIFY(TVLTextTransform::isRtfSafeToLoad(path(u"missing.doc"_s), false));
    QCOMPARE(calls(), 0);
}

void TstRtfSafety::aMissingFileIsNotSafeAndNotTold()
{
    TVLUnattendedMessageBoxes boxes;
    const EnvironmentValue inspector("TAVEL_RTFI", program("exit 0"));
    QVERIFY(!TVLTextTransform::isRtfSafeToLoad(path(u"a.rtf"_s), true));
    QVERIFY(boxes.boxes().isEmpty());
    QVERIFY(TVLTextTransform::isRtfSafeToLoad(file(u"a.rtf"_s), true));
}

void TstRtfSafety::withoutTheProgramAllIsSafe()
{
    const EnvironmentValue inspector("TAVEL_RTFI", "/no/such/program");
    QVERIFY(TVLTextTransform::isRtfSafeToLoad(file(u"a.rtf"_s), false));
}

void TstRtfSafety::aSoundFileIsSafe()
{
    TVLUnattendedMessageBoxes boxes;
    const EnvironmentValue inspector("TAVEL_RTFI", program("pwd >> \"$0.place\""));
    QVERIFY(TVLTextTransform::isRtfSafeToLoad(file(u"a file.rtf"_s), false));
    QVERIFY(boxes.boxes().isEmpty());
    QCOMPARE(TVLCoreUtil::ReadBinaryFile(path(u"calls"_s)), path(u"a file.rtf"_s).toUtf8() + '\n');
    QCOMPARE(
        QDir(QString::fromUtf8(TVLCoreUtil::ReadBinaryFile(path(u"inspector.place"_s)).trimmed()))
            .canonicalPath(),
        QDir(mFolder->path()).canonicalPath());
}

void TstRtfSafety::anyNameAndRelativePathsReachTheProgram()
{
    const EnvironmentValue inspector("TAVEL_RTFI", program("test -f \"$1\""));
    QVERIFY(TVLTextTransform::isRtfSafeToLoad(file(u"a \"quoted\" name.rtf"_s), false));
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(mFolder->path()));
    (void)file(u"relative.rtf"_s);
    const bool isSafe = TVLTextTransform::isRtfSafeToLoad(u"relative.rtf"_s, false);
    QVERIFY(QDir::setCurrent(before));
    QVERIFY(isSafe);
}

void TstRtfSafety::errorsAreAskedAbout()
{
    TVLUnattendedMessageBoxes boxes;
    const EnvironmentValue inspector("TAVEL_RTFI", program("exit 1"));
    const QString rtf = file(u"a.rtf"_s);
    QVERIFY(!TVLTextTransform::isRtfSafeToLoad(rtf, false));
    const auto shown = boxes.takeBoxes();
    QCOMPARE(shown.size(), 1);
    QCOMPARE(shown.constFirst().title, u"RTF Reader Error"_s);
    QCOMPARE(
        shown.constFirst().text,
        u"There were rtf errors in the following file: '%1'\n\nIf loaded, this file might cause problems and potentially crash Tavelinor. If possible, it would be safer to open the file in its native application and copy and paste the text into a plain text editor - such as 'Notepad' to remove poorly formed rtf. The text in Notepad can then be pasted into Tavelinor; all formatting will be lost, but the text will be clean and safe.\n If you continue to load the file, Tavelinor will load as much rtf as possible, but note that it may not include the entire text of the file. \n\nDo you still want to try and load the RTF file?"_s
            .arg(rtf));
    QCOMPARE(shown.constFirst().icon, QMessageBox::Question);
    QCOMPARE(shown.constFirst().standardButtons, QMessageBox::Yes | QMessageBox::No);
    QCOMPARE(shown.constFirst().button, QMessageBox::No);
    boxes.setAnswer(QMessageBox::Yes);
    QVERIFY(TVLTextTransform::isRtfSafeToLoad(rtf, false));
}

void TstRtfSafety::theQuestionComesAgainUnlessTheAnswerIsRemembered()
{
    TVLUnattendedMessageBoxes boxes;
    boxes.setAnswer(QMessageBox::Yes);
    const EnvironmentValue inspector("TAVEL_RTFI", program("exit 1"));
    const QString rtf = file(u"a.rtf"_s);
    QVERIFY(TVLTextTransform::isRtfSafeToLoad(rtf, false));
    QVERIFY(TVLTextTransform::isRtfSafeToLoad(rtf, false));
    QCOMPARE(boxes.takeBoxes().size(), 2);
    QVERIFY(TVLTextTransform::isRtfSafeToLoad(rtf, true));
    QCOMPARE(boxes.takeBoxes().size(), 1);
    boxes.setAnswer(QMessageBox::No);
    QVERIFY(TVLTextTransform::isRtfSafeToLoad(rtf, true));
    QVERIFY(TVLTextTransform::isRtfSafeToLoad(rtf, false));
    QCOMPARE(boxes.takeBoxes().size(), 0);
    QCOMPARE(calls(), 3);
}

void TstRtfSafety::aProgramThatDiesIsTold()
{
    TVLUnattendedMessageBoxes boxes;
    const EnvironmentValue inspector("TAVEL_RTFI", program("kill -9 $$"));
    const QString rtf = file(u"a.rtf"_s);
    for (int i = 0; i < 2; ++i) {
        QVERIFY(!TVLTextTransform::isRtfSafeToLoad(rtf, false));
        const auto shown = boxes.takeBoxes();
        QCOMPARE(shown.size(), 1);
        QCOMPARE(shown.constFirst().title, u"RTF Reader Error"_s);
        QCOMPARE(
            shown.constFirst().text,
            u"Tavelinor was not able to parse the rtf in the following file:\n\nFile: '%1'"_s.arg(
                rtf));
        QCOMPARE(shown.constFirst().icon, QMessageBox::Warning);
    }
}

void TstRtfSafety::anOptionHasInvalidCharactersRemoved()
{
    tvlOptions()->setValue(TVLOptions::RemoveInvalidRtfCharacters, true);
    const EnvironmentValue inspector("TAVEL_RTFI", program("exit 0"));
    QVERIFY(TVLTextTransform::isRtfSafeToLoad(file(u"a.rtf"_s), false));
    QCOMPARE(TVLCoreUtil::ReadBinaryFile(path(u"calls"_s)),
             path(u"a.rtf"_s).toUtf8() + " --removeinvalidchar\n");
}

TVL_TEST(TstRtfSafety)
#include "tst_rtfsafety.moc"
