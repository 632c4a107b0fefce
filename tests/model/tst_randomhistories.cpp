#include "ModelChecks.h"
#include "OrdinaryRights.h"
#include "SqlTrace.h"
#include "TVLProjectChecksums.h"
#include "TVLProjectFolderFormat.h"
#include "TVLSearchIndex.h"
#include "TVLTextCommentLink.h"
#include "TVLTextDoc.h"
#include "TVLTextDocument.h"
#include "TVLTextRange.h"
#include "TVLUnattendedMessageBoxes.h"
#include "TestMain.h"
#include "TestProject.h"
#include "TestScale.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <QTextCursor>
#include <QUuid>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

const int Histories = testCases(400);
constexpr int HistoryParts = 10;
constexpr int StepsOfAHistory = 60;
constexpr int Items = 3;
constexpr int FirstId = 3;
constexpr int Words = 12;

constexpr std::array<TVL::DocumentType, 4> FileTypes = {TVL::MainText, TVL::NotesText,
                                                        TVL::SynopsisText, TVL::CommentsFile};

QString wordOf(int number)
{
    return u"word"_s + QChar(u'a' + number);
}

/** A file of an item. */
struct ItemFile
{
    int id = 0;
    TVL::DocumentType type = TVL::MainText;

    [[nodiscard]] QString name() const
    {
        return u"Files/Docs/"_s + TVLProjectFolderFormat::documentFileNameId(id, type);
    }
};

/** The plain texts that an item's files give when nothing else is asked. */
QMap<int, QString> textsInFiles(const TestProject &project, int id)
{
    std::array<std::unique_ptr<TVLTextDocument>, 3> documents;
    const TVLProjectFolderFormat folder(project.path(), TVL::FormatVersion18);
    TVLProjectNode node({id, QUuid()}, nullptr);
    for (int type = TVL::MainText; type <= TVL::SynopsisText; ++type) {
        auto &document = documents.at(std::size_t(type));
        document =
            std::make_unique<TVLTextDocument>(nullptr, nullptr, nullptr, TVL::DocumentType(type));
        QString error;
        (void)TVLProjectFolderFormat::readDocument(project.path(), &node, document.get(), &error);
        if (!error.isEmpty())
            document->setPlainText(QString());
    }
    TVLProjectLinksAndComments extras;
    if (TVLProjectFolderFormat::parseLinksAndComments(project.path(), &node, &extras, nullptr))
        TVLTextDoc::setComments(documents[TVL::MainText].get(), extras.mComments);
    return {{TVL::TextProperty, documents[TVL::MainText]->toPlainText()},
            {TVL::NotesProperty, documents[TVL::NotesText]->toPlainText()},
            {TVL::SynopsisProperty, documents[TVL::SynopsisText]->toPlainText()},
            {TVL::CommentsProperty,
             TVLTextDoc::inspectorNotesToPlainText(documents[TVL::MainText].get()).join(u'\n')}};
}

} // namespace

/**
 * Random histories of a project of a few texts, to which everything happens that can: edits, saves
 * of this and not of that, searches, changes by others, files out of sight, sessions that are
 * closed and sessions that just end. Whenever it is opened, what is kept for searches has to agree
 * with what the files say.
 */
class TstRandomHistories : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void searchesAgreeWithTheFilesInEachSession_data();
    void searchesAgreeWithTheFilesInEachSession();

