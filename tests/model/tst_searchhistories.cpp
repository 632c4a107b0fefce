#include "ModelChecks.h"
#include "OrdinaryRights.h"
#include "TVLProjectChecksums.h"
#include "TVLSearchIndex.h"
#include "TVLTextCommentLink.h"
#include "TVLTextDocument.h"
#include "TVLTextRange.h"
#include "TVLUnattendedMessageBoxes.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <QTextCursor>
#include <QUuid>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

/** Searches in one session after what happened in others: what is kept of a text is found only as
 * long as it is that of its file, whoever changed which file when, and wherever a session ended. */
class TstSearchHistories : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsOutOfSightForOneSessionIsFoundInTheNext_data();
    void whatIsOutOfSightForOneSessionIsFoundInTheNext();
    void aTextThatIsChangedBackIsFoundAsItIs_data();
    void aTextThatIsChangedBackIsFoundAsItIs();
    void unsavedWordsAreGoneWithTheirSession_data();
    void unsavedWordsAreGoneWithTheirSession();
    void savedWordsAreFoundHoweverASessionEnds_data();
    void savedWordsAreFoundHoweverASessionEnds();
    void savingHashesSavesTheirTextsFirst();
    void commentsAreFoundAsTheTextKnowsThem();
    void aTextThatHasGoneIsNotFound();
    void anIdIsNotVouchedForByTheHashOfItsFormerItem();
    void aRefreshedTextHasTheHashOfItsFile();
    void aTextThatIsNoFilesHasNoHash();

    void aSaveTellsTheOtherTextsOfTheItemToo();
    void aSaveLeavesOutWhatCouldNotBeRead();
    void aSaveLeavesOutWhatCouldNotBeWritten();
    void aCleanTextThatOthersHaveChangedSinceGetsNoHash();
    void anItemWithoutTextIsKnownToHaveNone();
    void customMetaDataAreThoseOfTheBinder();
};

namespace {

using Ids = QList<int>;

const QString TextsFile = u"Files/search.indexes"_s;
const QString HashesFile = u"Files/Docs/docs.checksum"_s;
const QString DocsFolder = u"Files/Docs"_s;
const QString LanternFile = u"Files/Docs/4.rtf"_s;
const QString MeadowFile = u"Files/Docs/5.rtf"_s;

TVLCollectionMetaData wordSearch(const QString &word)
{
    TVLCollectionMetaData search;
    search.mType = TVL::SavedSearchCollection;
    search.mSearchText = word;
    return search;
}

Ids idsWith(const TVLProjectModel *model, const QString &word)
{
    Ids ids = model->nodeIdentityList(model->collectionIndexes(wordSearch(word)));
    std::sort(ids.begin(), ids.end());
    return ids;
}

/** What idsWith() gives in a session of its own, which leaves nothing behind. */
Ids idsWithInNewSession(const TestProject &project, const QString &word)
{
    const auto model = project.open();
    return idsWith(model.get(), word);
}

/** A project on disk with the texts "harbour" in item 3, "lantern" in 4 and "meadow" in 5, closed
 * after all of it was searched. */
void makeSearchedProject(const TestProject &project)
{
    const auto model = project.create();
    typeTextForGood(model.get(), firstText(model.get()), u"harbour"_s);
    for (const QString &text : {u"lantern"_s, u"meadow"_s})
        typeTextForGood(model.get(), addItem(model.get(), model->draftFolder(), TVL::Text), text);
    QVERIFY(model->save(true));
    QCOMPARE(idsWith(model.get(), u"lantern"_s), Ids{4});
    model->prepareToDestroy();
}

void replaceWord(const TestProject &project, const QString &file, const QByteArray &from,
                 const QByteArray &to)
{
    QByteArray content = project.readFile(file);
    QVERIFY(content.contains(from));
    project.writeFile(file, content.replace(from, to));
}

void searchAndClose(const TestProject &project, const QString &word)
{
    const auto model = project.open();
    (void)idsWith(model.get(), word);
    model->prepareToDestroy();
}

TVLTextCommentLink newComment(const QString &text)
{
    return TVLTextCommentLink(QUuid::createUuid().toString(QUuid::WithoutBraces),
                              "{\\rtf1 " + text.toLatin1() + "}");
}

/** The properties of an item that a search would ask for, in their order. */
QList<int> staleTexts(const TVLProjectModel *model, int id)
{
    const auto stale = model->searchIndex()->notConfirmedIndexes().value(id);
    QList<int> properties(stale.cbegin(), stale.cend());
    std::sort(properties.begin(), properties.end());
    return properties;
}

/** How a session ends that isn't closed. */
using End = std::function<void(TVLProjectModel *model)>;

void addEnds()
{
    QTest::addColumn<End>("end");
    QTest::newRow("nothing is saved") << End([](TVLProjectModel *) {});
    QTest::newRow("the texts are saved")
        << End([](TVLProjectModel *model) { model->saveSearchIndex(false); });
    QTest::newRow("the hashes are saved")
        << End([](TVLProjectModel *model) { model->saveChecksums(false); });
    QTest::newRow("texts and hashes are saved") << End([](TVLProjectModel *model) {
        model->saveSearchIndex(false);
        model->saveChecksums(false);
    });
    QTest::newRow("hashes and texts are saved") << End([](TVLProjectModel *model) {
        model->saveChecksums(true);
        model->saveSearchIndex(true);
    });
    QTest::newRow("all is made anew")
        << End([](TVLProjectModel *model) { model->rebuildSearchIndexes(false, nullptr); });
}

} // namespace

