#include "ModelChecks.h"
#include "TestMain.h"
#include "TestProject.h"

#include "TVLTextDocument.h"

#include <QAbstractTextDocumentLayout>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>
#include <QTextCursor>
#include <QTextEdit>

using namespace Qt::StringLiterals;

namespace {

// The timer may come up to a twentieth early.
constexpr int LeastNoticeMs = 950;
// More than enough for another announcement to come, if there were one.
constexpr int LongerThanASecondMs = 1600;

QList<int> announcedIds(const TVLProjectModel *model, const QSignalSpy &changes)
{
    QList<int> ids;
    for (const QList<QVariant> &arguments : changes)
        ids.append(model->nodeIdentity(arguments.at(0).toModelIndex()));
    std::sort(ids.begin(), ids.end());
    return ids;
}

} // namespace

class TstDocumentEdits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anEditTellsItsSignalsInOrder();
    void whenAnEditIsTheFirstToBeToldItHasTakenEffect();
    void anEditResetsWhatHangsOnTheText_data();
    void anEditResetsWhatHangsOnTheText();
    void theArgumentsOfAnEditAreThoseOfTheDocument_data();
    void theArgumentsOfAnEditAreThoseOfTheDocument();
    void anEditBlockEndsOnce();
    void anEditOfTheRootsDocumentsIsNoEdit();
    void severalEditsGiveOneDataChangeInASecond();
    void editsAfterTheSecondAreToldAgain();
    void anItemThatIsGoneIsNotTold();
    void onlyItemsAreScheduled();
    void theWholeTextIsLaidOutAnew();
    void showingATextIsNoEdit_data();
    void showingATextIsNoEdit();
    void aViewShowsALoadedText();
    void anEditIsNoticedWhenTheLayoutWasTakenAway_data();
    void anEditIsNoticedWhenTheLayoutWasTakenAway();

    void theSynopsisIsReplaced();
    void anEqualSynopsisChangesNothing();
    void aSynopsisIsReplacedWithoutHistory();
    void itemsWithoutSynopsisTakeNone();
    void plainTextsAreRead();
    void withoutDocumentTextsAreEmpty();
    void objectsAreReplacedByBlanks();
    void readersGiveTheirReferencesBack();
    void aTextIsOverwritten();
    void overwritingWithNothingIsRefused();
    void overwritingWithItselfKeepsTheText();
    void overwritingIsOneUndoStep_data();
    void overwritingIsOneUndoStep();
    void anItemWithoutTextIsNotOverwritten();
};

void TstDocumentEdits::anEditTellsItsSignalsInOrder()
{
    const TestProject project;
    const auto model = project.create();
    TVLTextDocument *notes = model->referenceNote(firstText(model.get()));
    SignalLog log(model.get());
    QTextCursor(notes).insertText(u"words"_s);
    QCOMPARE(log.lines(),
             QStringList({u"modified"_s, u"edit of 3.1 at 0: -0 +5"_s, u"edited 3.1"_s}));
    log.clear();
    QTextCursor(notes).insertText(u"more "_s);
    QCOMPARE(log.lines(), QStringList({u"edit of 3.1 at 0: -0 +5"_s, u"edited 3.1"_s}));
}

void TstDocumentEdits::whenAnEditIsTheFirstToBeToldItHasTakenEffect()
{
    const TestProject project;
    const auto model = project.create();
    TVLTextDocument *text = model->referenceText(firstText(model.get()));
    TVLProjectNode *node = model->findNode(3);
    makeAllOld(model.get());
    node->mRestoredSnapshotDate = QDateTime::currentDateTime();
    node->mWordCount = 5;
    int calls = 0;
    connect(model.get(), &TVLProjectModel::modifiedChanged, this, [&] {
        ++calls;
        QVERIFY(!text->isSaved());
        QVERIFY(!node->mRestoredSnapshotDate.isValid());
        QVERIFY(isTouched(model.get(), firstText(model.get())));
        QCOMPARE(node->mWordCount, -1);
        QCOMPARE(node->mCharacterCount, -1);
    });
    QTextCursor(text).insertText(u"words"_s);
    QCOMPARE(calls, 1);
}

void TstDocumentEdits::anEditResetsWhatHangsOnTheText_data()
{
    QTest::addColumn<TVL::DocumentType>("type");
    QTest::newRow("main text") << TVL::MainText;
    QTest::newRow("notes") << TVL::NotesText;
    QTest::newRow("synopsis") << TVL::SynopsisText;
}