private:
    using Step = void (TstRandomHistories::*)();

    [[nodiscard]] int random(int bound) { return mRandom.bounded(bound); }
    [[nodiscard]] bool isSometimes(int oneOf) { return random(oneOf) == 0; }
    [[nodiscard]] QModelIndex anyItem() { return mModel->index(FirstId + random(Items)); }
    [[nodiscard]] QString anyWord() { return wordOf(random(Words)); }
    [[nodiscard]] ItemFile anyFile();
    void log(const QString &line) { mLog.append(line); }

    void makeProject();
    void takeStep();
    void type();
    void replaceDocument();
    void comment();
    void save();
    void saveItem();
    void saveTexts();
    void saveHashes();
    void search();
    void rebuild();
    void letGo();
    void changeOutside();
    void changeBackOutside();
    void removeOutside();
    void hide();
    void show();
    void close();
    void drop();
    void reopen();
    void check();
    void checkItem(const TVLProjectModel *model, int id, const QMap<int, QString> &texts);

    QRandomGenerator mRandom;
    std::unique_ptr<TestProject> mProject;
    TestModel mModel;
    std::unique_ptr<ReducedPermissions> mHidden;
    QString mAway; ///< The path of a file that isn't where it was.
    QMap<QString, QList<QByteArray>> mVersions; ///< What files have held, by their names.
    QStringList mLog; ///< What has happened.
};

ItemFile TstRandomHistories::anyFile()
{
    return {FirstId + random(Items), FileTypes.at(std::size_t(random(int(FileTypes.size()))))};
}

void TstRandomHistories::makeProject()
{
    mProject = std::make_unique<TestProject>();
    mVersions.clear();
    mModel = mProject->create();
    for (int i = 1; i < Items; ++i)
        (void)addItem(mModel.get(), mModel->draftFolder(), TVL::Text);
    QVERIFY(mModel->save(true));
}

// --- What a writer does

void TstRandomHistories::type()
{
    const auto type = TVL::DocumentType(random(3));
    const QModelIndex item = anyItem();
    const QString word = anyWord();
    log(u"type %1 into %2 of %3"_s.arg(word).arg(type).arg(mModel->nodeIdentity(item)));
    if (isSometimes(2))
        typeText(mModel.get(), item, word + u' ', type);
    else
        typeTextForGood(mModel.get(), item, word + u' ', type);
}

void TstRandomHistories::replaceDocument()
{
    const QModelIndex item = anyItem();
    const auto type = TVL::DocumentType(random(3));
    const QString text = isSometimes(2) ? QString() : anyWord();
    log(u"set %1 of %2 to '%3'"_s.arg(type).arg(mModel->nodeIdentity(item)).arg(text));
    TVLTextDocument *document = mModel->referenceItem(item, type);
    QTextCursor all(document);
    all.select(QTextCursor::Document);
    all.insertText(text);
    mModel->dereferenceItem(document);
}

void TstRandomHistories::comment()
{
    const QModelIndex item = anyItem();
    const QString word = anyWord();
    log(u"comment %1 on %2"_s.arg(word).arg(mModel->nodeIdentity(item)));
    const TVLTextCommentLink link(QUuid::createUuid().toString(QUuid::WithoutBraces),
                                  "{\\rtf1 " + word.toLatin1() + "}");
    if (!mModel->documentPlainText(item, false).isEmpty())
        (void)mModel->setInspectorNote(item, {0, 1}, link);
}

void TstRandomHistories::save()
{
    log(u"save"_s);
    (void)mModel->save(isSometimes(2));
}

void TstRandomHistories::saveItem()
{
    const QModelIndex item = anyItem();
    log(u"save %1"_s.arg(mModel->nodeIdentity(item)));
    (void)mModel->save(item);
}

void TstRandomHistories::saveTexts()
{
    log(u"save texts"_s);
    mModel->saveSearchIndex(isSometimes(3));
}

void TstRandomHistories::saveHashes()
{
    log(u"save hashes"_s);
    mModel->saveChecksums(isSometimes(3));
}

void TstRandomHistories::search()
{
    log(u"search"_s);
    TVLCollectionMetaData search;
    search.mType = TVL::SavedSearchCollection;
    search.mSearchText = anyWord();
    (void)mModel->collectionIndexes(search);
}

void TstRandomHistories::rebuild()
{
    log(u"rebuild"_s);
    mModel->rebuildSearchIndexes(false, nullptr);
}

/** As far as a model lets go of documents at all: of what was saved and has nothing to undo. */
void TstRandomHistories::letGo()
{
    log(u"let go"_s);
    for (int id = FirstId; id < FirstId + Items; ++id) {
        TVLProjectNode *node = mModel->projectNode(mModel->index(id));
        if (node->mTextDocument)
            node->mTextDocument->clearUndoRedoStacks();
        (void)mModel->save(mModel->index(id));
    }
    deleteReleasedObjects();
}