// --- A hash belongs to a text

void TstSearchHistories::whatIsOutOfSightForOneSessionIsFoundInTheNext_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("isAway");
    QTest::newRow("a text is away") << LanternFile << true;
    QTest::newRow("a text can't be read") << LanternFile << false;
    QTest::newRow("the texts' folder is away") << DocsFolder << true;
    QTest::newRow("the texts' folder can't be looked into") << DocsFolder << false;
    QTest::newRow("the hashes are away") << HashesFile << true;
    QTest::newRow("the hashes can't be read") << HashesFile << false;
    QTest::newRow("the index is away") << TextsFile << true;
    QTest::newRow("the index can't be read") << TextsFile << false;
}

void TstSearchHistories::whatIsOutOfSightForOneSessionIsFoundInTheNext()
{
    QFETCH(const QString, path);
    QFETCH(const bool, isAway);
    const TestProject project;
    makeSearchedProject(project);
    const TVLUnattendedMessageBoxes boxes;
    const QString away = project.enclosingPath() + u"/away"_s;
    for (int session = 0; session < 2; ++session) {
        if (isAway) {
            QVERIFY(QFile::rename(project.path(path), away));
            searchAndClose(project, u"lantern"_s);
            // In place of what was made anew.
            (void)QFile::remove(project.path(path));
            QVERIFY(QFile::rename(away, project.path(path)));
        } else {
            const ReducedPermissions none(project.path(path), ReducedPermissions::None);
            searchAndClose(project, u"lantern"_s);
        }
        const auto model = project.open();
        QCOMPARE(idsWith(model.get(), u"lantern"_s), Ids{4});
        QCOMPARE(idsWith(model.get(), u"harbour"_s), Ids{3});
        model->prepareToDestroy();
    }
}

void TstSearchHistories::aTextThatIsChangedBackIsFoundAsItIs_data()
{
    addEnds();
    QTest::newRow("it is closed") << End([](TVLProjectModel *model) { model->prepareToDestroy(); });
}

void TstSearchHistories::aTextThatIsChangedBackIsFoundAsItIs()
{
    QFETCH(const End, end);
    const TestProject project;
    makeSearchedProject(project);
    const QByteArray before = project.readFile(LanternFile);
    replaceWord(project, LanternFile, "lantern", "lighthouse");
    {
        const auto model = project.open();
        QCOMPARE(idsWith(model.get(), u"lighthouse"_s), Ids{4});
        end(model.get());
    }
    QCOMPARE(idsWithInNewSession(project, u"lighthouse"_s), Ids{4});
    project.writeFile(LanternFile, before);
    QCOMPARE(idsWithInNewSession(project, u"lighthouse"_s), Ids());
    QCOMPARE(idsWithInNewSession(project, u"lantern"_s), Ids{4});
}

void TstSearchHistories::unsavedWordsAreGoneWithTheirSession_data()
{
    addEnds();
    QTest::newRow("there were no hashes") << End([](TVLProjectModel *model) {
        QVERIFY(QFile::remove(model->path().filePath(HashesFile)));
        model->saveSearchIndex(false);
    });
}