void TstDocumentEdits::anEditResetsWhatHangsOnTheText()
{
    QFETCH(const TVL::DocumentType, type);
    const TestProject project;
    const auto model = project.create();
    TVLTextDocument *document = model->referenceItem(firstText(model.get()), type);
    TVLProjectNode *node = model->findNode(3);
    makeAllOld(model.get());
    node->mRestoredSnapshotDate = QDateTime::currentDateTime();
    node->mWordCount = 5;
    node->mCharacterCount = 50;
    QTextCursor(document).insertText(u"x"_s);
    QVERIFY(!document->isSaved());
    QVERIFY(!node->mRestoredSnapshotDate.isValid());
    QCOMPARE(touchedIds(model.get()), QList<int>({3}));
    QCOMPARE(node->mWordCount, -1);
    QCOMPARE(node->mCharacterCount, -1);
    QVERIFY(model->isModified());
    for (const TVLTextDocument *other :
         {node->mTextDocument, node->mNotesDocument, node->mSynopsisDocument})
        QCOMPARE(other->isSaved(), other != document);
}

void TstDocumentEdits::theArgumentsOfAnEditAreThoseOfTheDocument_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("removed");
    QTest::addColumn<QString>("inserted");
    QTest::newRow("insertion") << 2 << 0 << u"abc"_s;
    QTest::newRow("removal") << 3 << 4 << QString();
    QTest::newRow("at the end") << 10 << 0 << u"x"_s;
}

void TstDocumentEdits::theArgumentsOfAnEditAreThoseOfTheDocument()
{
    QFETCH(const int, position);
    QFETCH(const int, removed);
    QFETCH(const QString, inserted);
    const TestProject project;
    const auto model = project.create();
    TVLTextDocument *text = model->referenceText(firstText(model.get()));
    QTextCursor(text).insertText(u"0123456789"_s);
    QSignalSpy ofDocument(text, &QTextDocument::contentsChange);
    QSignalSpy ofModel(model.get(), &TVLProjectModel::documentContentsChange);
    QTextCursor cursor(text);
    cursor.setPosition(position);
    cursor.setPosition(position + removed, QTextCursor::KeepAnchor);
    cursor.insertText(inserted);
    QCOMPARE(ofModel.size(), 1);
    QCOMPARE(ofDocument.size(), 1);
    QCOMPARE(ofModel.at(0).at(0).toModelIndex(), firstText(model.get()));
    QCOMPARE(ofModel.at(0).mid(2), ofDocument.at(0));
    QCOMPARE(ofModel.at(0).at(2).toInt(), position);
}

void TstDocumentEdits::anEditBlockEndsOnce()
{
    const TestProject project;
    const auto model = project.create();
    TVLTextDocument *text = model->referenceText(firstText(model.get()));
    QSignalSpy ended(model.get(), &TVLProjectModel::documentContentsChanged);
    QTextCursor cursor(text);
    cursor.beginEditBlock();
    for (int i = 0; i < 10; ++i)
        cursor.insertText(u"words "_s);
    cursor.endEditBlock();
    QCOMPARE(ended.size(), 1);
    QCOMPARE(ended.at(0).at(0).toModelIndex(), firstText(model.get()));
    QCOMPARE(ended.at(0).at(1).value<TVL::DocumentType>(), TVL::MainText);
}

void TstDocumentEdits::anEditOfTheRootsDocumentsIsNoEdit()
{
    const auto model = blankModel();
    const SignalLog log(model.get());
    QVERIFY(model->setSynopsis(QModelIndex(), u"of nothing"_s));
    QCOMPARE(model->synopsis(QModelIndex()), u"of nothing"_s);
    QVERIFY(model->isSaved());
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(model->loadedNodes().isEmpty());
}

void TstDocumentEdits::severalEditsGiveOneDataChangeInASecond()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex one = firstText(model.get());
    const QModelIndex two = addItem(model.get(), model->draftFolder(), TVL::Text);
    QSignalSpy changes(model.get(), &TVLProjectModel::dataChanged);
    QElapsedTimer sinceFirst;
    sinceFirst.start();
    for (int i = 0; i < 20; ++i) {
        typeText(model.get(), one, u"x"_s);
        typeText(model.get(), two, u"y"_s, TVL::NotesText);
        typeText(model.get(), two, u"z"_s, TVL::SynopsisText);
    }
    QVERIFY(changes.isEmpty());
    QVERIFY(changes.wait(PatienceMs));
    QVERIFY(sinceFirst.elapsed() >= LeastNoticeMs);
    QCOMPARE(announcedIds(model.get(), changes), QList<int>({3, 4}));
    QVERIFY(!changes.wait(LongerThanASecondMs));
}