// --- What others do

void TstRandomHistories::changeOutside()
{
    const ItemFile file = anyFile();
    const QString word = anyWord();
    if (file.type == TVL::CommentsFile || mHidden)
        return;
    log(u"others write %1 to %2"_s.arg(word, file.name()));
    mVersions[file.name()].append(mProject->readFile(file.name()));
    mProject->writeFile(file.name(),
                        file.type == TVL::SynopsisText ? word.toUtf8()
                                                       : "{\\rtf1 " + word.toUtf8() + '}');
}

void TstRandomHistories::changeBackOutside()
{
    const QString name = anyFile().name();
    const QList<QByteArray> versions = mVersions.value(name);
    if (versions.isEmpty() || mHidden)
        return;
    const QByteArray content = versions.at(random(int(versions.size())));
    mVersions[name].append(mProject->readFile(name));
    log(u"others bring back %1 of %2 bytes"_s.arg(name).arg(content.size()));
    if (content.isEmpty())
        (void)QFile::remove(mProject->path(name));
    else
        mProject->writeFile(name, content);
}

void TstRandomHistories::removeOutside()
{
    const QString name = anyFile().name();
    if (!QFile::exists(mProject->path(name)) || mHidden)
        return;
    log(u"others remove %1"_s.arg(name));
    mVersions[name].append(mProject->readFile(name));
    (void)QFile::remove(mProject->path(name));
}

void TstRandomHistories::hide()
{
    const QString name = isSometimes(4) ? u"Files/Docs/docs.checksum"_s : anyFile().name();
    if (mHidden || !mAway.isEmpty() || !QFile::exists(mProject->path(name)))
        return;
    if (isSometimes(2)) {
        log(u"%1 can't be read"_s.arg(name));
        mHidden =
            std::make_unique<ReducedPermissions>(mProject->path(name), ReducedPermissions::None);
    } else if (!name.endsWith(u"docs.checksum")) {
        log(u"%1 is away"_s.arg(name));
        mAway = mProject->path(name);
        if (!QFile::rename(mAway, mProject->enclosingPath() + u"/away"_s))
            qFatal("%s could not be moved", qPrintable(mAway));
    }
}

void TstRandomHistories::show()
{
    log(u"show"_s);
    mHidden.reset();
    if (mAway.isEmpty())
        return;
    // Over what may have been written meanwhile, as a service that keeps folders in step does.
    (void)QFile::remove(mAway);
    if (!QFile::rename(mProject->enclosingPath() + u"/away"_s, mAway))
        qFatal("%s could not be moved back", qPrintable(mAway));
    mAway.clear();
}

// --- Sessions

void TstRandomHistories::close()
{
    log(u"close"_s);
    mModel->prepareToDestroy();
    drop();
}

void TstRandomHistories::drop()
{
    log(u"end"_s);
    mModel.reset();
}

void TstRandomHistories::reopen()
{
    mModel = mProject->open();
}

/** In a session of its own, which leaves nothing behind. */
void TstRandomHistories::check()
{
    const auto model = mProject->open();
    QMap<QString, QList<int>> expected;
    for (int id = FirstId; id < FirstId + Items; ++id) {
        const QMap<int, QString> texts = textsInFiles(*mProject, id);
        checkItem(model.get(), id, texts);
        for (int number = 0; number < Words; ++number) {
            const bool hasWord =
                std::any_of(texts.cbegin(), texts.cend(),
                            [=](const QString &text) { return text.contains(wordOf(number)); });
            if (hasWord)
                expected[wordOf(number)].append(id);
        }
    }
    for (int number = 0; number < Words; ++number) {
        TVLCollectionMetaData search;
        search.mType = TVL::SavedSearchCollection;
        search.mSearchText = wordOf(number);
        QList<int> ids = model->nodeIdentityList(model->collectionIndexes(search));
        std::sort(ids.begin(), ids.end());
        QCOMPARE(ids, expected.value(wordOf(number)));
    }
}

