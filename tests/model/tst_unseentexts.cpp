#include "ModelChecks.h"
#include "OrdinaryRights.h"
#include "TestMain.h"
#include "TestProject.h"

#include "TVLCollectionMetaData.h"
#include "TVLProjectFolderFormat.h"
#include "TVLSearchIndex.h"
#include "TVLTextCommentLink.h"
#include "TVLTextDocument.h"
#include "TVLTextRange.h"
#include "TVLUnattendedMessageBoxes.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>
#include <QTextCursor>

#include <functional>

using namespace Qt::StringLiterals;

/** Texts that can't be seen for a while are not texts that were never written. */
class TstUnseenTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aTextThatIsOutOfSightIsNeverWrittenOver_data();
    void aTextThatIsOutOfSightIsNeverWrittenOver();
    void aTextThatWasNeverWrittenIsEmptyAndCanBeWritten_data();
    void aTextThatWasNeverWrittenIsEmptyAndCanBeWritten();
    void aFolderThatWentAfterTheFirstSaveIsMissed();
    void readingATextMakesNoFolder();
    void readingMakesNoFolder_data();
    void readingMakesNoFolder();
    void commentsOutOfSightAreNeverWrittenOver();
    void aSaveIsNotToldOfCommentsThatAreCutOff();
    void snapshotsOutOfSightAreNotLostInAMerge();
    void aCopyOfWhatIsOutOfSightFails_data();
    void aCopyOfWhatIsOutOfSightFails();
};

namespace {

const QString Docs = u"Files/Docs"_s;

/** A project with one text, closed; the path of the text in it. */
QString makeProjectWithText(const TestProject &project)
{
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    TVLTextDocument *text = model->referenceText(index);
    QTextCursor(text).insertText(u"Old words"_s);
    model->dereferenceItem(text);
    if (!model->save(true))
        qFatal("the project could not be saved");
    const QString path = Docs + u"/%1.rtf"_s.arg(model->nodeIdentity(index));
    model->prepareToDestroy();
    return path;
}

/** Something that is done to a project, and undone when the object goes. */
using Hide = std::function<std::function<void()>(const TestProject &project)>;

Hide takingRightsOf(const QString &relativePath)
{
    return [=](const TestProject &project) {
        auto reduced = std::make_shared<ReducedPermissions>(project.path(relativePath),
                                                            ReducedPermissions::None);
        return [reduced]() mutable { reduced.reset(); };
    };
}

Hide movingAway(const QString &relativePath)
{
    return [=](const TestProject &project) {
        const QString path = QDir::cleanPath(project.path(relativePath));
        const QString away = path + u".away"_s;
        if (!QFile::rename(path, away))
            qFatal("%s could not be moved", qPrintable(path));
        return [=] {
            if (!QFile::rename(away, path))
                qFatal("%s could not be moved back", qPrintable(path));
        };
    };
}

/** Types into the first text; whether it takes what is typed. */
bool typeIntoText(TVLProjectModel *model)
{
    TVLTextDocument *text = model->referenceText(firstText(model));
    const bool isWritable = !text->isReadOnly();
    QTextCursor(text).insertText(u"New words "_s);
    model->dereferenceItem(text);
    return isWritable;
}

} // namespace

Q_DECLARE_METATYPE(Hide)

void TstUnseenTexts::aTextThatIsOutOfSightIsNeverWrittenOver_data()
{
    QTest::addColumn<Hide>("hide");
    QTest::newRow("no right to look into the texts' folder") << takingRightsOf(Docs);
    QTest::newRow("no right to look into Files") << takingRightsOf(u"Files"_s);
    QTest::newRow("no right to look into the project") << takingRightsOf(QString());
    QTest::newRow("the texts' folder is away") << movingAway(Docs);
    QTest::newRow("Files is away") << movingAway(u"Files"_s);
    QTest::newRow("the project is away") << movingAway(QString());
}

