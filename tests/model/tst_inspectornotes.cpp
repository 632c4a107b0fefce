#include "ModelChecks.h"
#include "TestMain.h"
#include "TestProject.h"

#include "TVLTextCommentLink.h"
#include "TVLTextDoc.h"
#include "TVLTextDocument.h"
#include "TVLTextRange.h"

#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

TVLTextCommentLink inspectorComment(const QString &text)
{
    return TVLTextCommentLink(QUuid::createUuid().toString(QUuid::WithoutBraces),
                              "{\\rtf1 " + text.toLatin1() + "}");
}

/** Something that is done to a model's first text. */
using TextDeed = std::function<void(TVLProjectModel *model, TVLTextDocument *text)>;

} // namespace

Q_DECLARE_METATYPE(TextDeed)

class TstInspectorNotes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNoteIsSet();
    void aSetNoteMarksAllThatWasChanged();
    void notesComeInTheOrderOfTheText();
    void notesAreRemovedByWhereTheyStart();
    void noteRemovalsWithoutNoteChangeNothing();
    void itemsWithoutTextHaveNoNotes();
    void aNoteThatCannotBeKeptIsRefused_data();
    void aNoteThatCannotBeKeptIsRefused();
    void onlyMainTextsTakeComments();
    void anEditAtTheSecondRunIsKept();
};

void TstInspectorNotes::aNoteIsSet()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    typeText(model.get(), index, u"some words of text"_s);
    QVERIFY(!model->hasInspectorNotes(index));
    QCOMPARE(model->inspectorNotesToPlainText(index), QStringList());
    QVERIFY(model->setInspectorNote(index, {5, 5}, inspectorComment(u"which"_s)));
    QVERIFY(model->hasInspectorNotes(index));
    QCOMPARE(model->inspectorNotesToPlainText(index), QStringList({u"which"_s}));
    QCOMPARE(model->documentPlainText(index, false), u"some words of text"_s);
    QCOMPARE(model->projectNode(index)->mTextDocument->referenceCount(), 0);
}

void TstInspectorNotes::aSetNoteMarksAllThatWasChanged()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    typeText(model.get(), index, u"some words of text"_s);
    TVLTextDocument *text = model->referenceText(index);
    QVERIFY(model->save());
    text->setModified(false);
    makeAllOld(model.get());
    QVERIFY(model->setInspectorNote(index, {0, 4}, inspectorComment(u"whose"_s)));
    QVERIFY(text->isModified());
    QVERIFY(!text->isSaved());
    QVERIFY(isTouched(model.get(), index));
    QVERIFY(model->isModified());
}

void TstInspectorNotes::notesComeInTheOrderOfTheText()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    typeText(model.get(), index, u"some words of text"_s);
    QVERIFY(model->setInspectorNote(index, {14, 4}, inspectorComment(u"last"_s)));
    QVERIFY(model->setInspectorNote(index, {0, 4}, inspectorComment(u"first"_s)));
    QCOMPARE(model->inspectorNotesToPlainText(index), QStringList({u"first"_s, u"last"_s}));
}

void TstInspectorNotes::notesAreRemovedByWhereTheyStart()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    typeText(model.get(), index, u"some words of text"_s);
    QVERIFY(model->setInspectorNote(index, {0, 4}, inspectorComment(u"first"_s)));
    QVERIFY(model->setInspectorNote(index, {5, 5}, inspectorComment(u"second"_s)));
    QVERIFY(model->setInspectorNote(index, {14, 4}, inspectorComment(u"third"_s)));
    QVERIFY(model->removeInspectorNote(index, 5));
    QCOMPARE(model->inspectorNotesToPlainText(index), QStringList({u"first"_s, u"third"_s}));
    QVERIFY(model->removeInspectorNotes(index, {14, 0}));
    QVERIFY(!model->hasInspectorNotes(index));
    QCOMPARE(model->documentPlainText(index, false), u"some words of text"_s);
    QCOMPARE(model->projectNode(index)->mTextDocument->referenceCount(), 0);
}

void TstInspectorNotes::noteRemovalsWithoutNoteChangeNothing()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    typeText(model.get(), index, u"some words of text"_s);
    QVERIFY(model->setInspectorNote(index, {5, 5}, inspectorComment(u"which"_s)));
    QVERIFY(model->save());
    QVERIFY(model->removeInspectorNotes(index, {}));
    QVERIFY(model->removeInspectorNotes(index, {0, 14, -1, 1000}));
    QVERIFY(model->isSaved());
    QCOMPARE(model->inspectorNotesToPlainText(index), QStringList({u"which"_s}));
}