void TstDocumentEdits::editsAfterTheSecondAreToldAgain()
{
    const TestProject project;
    const auto model = project.create();
    QSignalSpy changes(model.get(), &TVLProjectModel::dataChanged);
    for (int round = 1; round <= 2; ++round) {
        typeText(model.get(), firstText(model.get()), u"x"_s);
        QVERIFY(changes.wait(PatienceMs));
        QCOMPARE(changes.size(), round);
    }
}

void TstDocumentEdits::anItemThatIsGoneIsNotTold()
{
    const TestProject project;
    const auto model = project.create();
    QSignalSpy changes(model.get(), &TVLProjectModel::dataChanged);
    typeText(model.get(), firstText(model.get()), u"x"_s);
    // The tree is read anew, so no index of before is any good.
    TVLBinderProject *reader = model.get();
    reader->beginBinderRead();
    reader->endBinderRead();
    QVERIFY(!changes.wait(LongerThanASecondMs));
}

void TstDocumentEdits::onlyItemsAreScheduled()
{
    const auto model = blankModel();
    const auto other = blankModel();
    QSignalSpy changes(model.get(), &TVLProjectModel::dataChanged);
    model->scheduleDocTextChange(QModelIndex());
    model->scheduleDocTextChange(model->rootIndex());
    model->scheduleDocTextChange(firstText(other.get()));
    QVERIFY(!changes.wait(LongerThanASecondMs));
    model->scheduleDocTextChange(firstText(model.get()));
    model->scheduleDocTextChange(firstText(model.get()));
    QVERIFY(changes.wait(PatienceMs));
    QCOMPARE(announcedIds(model.get(), changes), QList<int>({3}));
    QVERIFY(model->isSaved());
}

void TstDocumentEdits::theWholeTextIsLaidOutAnew()
{
    TVLProjectModel::markDocumentContentsDirty(nullptr);
    QTextDocument document(u"one\ntwo"_s);
    QSignalSpy laidOut(document.documentLayout(), &QAbstractTextDocumentLayout::update);
    document.setModified(false);
    QSignalSpy edits(&document, &QTextDocument::contentsChange);
    TVLProjectModel::markDocumentContentsDirty(&document);
    QVERIFY(!laidOut.isEmpty());
    QVERIFY(edits.isEmpty());
    QVERIFY(!document.isModified());
}

void TstDocumentEdits::showingATextIsNoEdit_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("with a text") << u"some\nwords"_s;
}

void TstDocumentEdits::showingATextIsNoEdit()
{
    QFETCH(const QString, text);
    const TestProject project;
    const auto model = project.create();
    TVLTextDocument *document = model->referenceText(firstText(model.get()));
    QTextCursor(document).insertText(text);
    QVERIFY(model->save(true));
    SignalLog log(model.get());
    document->setDocumentLayout(nullptr);
    QVERIFY(document->documentLayout());
    QVERIFY(document->isSaved());
    QVERIFY(model->isSaved());
    QCOMPARE(log.lines(), QStringList());

    QTextCursor(document).insertText(u"x"_s);
    QVERIFY(!document->isSaved());
    QCOMPARE(log.lines().size(), 3);
    QVERIFY(log.lines().contains(u"edited 3.0"_s));
}

void TstDocumentEdits::aViewShowsALoadedText()
{
    const TestProject project;
    const auto model = project.create();
    TVLTextDocument *document = model->referenceText(firstText(model.get()));
    QTextCursor(document).insertText(u"some words"_s);
    QVERIFY(model->save());
    QSignalSpy layouts(document, &QTextDocument::documentLayoutChanged);
    QTextEdit view;
    view.setDocument(document);
    view.resize(300, 200);
    view.show();
    while (layouts.isEmpty())
        QVERIFY(layouts.wait(PatienceMs));
    QVERIFY(document->size().width() > 0);
    QVERIFY(document->size().height() > 0);
    QVERIFY(view.cursorRect().isValid());
    QVERIFY(model->isSaved());
    QTest::keyClicks(&view, u"x"_s);
    QCOMPARE(document->toPlainText(), u"xsome words"_s);
    QVERIFY(model->isModified());
}