void TstUnseenTexts::aTextThatIsOutOfSightIsNeverWrittenOver()
{
    QFETCH(Hide, hide);
    const TestProject project;
    const QString path = makeProjectWithText(project);
    const QByteArray before = project.readFile(path);
    QVERIFY(before.contains("Old words"));

    TVLUnattendedMessageBoxes boxes;
    const auto model = project.open();
    QVERIFY(model);
    const std::function<void()> show = hide(project);
    const TVLTextDocument *text = model->referenceText(firstText(model.get()));
    QVERIFY(text->isReadOnly());
    QCOMPARE(boxes.boxes().size(), 1);
    show();

    QVERIFY(!typeIntoText(model.get()));
    QVERIFY(model->save(true));
    model->prepareToDestroy();
    QCOMPARE(project.readFile(path), before);
}

void TstUnseenTexts::aTextThatWasNeverWrittenIsEmptyAndCanBeWritten_data()
{
    QTest::addColumn<bool>("withFolder");
    QTest::newRow("its file isn't there") << false;
    QTest::newRow("the project never had a folder of texts") << true;
}

void TstUnseenTexts::aTextThatWasNeverWrittenIsEmptyAndCanBeWritten()
{
    QFETCH(bool, withFolder);
    const TestProject project;
    const QString path = makeProjectWithText(project);
    QVERIFY(withFolder ? QDir(project.path(Docs)).removeRecursively()
                       : QFile::remove(project.path(path)));
    TVLUnattendedMessageBoxes boxes;
    const auto model = project.open();
    QVERIFY(typeIntoText(model.get()));
    QVERIFY(model->save(true));
    QVERIFY(project.readFile(path).contains("New words"));
    QCOMPARE(boxes.boxes().size(), 0);
}

void TstUnseenTexts::aFolderThatWentAfterTheFirstSaveIsMissed()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex second = addItem(model.get(), model->draftFolder(), TVL::Text);
    QVERIFY(typeIntoText(model.get()));
    QVERIFY(model->save(true));

    TVLUnattendedMessageBoxes boxes;
    const std::function<void()> show = movingAway(Docs)(project);
    QVERIFY(model->referenceText(second)->isReadOnly());
    QCOMPARE(boxes.boxes().size(), 1);
    show();
}

void TstUnseenTexts::readingATextMakesNoFolder()
{
    const TestProject project;
    makeProjectWithText(project);
    const auto model = project.open();
    QVERIFY(QDir(project.path(Docs)).removeRecursively());
    TVLUnattendedMessageBoxes boxes;
    QVERIFY(model->referenceText(firstText(model.get()))->isReadOnly());
    QVERIFY(!QFileInfo::exists(project.path(Docs)));
}

void TstUnseenTexts::readingMakesNoFolder_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("texts") << Docs;
    QTest::newRow("notes of the project") << u"Files/ProjectNotes"_s;
    QTest::newRow("snapshots") << u"Snapshots"_s;
    QTest::newRow("icons") << u"Icons"_s;
    QTest::newRow("mobile copy") << u"Mobile"_s;
}

void TstUnseenTexts::readingMakesNoFolder()
{
    QFETCH(const QString, folder);
    const TestProject project;
    makeProjectWithText(project);
    QVERIFY(QDir(project.path(folder)).removeRecursively());
    const auto model = project.open();
    const QModelIndex item = firstText(model.get());
    TVLCollectionMetaData search;
    search.mType = TVL::SavedSearchCollection;
    search.mSearchText = u"words"_s;
    (void)model->collectionIndexes(search);
    model->searchIndex()->updateIndexProperties(item, {TVL::TextProperty}, true);
    QVERIFY(model->snapshots(item).isEmpty());
    QVERIFY(model->customIconNames().isEmpty());
    QVERIFY(!model->projectNoteIdentities().isEmpty());
    (void)model->indexCardPixmap(item);
    (void)model->wordCount(item, false, false);
    QVERIFY(!QFileInfo::exists(project.path(folder)));
}

void TstUnseenTexts::commentsOutOfSightAreNeverWrittenOver()
{
    const TestProject project;
    const QString path = makeProjectWithText(project);
    const auto model = project.open();
    const QString commentsPath = QString(path).replace(u".rtf"_s, u".comments"_s);
    QVERIFY(QFile::link(u"nowhere"_s, project.path(commentsPath)));
    TVLUnattendedMessageBoxes boxes;
    const TVLTextDocument *text = model->referenceText(firstText(model.get()));
    QCOMPARE(boxes.boxes().size(), 1);
    QVERIFY(text->areCommentsReadOnly());
    QVERIFY(typeIntoText(model.get()));
    QVERIFY(model->save(true));
    QCOMPARE(QFile::symLinkTarget(project.path(commentsPath)),
             QFileInfo(project.path(Docs)).absoluteFilePath() + u"/nowhere"_s);
    QVERIFY(project.readFile(path).contains("New words"));
}