/** What has the hash of its file is the text of its file, and so is what counts as confirmed. */
void TstRandomHistories::checkItem(const TVLProjectModel *model, int id,
                                   const QMap<int, QString> &texts)
{
    const TVLProjectChecksums *checksums = model->checksums();
    for (auto text = texts.cbegin(); text != texts.cend(); ++text) {
        const auto property = TVL::DocumentProperty(text.key());
        const TVL::DocumentType type = TVL::toDocumentType(property);
        const QByteArray record = checksums->loadedChecksum(id, type);
        const bool isOfFile =
            !record.isEmpty() && record == checksums->currentHddChecksum(id, type);
        const QList<TVL::DocumentProperty> unconfirmed =
            model->searchIndex()->notConfirmedIndexes().value(id);
        // A search asks for the comments of a text that it asks for.
        const bool isConfirmed = !unconfirmed.contains(property)
            && (property != TVL::CommentsProperty || !unconfirmed.contains(TVL::TextProperty));
        if ((!isOfFile || property == TVL::CommentsProperty) && !isConfirmed)
            continue;
        const QString stored =
            rowsOf(*model->searchIndex(),
                   u"SELECT propertyValue FROM DocumentSearchProperties WHERE identity = %1 AND "
                   "type = %2"_s.arg(id)
                       .arg(property))
                .value(0);
        QCOMPARE(stored, *text);
    }
}

void TstRandomHistories::takeStep()
{
    static const QList<QPair<int, Step>> steps = {
        {12, &TstRandomHistories::type},         {4, &TstRandomHistories::replaceDocument},
        {3, &TstRandomHistories::comment},       {6, &TstRandomHistories::save},
        {3, &TstRandomHistories::saveItem},      {5, &TstRandomHistories::saveTexts},
        {5, &TstRandomHistories::saveHashes},    {8, &TstRandomHistories::search},
        {2, &TstRandomHistories::rebuild},       {2, &TstRandomHistories::letGo},
        {8, &TstRandomHistories::changeOutside}, {8, &TstRandomHistories::changeBackOutside},
        {2, &TstRandomHistories::removeOutside}, {4, &TstRandomHistories::hide},
        {4, &TstRandomHistories::show},
    };
    int all = 0;
    for (const auto &step : steps)
        all += step.first;
    int number = random(all);
    for (const auto &[weight, step] : steps) {
        if (number < weight) {
            (this->*step)();
            return;
        }
        number -= weight;
    }
}

void TstRandomHistories::searchesAgreeWithTheFilesInEachSession_data()
{
    QTest::addColumn<quint32>("seed");
    const quint32 first = quint32(std::max(1, qEnvironmentVariableIntValue("TVL_TEST_SEED")));
    for (int part = 0; part < HistoryParts; ++part)
        QTest::addRow("part %d", part) << first + quint32(part * Histories);
}

void TstRandomHistories::searchesAgreeWithTheFilesInEachSession()
{
    QFETCH(const quint32, seed);
    const TVLUnattendedMessageBoxes boxes;
    const int count = std::max(1, Histories / HistoryParts);
    for (quint32 history = seed; history < seed + quint32(count); ++history) {
        mRandom.seed(history);
        mLog = {u"history %1"_s.arg(history)};
        makeProject();
        for (int step = 0; step < StepsOfAHistory && !QTest::currentTestFailed(); ++step) {
            takeStep();
            if (!isSometimes(8))
                continue;
            isSometimes(2) ? close() : drop();
            // Others are at work in between, too.
            for (int i = random(3); i > 0; --i)
                isSometimes(2) ? changeOutside() : changeBackOutside();
            check();
            reopen();
        }
        mModel.reset();
        show();
        if (QTest::currentTestFailed()) {
            qWarning("%s", qPrintable(mLog.join(u'\n')));
            return;
        }
    }
}

TVL_TEST_PREPARED(TstRandomHistories, dropRightsOfTheSuperuser)
#include "tst_randomhistories.moc"
