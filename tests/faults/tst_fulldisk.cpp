#include "SmallDisk.h"
#include "TestMain.h"
#include "TestProject.h"

#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"
#include "TVLTextDocument.h"
#include "TVLUnattendedMessageBoxes.h"

#include <QFile>
#include <QTest>
#include <QTextCursor>

using namespace Qt::StringLiterals;

/** What can't be written is reported, harms nothing else, and is written once it can be. */
class TstFullDisk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void aTextThatHasNoRoomLeavesItsFileAsItWas();
    void theOtherTextsAreWrittenAndTheFailedOneIsTriedAgain();
    void anUnwritableFolderOfTextsFailsEachOfThem();
    void aLinkToADeviceIsNotWritten();
};

namespace {

constexpr qint64 DiskBytes = 1'000'000;
constexpr qint64 RoomForSmallTexts = 100'000;
constexpr int LargeText = 400'000;

/** A project with three chapters, saved. */
class ThreeChapters
{
public:
    explicit ThreeChapters(const TestProject &project)
        : mModel(project.create())
    {
        const QModelIndex draft = mModel->draftFolder();
        mModel->insertRows(0, 3 - mModel->rowCount(draft), draft);
        for (int row = 0; row < 3; ++row) {
            mModel->setTitle(chapter(row), u"Chapter %1"_s.arg(row + 1));
            setText(row, u"The first text of chapter %1."_s.arg(row + 1));
        }
        mModel->save(true);
    }

    [[nodiscard]] TVLProjectModel *model() const { return mModel.get(); }
    [[nodiscard]] QModelIndex chapter(int row) const
    {
        return mModel->index(row, 0, mModel->draftFolder());
    }
    [[nodiscard]] QString fileOf(int row) const
    {
        return TVLProjectFolderFormat::filesDocsNodeTypeFilePath(
            mModel->path().absolutePath(), mModel->nodeIdentity(chapter(row)), TVL::MainText);
    }
    void setText(int row, const QString &text) const
    {
        TVLTextDocument *document = mModel->referenceText(chapter(row));
        QTextCursor cursor(document);
        cursor.select(QTextCursor::Document);
        cursor.insertText(text);
        mModel->dereferenceItem(document);
    }
    [[nodiscard]] QString idOf(int row) const
    {
        return QString::number(mModel->nodeIdentity(chapter(row)));
    }

private:
    TestModel mModel;
};

QByteArray contentOf(const QString &filePath)
{
    QFile file(filePath);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString failureOf(const ThreeChapters &chapters, int row, const QString &reason)
{
    return u"Could not save project document 'Chapter %1'\nFailed saving text for document with id: %2 \nError: '%3'"_s
        .arg(QString::number(row + 1), chapters.idOf(row), reason);
}

} // namespace

void TstFullDisk::init()
{
    const QByteArray test = QTest::currentTestFunction();
    if (test != "aLinkToADeviceIsNotWritten" && !SmallDisk::canMount())
        QSKIP("this machine lets the test mount no disk of its own");
}

void TstFullDisk::aTextThatHasNoRoomLeavesItsFileAsItWas()
{
    const TestProject project;
    SmallDisk disk(project.enclosingPath(), DiskBytes);
    const ThreeChapters chapters(project);
    const QByteArray before = contentOf(chapters.fileOf(1));
    QVERIFY(before.contains("The first text of chapter 2."));
    disk.fillUpTo(RoomForSmallTexts);
    chapters.setText(1, QString(LargeText, u'x'));

    const TVLUnattendedMessageBoxes boxes;
    QVERIFY(!chapters.model()->save(true));
    QCOMPARE(contentOf(chapters.fileOf(1)), before);
}

void TstFullDisk::theOtherTextsAreWrittenAndTheFailedOneIsTriedAgain()
{
    const TestProject project;
    SmallDisk disk(project.enclosingPath(), DiskBytes);
    const ThreeChapters chapters(project);
    disk.fillUpTo(RoomForSmallTexts);
    chapters.setText(0, u"A second text."_s);
    chapters.setText(1, QString(LargeText, u'x'));
    chapters.setText(2, u"Another second text."_s);

    TVLUnattendedMessageBoxes boxes;
    QStringList errors;
    QVERIFY(!chapters.model()->saveChanges(&errors));
    QCOMPARE(errors, {failureOf(chapters, 1, qt_error_string(ENOSPC))});
    QCOMPARE(boxes.boxes().size(), 1);
    QCOMPARE(boxes.boxes().constFirst().title, u"Project Writer");
    QVERIFY(boxes.boxes().constFirst().informativeText.startsWith(errors.constFirst()));
    QVERIFY(contentOf(chapters.fileOf(0)).contains("A second text."));
    QVERIFY(contentOf(chapters.fileOf(2)).contains("Another second text."));

    disk.empty();
    QVERIFY(chapters.model()->saveChanges(&errors));
    QVERIFY(contentOf(chapters.fileOf(1)).contains(QByteArray(LargeText, 'x')));
    const TestModel reopened = project.open();
    QVERIFY(reopened);
    QCOMPARE(reopened->documentPlainText(reopened->index(1, 0, reopened->draftFolder()), false),
             QString(LargeText, u'x'));
}

void TstFullDisk::anUnwritableFolderOfTextsFailsEachOfThem()
{
    const TestProject project;
    const ThreeChapters chapters(project);
    for (int row = 0; row < 3; ++row)
        chapters.setText(row, u"A second text of %1."_s.arg(row + 1));
    QStringList errors;
    {
        const UnwritableFolder folder(project.path(u"Files/Docs"_s));
        const TVLUnattendedMessageBoxes boxes;
        QVERIFY(!chapters.model()->saveChanges(&errors));
    }
    QCOMPARE(errors.size(), 3);
    for (int row = 0; row < 3; ++row) {
        QCOMPARE(errors.at(row), failureOf(chapters, row, qt_error_string(EROFS)));
        QVERIFY(contentOf(chapters.fileOf(row)).contains("The first text"));
    }
    QVERIFY(chapters.model()->saveChanges(&errors));
    QVERIFY(contentOf(chapters.fileOf(2)).contains("A second text of 3."));
}

void TstFullDisk::aLinkToADeviceIsNotWritten()
{
    const TestProject project;
    const ThreeChapters chapters(project);
    const QString filePath = chapters.fileOf(1);
    QVERIFY(QFile::remove(filePath));
    QVERIFY(QFile::link(u"/dev/full"_s, filePath));
    chapters.setText(0, u"A second text."_s);
    chapters.setText(1, u"Nobody takes this."_s);

    QStringList errors;
    {
        const TVLUnattendedMessageBoxes boxes;
        QVERIFY(!chapters.model()->saveChanges(&errors));
    }
    QCOMPARE(errors,
             {failureOf(chapters, 1,
                        u"'%1' is a link, and what it leads to is not written"_s.arg(filePath))});
    QVERIFY(contentOf(chapters.fileOf(0)).contains("A second text."));

    QVERIFY(QFile::remove(filePath));
    QVERIFY(chapters.model()->saveChanges(&errors));
    QVERIFY(contentOf(filePath).contains("Nobody takes this."));
}

// A name space of its own can be entered only before there are threads.
TVL_TEST_PREPARED(TstFullDisk, [] { SmallDisk::enterPrivateNameSpace(); })
#include "tst_fulldisk.moc"