void TstUnseenTexts::aSaveIsNotToldOfCommentsThatAreCutOff()
{
    const TestProject project;
    QString path;
    {
        const auto model = project.create();
        const QModelIndex index = firstText(model.get());
        typeText(model.get(), index, u"Old words"_s);
        for (int i = 0; i < 2; ++i) {
            const TVLTextCommentLink comment(QString::number(i), "{\\rtf1 remark}");
            QVERIFY(model->setInspectorNote(index, {4 * i, 3}, comment));
        }
        path = Docs + u"/%1.comments"_s.arg(model->nodeIdentity(index));
        QVERIFY(model->save(true));
    }
    const QByteArray whole = project.readFile(path);
    const QByteArray cut = whole.first(whole.indexOf("</Comment>") + 10);
    project.writeFile(path, cut);

    TVLUnattendedMessageBoxes boxes;
    const auto model = project.open();
    const QModelIndex index = firstText(model.get());
    QCOMPARE(model->inspectorNotesToPlainText(index), QStringList({u"remark"_s, QString()}));
    QCOMPARE(boxes.takeBoxes().size(), 1);
    for (int i = 0; i < 2; ++i) {
        QVERIFY(typeIntoText(model.get()));
        QVERIFY(model->save(true));
        QVERIFY(model->projectNode(index)->mTextDocument->isSaved());
    }
    QCOMPARE(boxes.boxes().size(), 0);
    QCOMPARE(project.readFile(path), cut);
}

void TstUnseenTexts::snapshotsOutOfSightAreNotLostInAMerge()
{
    const TestProject project;
    {
        const auto model = project.create();
        QVERIFY(typeIntoText(model.get()));
        QVERIFY(model->addSnapshot(firstText(model.get()), u"First"_s));
        addItem(model.get(), model->draftFolder(), TVL::Text);
        QVERIFY(model->save(true));
        model->prepareToDestroy();
    }
    TestModel model;
    {
        const ReducedPermissions hidden(project.path(u"Snapshots"_s), ReducedPermissions::None);
        model = project.open();
    }
    const QModelIndex first = firstText(model.get());
    QVERIFY(!model->hasSnapshots(first));
    const QModelIndex survivor = model->mergeIndexes({first.siblingAtRow(1), first});
    QCOMPARE(model->snapshots(survivor).size(), 1);
    QVERIFY(model->hasSnapshots(survivor));
}

void TstUnseenTexts::aCopyOfWhatIsOutOfSightFails_data()
{
    QTest::addColumn<Hide>("hide");
    QTest::addColumn<bool>("isCopied");
    const Hide nothing = [](const TestProject &) { return [] {}; };
    QTest::newRow("nothing out of sight") << nothing << true;
    QTest::newRow("no right to look into the texts' folder") << takingRightsOf(Docs) << false;
    QTest::newRow("no right to look into Snapshots") << takingRightsOf(u"Snapshots"_s) << false;
    QTest::newRow("no right to look into its snapshots")
        << takingRightsOf(u"Snapshots/3.snapshots"_s) << false;
}

void TstUnseenTexts::aCopyOfWhatIsOutOfSightFails()
{
    QFETCH(const Hide, hide);
    QFETCH(const bool, isCopied);
    const TestProject project;
    const TestProject target;
    const auto model = project.create();
    QVERIFY(typeIntoText(model.get()));
    QVERIFY(model->addSnapshot(firstText(model.get()), u"First"_s));
    QVERIFY(model->save(true));
    QCOMPARE(model->nodeIdentity(firstText(model.get())), 3);
    const std::function<void()> show = hide(project);
    QCOMPARE(TVLProjectFolderFormat::cloneProjectFiles(project.path(), 3, target.path(), 9),
             isCopied);
    show();
}

TVL_TEST_PREPARED(TstUnseenTexts, dropRightsOfTheSuperuser)
#include "tst_unseentexts.moc"