void TstDocumentEdits::anEditIsNoticedWhenTheLayoutWasTakenAway_data()
{
    QTest::addColumn<TVL::DocumentType>("type");
    QTest::addColumn<bool>("wasShown");
    QTest::newRow("main text") << TVL::MainText << false;
    QTest::newRow("notes") << TVL::NotesText << false;
    QTest::newRow("synopsis") << TVL::SynopsisText << false;
    QTest::newRow("main text that a view has shown") << TVL::MainText << true;
}

void TstDocumentEdits::anEditIsNoticedWhenTheLayoutWasTakenAway()
{
    QFETCH(const TVL::DocumentType, type);
    QFETCH(const bool, wasShown);
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    typeText(model.get(), index, u"words"_s, type);
    TVLTextDocument *document = model->referenceItem(index, type);
    QVERIFY(model->save());
    if (wasShown) {
        QTextEdit view;
        view.setDocument(document);
    }
    SignalLog log(model.get());
    document->setDocumentLayout(nullptr);
    QVERIFY(document->isSaved());
    QCOMPARE(log.lines(), QStringList());

    QTextCursor(document).insertText(u"more "_s);
    QVERIFY(!document->isSaved());
    QVERIFY(model->isModified());
    QCOMPARE(log.lines(),
             QStringList({u"modified"_s, u"edit of 3.%1 at 0: -0 +5"_s.arg(int(type)),
                          u"edited 3.%1"_s.arg(int(type))}));
    QVERIFY(model->save());
    QVERIFY(document->isSaved());
    const auto reopened = project.open();
    QCOMPARE(reopened->referenceItem(firstText(reopened.get()), type)->toPlainText(),
             u"more words"_s);
}

void TstDocumentEdits::theSynopsisIsReplaced()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    QVERIFY(model->setSynopsis(index, u"one\ntwo"_s));
    QCOMPARE(model->synopsis(index), u"one\ntwo"_s);
    QVERIFY(model->isModified());
    QVERIFY(model->save());
    QCOMPARE(project.readFile(u"Files/Docs/3_synopsis.txt"_s), QByteArray("one\ntwo"));
    QVERIFY(model->setSynopsis(index, u"three"_s));
    QCOMPARE(model->synopsis(index), u"three"_s);
    QVERIFY(model->isModified());
    QCOMPARE(model->projectNode(index)->mSynopsisDocument->referenceCount(), 0);
}

void TstDocumentEdits::anEqualSynopsisChangesNothing()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    QVERIFY(model->setSynopsis(index, u"one"_s));
    QVERIFY(model->save());
    const SignalLog log(model.get());
    QVERIFY(model->setSynopsis(index, u"one"_s));
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(model->isSaved());
}

void TstDocumentEdits::aSynopsisIsReplacedWithoutHistory()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    TVLTextDocument *synopsis = model->referenceSynopsis(index);
    QVERIFY(model->setSynopsis(index, u"one"_s));
    QVERIFY(model->setSynopsis(index, u"two"_s));
    while (synopsis->isUndoAvailable())
        synopsis->undo();
    QCOMPARE(synopsis->toPlainText(), QString());
}

void TstDocumentEdits::itemsWithoutSynopsisTakeNone()
{
    const auto model = blankModel();
    const auto other = blankModel();
    QVERIFY(!model->setSynopsis(model->draftFolder(), u"x"_s));
    QVERIFY(!model->setSynopsis(firstText(other.get()), u"x"_s));
    QVERIFY(model->isSaved());
}

void TstDocumentEdits::plainTextsAreRead()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    QVERIFY(model->isDocumentNoteEmpty(index));
    typeText(model.get(), index, u"text"_s);
    typeText(model.get(), index, u"notes"_s, TVL::NotesText);
    typeText(model.get(), index, u"synopsis"_s, TVL::SynopsisText);
    QCOMPARE(model->documentPlainText(index, false), u"text"_s);
    QCOMPARE(model->documentPlainText(index, true), u"text"_s);
    QCOMPARE(model->documentNoteAsPlainText(index), u"notes"_s);
    QCOMPARE(model->synopsis(index), u"synopsis"_s);
    QVERIFY(!model->isDocumentNoteEmpty(index));
}

void TstDocumentEdits::withoutDocumentTextsAreEmpty()
{
    const TestProject project;
    const auto model = project.create();
    const auto other = blankModel();
    const QModelIndex image = addItem(model.get(), model->draftFolder(), TVL::Image);
    QCOMPARE(model->documentPlainText(image, true), QString());
    for (const QModelIndex &index : {model->draftFolder(), firstText(other.get())}) {
        QCOMPARE(model->synopsis(index), QString());
        QCOMPARE(model->documentNoteAsPlainText(index), QString());
        QCOMPARE(model->documentPlainText(index, false), QString());
        QVERIFY(model->isDocumentNoteEmpty(index));
    }
}