void TstSearchHistories::unsavedWordsAreGoneWithTheirSession()
{
    QFETCH(const End, end);
    const TestProject project;
    makeSearchedProject(project);
    {
        const auto model = project.open();
        typeText(model.get(), model->index(4), u"unsaved "_s);
        // These have no files yet.
        typeText(model.get(), model->index(4), u"unwritten"_s, TVL::NotesText);
        typeText(model.get(), model->index(5), u"unwritten"_s, TVL::SynopsisText);
        QVERIFY(model->setInspectorNote(model->index(3), {0, 4}, newComment(u"remark"_s)));
        QCOMPARE(idsWith(model.get(), u"unsaved lantern"_s), Ids{4});
        QCOMPARE(idsWith(model.get(), u"unwritten"_s), (Ids{4, 5}));
        QCOMPARE(idsWith(model.get(), u"remark"_s), Ids{3});
        end(model.get());
    }
    const auto model = project.open();
    for (const QString &word : {u"unsaved"_s, u"unwritten"_s, u"remark"_s})
        QCOMPARE(idsWith(model.get(), word), Ids());
    QCOMPARE(idsWith(model.get(), u"lantern"_s), Ids{4});
    QCOMPARE(idsWith(model.get(), u"harbour"_s), Ids{3});
}

void TstSearchHistories::savedWordsAreFoundHoweverASessionEnds_data()
{
    addEnds();
}

void TstSearchHistories::savedWordsAreFoundHoweverASessionEnds()
{
    QFETCH(const End, end);
    const TestProject project;
    makeSearchedProject(project);
    const QByteArray before = project.readFile(LanternFile);
    {
        const auto model = project.open();
        typeText(model.get(), model->index(4), u"saved "_s);
        typeText(model.get(), model->index(5), u"saved"_s, TVL::SynopsisText);
        QVERIFY(model->setInspectorNote(model->index(3), {0, 4}, newComment(u"remark"_s)));
        QVERIFY(model->save());
        end(model.get());
    }
    QCOMPARE(idsWithInNewSession(project, u"saved"_s), (Ids{4, 5}));
    QCOMPARE(idsWithInNewSession(project, u"remark"_s), Ids{3});
    // Others bring back what was there.
    project.writeFile(LanternFile, before);
    QVERIFY(QFile::remove(project.path(u"Files/Docs/5_synopsis.txt"_s)));
    QVERIFY(QFile::remove(project.path(u"Files/Docs/3.comments"_s)));
    QCOMPARE(idsWithInNewSession(project, u"saved"_s), Ids());
    QCOMPARE(idsWithInNewSession(project, u"remark"_s), Ids());
    QCOMPARE(idsWithInNewSession(project, u"lantern"_s), Ids{4});
}

void TstSearchHistories::savingHashesSavesTheirTextsFirst()
{
    const TestProject project;
    makeSearchedProject(project);
    {
        const auto model = project.open();
        typeText(model.get(), model->index(4), u"saved "_s);
        QVERIFY(model->save());
        model->saveChecksums(false);
        QVERIFY(!model->searchIndex()->isModified());
        QVERIFY(!model->checksums()->isModified());
    }
    const auto model = project.open();
    QCOMPARE(staleTexts(model.get(), 4), QList<int>());
    QCOMPARE(idsWith(model.get(), u"saved"_s), Ids{4});
}

void TstSearchHistories::commentsAreFoundAsTheTextKnowsThem()
{
    const TestProject project;
    makeSearchedProject(project);
    {
        const auto model = project.open();
        QVERIFY(model->setInspectorNote(model->index(4), {0, 4}, newComment(u"remark"_s)));
        model->prepareToDestroy();
    }
    const QByteArray before = project.readFile(LanternFile);
    // The words that the comment stands at are gone with the mark at them.
    project.writeFile(LanternFile, "{\\rtf1 lighthouse}");
    searchAndClose(project, u"lighthouse"_s);
    QCOMPARE(idsWithInNewSession(project, u"remark"_s), Ids());
    project.writeFile(LanternFile, before);
    QCOMPARE(idsWithInNewSession(project, u"remark"_s), Ids{4});
}