void TstInspectorNotes::itemsWithoutTextHaveNoNotes()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex image = addItem(model.get(), model->draftFolder(), TVL::Image);
    for (const QModelIndex &index : {image, model->draftFolder()}) {
        QVERIFY(!model->setInspectorNote(index, {0, 1}, inspectorComment(u"x"_s)));
        QVERIFY(!model->hasInspectorNotes(index));
        QCOMPARE(model->inspectorNotesToPlainText(index), QStringList());
        QVERIFY(model->removeInspectorNotes(index, {0}));
        QVERIFY(model->removeInspectorNote(index, 0));
    }
    QVERIFY(!model->removeInspectorNotes(QModelIndex(), {0}));
    QVERIFY(!model->removeInspectorNote(model->rootIndex(), 0));
    QVERIFY(model->isSaved());
}

void TstInspectorNotes::aNoteThatCannotBeKeptIsRefused_data()
{
    QTest::addColumn<TextDeed>("prepare");
    QTest::addColumn<int>("location");
    QTest::addColumn<int>("length");
    const TextDeed nothing = [](TVLProjectModel *, TVLTextDocument *) {};
    QTest::newRow("on nothing") << nothing << 5 << 0;
    QTest::newRow("on less than nothing") << nothing << 5 << -3;
    QTest::newRow("behind the text") << nothing << 18 << 5;
    QTest::newRow("in a text that could not be read")
        << TextDeed([](TVLProjectModel *, TVLTextDocument *text) { text->setReadOnly(true); }) << 5
        << 5;
    QTest::newRow("beside comments that could not be read") << TextDeed(
        [](TVLProjectModel *, TVLTextDocument *text) { text->setCommentsReadOnly(true); })
                                                            << 5 << 5;
    QTest::newRow("in a text that has no file") << TextDeed(
        [](TVLProjectModel *model, TVLTextDocument *text) { model->clearIndexId(text->index()); })
                                                << 5 << 5;
}

void TstInspectorNotes::aNoteThatCannotBeKeptIsRefused()
{
    QFETCH(const TextDeed, prepare);
    QFETCH(const int, location);
    QFETCH(const int, length);
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    typeText(model.get(), index, u"some words of text"_s);
    TVLTextDocument *text = model->referenceText(index);
    QVERIFY(model->save());
    prepare(model.get(), text);
    makeAllOld(model.get());
    const SignalLog log(model.get());
    QVERIFY(!model->setInspectorNote(index, {location, length}, inspectorComment(u"x"_s)));
    QVERIFY(!model->hasInspectorNotes(index));
    QVERIFY(text->isSaved());
    QVERIFY(model->isSaved());
    QVERIFY(!isTouched(model.get(), index));
    QCOMPARE(log.lines(), QStringList());
}

void TstInspectorNotes::onlyMainTextsTakeComments()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    for (const TVL::DocumentType type : {TVL::MainText, TVL::NotesText, TVL::SynopsisText}) {
        typeText(model.get(), index, u"words"_s, type);
        TVLTextDocument *document = model->referenceItem(index, type);
        QCOMPARE(document->takesComments(), type == TVL::MainText);
        QCOMPARE(TVLTextDoc::setComment(document, {0, 5}, inspectorComment(u"x"_s)),
                 type == TVL::MainText);
        QCOMPARE(TVLTextDoc::hasInspectorCommentsOrFootnotes(document), type == TVL::MainText);
    }
}

void TstInspectorNotes::anEditAtTheSecondRunIsKept()
{
    const TestProject project;
    TVLTextCommentLink comment = inspectorComment(u"before"_s);
    {
        const auto model = project.create();
        const QModelIndex index = firstText(model.get());
        typeText(model.get(), index, u"some words of text"_s);
        QVERIFY(model->setInspectorNote(index, {0, 4}, comment));
        QVERIFY(model->setInspectorNote(index, {14, 4}, comment));
        comment.mRtf = "{\\rtf1 after}";
        QVERIFY(model->setInspectorNote(index, {14, 4}, comment));
        QVERIFY(model->save());
    }
    const auto model = project.open();
    const QModelIndex index = firstText(model.get());
    QCOMPARE(model->inspectorNotesToPlainText(index), QStringList(u"after"_s));
}

TVL_TEST(TstInspectorNotes)
#include "tst_inspectornotes.moc"