void TstDocumentEdits::objectsAreReplacedByBlanks()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    typeText(model.get(), index, u"a\uFFFCb\uFFFC"_s);
    QCOMPARE(model->documentPlainText(index, false), u"a\uFFFCb\uFFFC"_s);
    QCOMPARE(model->documentPlainText(index, true), u"a b "_s);
}

void TstDocumentEdits::readersGiveTheirReferencesBack()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    QVERIFY(model->documentPlainText(index, true).isEmpty());
    QVERIFY(model->documentNoteAsPlainText(index).isEmpty());
    QVERIFY(model->isDocumentNoteEmpty(index));
    QVERIFY(model->synopsis(index).isEmpty());
    QVERIFY(model->setSynopsis(index, u"x"_s));
    QVERIFY(model->overwriteText(index, model->projectNotes().mNotes.at(0).second));
    QCOMPARE(model->wordCount(index, true, true), 0);
    QVERIFY(model->calcTitleFromText(index).isEmpty());
    QVERIFY(model->autoGenerateSynopsisText(index).isEmpty());
    const TVLProjectNode *node = model->projectNode(index);
    for (const TVLTextDocument *document :
         {node->mTextDocument, node->mNotesDocument, node->mSynopsisDocument})
        QCOMPARE(document->referenceCount(), 0);
}

void TstDocumentEdits::aTextIsOverwritten()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    typeText(model.get(), index, u"of before\nin two lines"_s);
    QVERIFY(model->save());
    QTextDocument document;
    document.setHtml(u"new <b>and bold</b>"_s);
    QVERIFY(model->overwriteText(index, &document));
    const TVLTextDocument *text = model->projectNode(index)->mTextDocument;
    QCOMPARE(text->toPlainText(), u"new and bold"_s);
    QTextCursor cursor(model->projectNode(index)->mTextDocument);
    cursor.movePosition(QTextCursor::End);
    QVERIFY(cursor.charFormat().fontWeight() == QFont::Bold);
    QVERIFY(model->isModified());
    QVERIFY(!text->isSaved());
}

void TstDocumentEdits::overwritingWithNothingIsRefused()
{
    const TestProject project;
    const auto model = project.create();
    typeText(model.get(), firstText(model.get()), u"text"_s);
    QVERIFY(!model->overwriteText(firstText(model.get()), nullptr));
    QCOMPARE(model->documentPlainText(firstText(model.get()), false), u"text"_s);
}

void TstDocumentEdits::overwritingWithItselfKeepsTheText()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    typeText(model.get(), index, u"text"_s);
    const TVLTextDocument *text = model->referenceText(index);
    QVERIFY(model->overwriteText(index, text));
    QCOMPARE(text->toPlainText(), u"text"_s);
}

void TstDocumentEdits::overwritingIsOneUndoStep_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("html");
    QTest::newRow("a text by another") << u"of before\nin two lines"_s << u"new <b>and bold</b>"_s;
    QTest::newRow("nothing by a text") << QString() << u"<p>one</p><p>two</p>"_s;
    QTest::newRow("a text by nothing") << u"of before"_s << QString();
    QTest::newRow("a text by a table")
        << u"of before"_s << u"<table><tr><td>one</td><td>two</td></tr></table>"_s;
}

void TstDocumentEdits::overwritingIsOneUndoStep()
{
    QFETCH(const QString, before);
    QFETCH(const QString, html);
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    TVLTextDocument *text = model->referenceText(index);
    text->setPlainText(before);
    text->clearUndoRedoStacks();
    QTextDocument document;
    document.setHtml(html);
    QVERIFY(model->overwriteText(index, &document));
    const QString after = text->toPlainText();
    text->undo();
    QCOMPARE(text->toPlainText(), before);
    QVERIFY(!text->isUndoAvailable());
    text->redo();
    QCOMPARE(text->toPlainText(), after);
}

void TstDocumentEdits::anItemWithoutTextIsNotOverwritten()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex image = addItem(model.get(), model->draftFolder(), TVL::Image);
    const QTextDocument document(u"words"_s);
    QVERIFY(model->overwriteText(image, &document));
    QVERIFY(model->overwriteText(model->draftFolder(), &document));
    QCOMPARE(model->documentPlainText(image, false), QString());
    QVERIFY(model->isSaved());
}

TVL_TEST(TstDocumentEdits)
#include "tst_documentedits.moc"