void TstSearchHistories::aTextThatHasGoneIsNotFound()
{
    const TestProject project;
    makeSearchedProject(project);
    replaceWord(project, LanternFile, "lantern", "lighthouse");
    searchAndClose(project, u"lighthouse"_s);
    QVERIFY(QFile::remove(project.path(LanternFile)));
    for (int session = 0; session < 2; ++session) {
        QCOMPARE(idsWithInNewSession(project, u"lighthouse"_s), Ids());
        searchAndClose(project, u"lighthouse"_s);
    }
}

void TstSearchHistories::anIdIsNotVouchedForByTheHashOfItsFormerItem()
{
    const TestProject project;
    makeSearchedProject(project);
    const QByteArray file = project.readFile(MeadowFile);
    {
        const auto model = project.open();
        QVERIFY(model->removeIndex(model->index(5)));
        model->prepareToDestroy();
    }
    {
        const auto model = project.open();
        const QModelIndex item = addItem(model.get(), model->draftFolder(), TVL::Text);
        QCOMPARE(model->nodeIdentity(item), 5);
        model->prepareToDestroy();
    }
    project.writeFile(MeadowFile, file);
    QCOMPARE(idsWithInNewSession(project, u"meadow"_s), Ids{5});
}

void TstSearchHistories::aRefreshedTextHasTheHashOfItsFile()
{
    const TestProject project;
    makeSearchedProject(project);
    replaceWord(project, LanternFile, "lantern", "lighthouse");
    const auto model = project.open();
    QCOMPARE(staleTexts(model.get(), 4),
             (QList<int>{TVL::TextProperty, TVL::CustomMetaDataProperty}));
    QVERIFY(idsWith(model.get(), u"nothing"_s).isEmpty());
    QCOMPARE(model->checksums()->loadedChecksum(4, TVL::MainText),
             model->checksums()->currentHddChecksum(4, TVL::MainText));
    model->prepareToDestroy();
    // So that it needn't be read again.
    QCOMPARE(staleTexts(project.open().get(), 4), QList<int>());
}

void TstSearchHistories::aTextThatIsNoFilesHasNoHash()
{
    const TestProject project;
    makeSearchedProject(project);
    const auto model = project.open();
    const TVLProjectChecksums *checksums = model->checksums();
    typeText(model.get(), model->index(4), u"unsaved "_s);
    QVERIFY(!checksums->loadedChecksum(4, TVL::MainText).isEmpty());
    QVERIFY(idsWith(model.get(), u"nothing"_s).isEmpty());
    QVERIFY(checksums->loadedChecksum(4, TVL::MainText).isEmpty());
    QVERIFY(model->save());
    QCOMPARE(checksums->loadedChecksum(4, TVL::MainText),
             checksums->currentHddChecksum(4, TVL::MainText));
}

// --- What a save tells

void TstSearchHistories::aSaveTellsTheOtherTextsOfTheItemToo()
{
    const TestProject project;
    makeSearchedProject(project);
    {
        const auto model = project.open();
        typeText(model.get(), model->index(4), u"card"_s, TVL::SynopsisText);
        model->prepareToDestroy();
    }
    QVERIFY(QFile::remove(project.path(TextsFile)));
    auto model = project.open();
    typeText(model.get(), model->index(4), u"note"_s, TVL::NotesText);
    QVERIFY(model->save());
    QCOMPARE(staleTexts(model.get(), 4), QList<int>{TVL::CustomMetaDataProperty});
    for (const auto type : {TVL::MainText, TVL::NotesText, TVL::SynopsisText, TVL::CommentsFile})
        QVERIFY(model->checksums()->checksumsMatch(4, type));
    QVERIFY(!model->checksums()->loadedChecksum(4, TVL::MainText).isEmpty());
    QVERIFY(!model->checksums()->loadedChecksum(4, TVL::SynopsisText).isEmpty());
    model->saveAll(false);
    model = project.open();
    QCOMPARE(staleTexts(model.get(), 4), QList<int>());
    QCOMPARE(idsWith(model.get(), u"lantern"_s), Ids{4});
}

void TstSearchHistories::aSaveLeavesOutWhatCouldNotBeRead()
{
    const TestProject project;
    makeSearchedProject(project);
    project.writeFile(LanternFile, "this is no RTF");
    const TVLUnattendedMessageBoxes boxes;
    const auto model = project.open();
    typeText(model.get(), model->index(4), u"note"_s, TVL::NotesText);
    QCOMPARE(boxes.boxes().size(), 1);
    QVERIFY(model->save());
    QVERIFY(staleTexts(model.get(), 4).contains(TVL::TextProperty));
    QVERIFY(!model->checksums()->checksumsMatch(4, TVL::MainText));
    QVERIFY(!staleTexts(model.get(), 4).contains(TVL::NotesProperty));
}

void TstSearchHistories::aSaveLeavesOutWhatCouldNotBeWritten()
{
    const TestProject project;
    makeSearchedProject(project);
    const TVLUnattendedMessageBoxes boxes;
    const auto model = project.open();
    typeText(model.get(), model->index(4), u"unsaved "_s);
    typeText(model.get(), model->index(4), u"card"_s, TVL::SynopsisText);
    QVERIFY(QDir().mkpath(project.path(u"Files/Docs/4_synopsis.txt/in the way"_s)));
    QVERIFY(!model->save());
    QCOMPARE(boxes.boxes().size(), 1);
    QCOMPARE(staleTexts(model.get(), 4), QList<int>{TVL::SynopsisProperty});
    QVERIFY(model->checksums()->loadedChecksum(4, TVL::SynopsisText).isEmpty());
    QVERIFY(model->checksums()->checksumsMatch(4, TVL::MainText));
}

void TstSearchHistories::aCleanTextThatOthersHaveChangedSinceGetsNoHash()
{
    const TestProject project;
    makeSearchedProject(project);
    QVERIFY(QFile::remove(project.path(TextsFile)));
    {
        const auto model = project.open();
        typeText(model.get(), model->index(4), u"note"_s, TVL::NotesText);
        replaceWord(project, LanternFile, "lantern", "lighthouse");
        QVERIFY(model->save());
        QVERIFY(!staleTexts(model.get(), 4).contains(TVL::TextProperty));
        QVERIFY(!model->checksums()->checksumsMatch(4, TVL::MainText));
        model->saveAll(false);
    }
    QCOMPARE(idsWithInNewSession(project, u"lighthouse"_s), Ids{4});
    QCOMPARE(idsWithInNewSession(project, u"lantern"_s), Ids());
}

void TstSearchHistories::anItemWithoutTextIsKnownToHaveNone()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex item = addItem(model.get(), model->researchFolder(), TVL::Image);
    const int id = model->nodeIdentity(item);
    typeText(model.get(), item, u"card"_s, TVL::SynopsisText);
    QVERIFY(model->save());
    QVERIFY(!staleTexts(model.get(), id).contains(TVL::TextProperty));
    QVERIFY(!staleTexts(model.get(), id).contains(TVL::NotesProperty));
}

void TstSearchHistories::customMetaDataAreThoseOfTheBinder()
{
    const TestProject project;
    makeSearchedProject(project);
    {
        const auto model = project.open();
        QVERIFY(model->setCustomMetaData(model->index(4), u"pov"_s, u"keeper"_s));
        QVERIFY(model->setCustomMetaData(model->index(5), u"pov"_s, u"farmer"_s));
        model->prepareToDestroy();
    }
    {
        const auto model = project.open();
        QVERIFY(!model->searchIndex()->isModified());
        QVERIFY(model->setCustomMetaData(model->index(4), u"pov"_s, u"sailor"_s));
        QVERIFY(model->setCustomMetaData(model->index(5), u"pov"_s, QString()));
        QVERIFY(model->setCustomMetaData(model->index(3), u"pov"_s, u"fisher"_s));
        // The texts to search by aren't saved any more.
        QVERIFY(model->save());
    }
    const auto model = project.open();
    QCOMPARE(idsWith(model.get(), u"sailor"_s), Ids{4});
    QCOMPARE(idsWith(model.get(), u"fisher"_s), Ids{3});
    QCOMPARE(idsWith(model.get(), u"keeper"_s), Ids());
    QCOMPARE(idsWith(model.get(), u"farmer"_s), Ids());
    model->prepareToDestroy();
    QVERIFY(project.readFile(TextsFile).contains("sailor"));
}

TVL_TEST_PREPARED(TstSearchHistories, dropRightsOfTheSuperuser)
#include "tst_searchhistories.moc"
