#include "ModelChecks.h"
#include "TestMain.h"
#include "TestProject.h"
#include "TestScale.h"

#include "TVLTextDoc.h"
#include "TVLTextDocument.h"
#include "TVLTextFormat.h"

#include <QLocale>
#include <QSignalSpy>
#include <QTest>
#include <QTextCursor>

using namespace Qt::StringLiterals;

namespace {

using Sums = TVLProjectModel::WordCharSessionCount;

/** Sets the counts of an item as if its text had been counted. */
void setCounts(const TVLProjectModel *model, const QModelIndex &index, int words, int characters,
               int sessionWords = -1, int sessionCharacters = -1)
{
    TVLProjectNode *node = model->projectNode(index);
    node->mWordCount = words;
    node->mCharacterCount = characters;
    node->mSessionWordCount = sessionWords;
    node->mSessionCharacterCount = sessionCharacters;
}

int recursiveTotal(const TVLProjectModel *model, const QModelIndex &index)
{
    int total = model->wordCount(index, false, false);
    for (int row = 0; row < model->rowCount(index); ++row)
        total += recursiveTotal(model, model->index(row, 0, index));
    return total;
}

/** The sums by the plainest of walks. */
Sums plainSums(const TVLProjectModel *model, bool draft, bool session, bool compileOnly)
{
    Sums sums;
    for (const QModelIndex &index : recursiveWalk(model, QModelIndex())) {
        if (draft && model->draftContains(index)
            && (!compileOnly || model->projectNode(index)->mIncludeInCompile)) {
            sums.mDraftWords += model->wordCount(index, false, false);
            sums.mDraftCharacters += model->characterCount(index);
        }
        if (session) {
            sums.mSessionWords += model->sessionWordCount(index, false, false);
            sums.mSessionCharacters += model->sessionCharacterCount(index);
        }
    }
    return sums;
}

QString format(const Sums &sums)
{
    return u"%1 %2 %3 %4"_s.arg(sums.mDraftWords)
        .arg(sums.mDraftCharacters)
        .arg(sums.mSessionWords)
        .arg(sums.mSessionCharacters);
}

/** Another default locale while it lives. */
class DefaultLocale
{
public:
    explicit DefaultLocale(const QLocale &locale) { QLocale::setDefault(locale); }
    ~DefaultLocale() { QLocale::setDefault(mBefore); }
    Q_DISABLE_COPY_MOVE(DefaultLocale)

private:
    QLocale mBefore;
};

} // namespace

class TstCounts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aTextIsCounted();
    void aCountIsKeptUntilAnEdit();
    void aCountLoadsTheTextOnce();
    void theFlagsOfAWordCountArePassedOn_data();
    void theFlagsOfAWordCountArePassedOn();
    void aKeptCountForgetsItsFlags();
    void withoutTextNothingIsCounted();
    void aSessionCountsFromTheFirstLoad();
    void aSessionWithLessTextIsNegative();
    void aSessionWithoutBaseCountsAll();
    void totalsAreThoseOfASubtree();
    void totalsOfARandomTree();
    void aDeepTreeIsCounted();
    void whatTheTargetIsAbout_data();
    void whatTheTargetIsAbout();
    void progressIsAPartOfTheTarget_data();
    void progressIsAPartOfTheTarget();

    void aProjectIsSummedUp_data();
    void aProjectIsSummedUp();
    void onlyItemsInsideTheDraftCountAsDraft();
    void noProjectNoSums();
    void aRandomProjectIsSummedUp();
    void aLargeProjectIsSummedUp();

    void aNewSessionBeginsWithWhatIsThere();
    void aNewSessionLeavesItemsWithoutBaseAlone();
    void aNewSessionIsTold();

    void statisticsAreTold_data();
    void statisticsAreTold();
};

void TstCounts::aTextIsCounted()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    QCOMPARE(model->wordCount(index, false, false), 0);
    QCOMPARE(model->characterCount(index), 0);
    typeText(model.get(), index, u"four words of text"_s);
    QCOMPARE(model->wordCount(index, false, false), 4);
    QCOMPARE(model->characterCount(index), 18);
    QCOMPARE(model->projectNode(index)->mWordCount, 4);
    QCOMPARE(model->projectNode(index)->mCharacterCount, 18);
}

void TstCounts::aCountIsKeptUntilAnEdit()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    setCounts(model.get(), index, 77, 777);
    QCOMPARE(model->wordCount(index, true, true), 77);
    QCOMPARE(model->characterCount(index), 777);
    QVERIFY(model->loadedNodes().isEmpty());
    typeText(model.get(), index, u"one two"_s);
    QCOMPARE(model->wordCount(index, true, true), 2);
    QCOMPARE(model->characterCount(index), 7);
    setCounts(model.get(), index, 0, 0);
    QCOMPARE(model->wordCount(index, true, true), 0);
    QCOMPARE(model->characterCount(index), 0);
}

void TstCounts::aCountLoadsTheTextOnce()
{
    const TestProject project;
    const auto model = project.create();
    project.writeFile(u"Files/Docs/3.rtf"_s, "{\\rtf1 from the file}");
    const QModelIndex index = firstText(model.get());
    QCOMPARE(model->characterCount(index), 13);
    QCOMPARE(model->loadedNodes(), QList<TVLProjectNode *>({model->findNode(3)}));
    QCOMPARE(model->wordCount(index, true, true), 3);
    QCOMPARE(model->findNode(3)->mTextDocument->referenceCount(), 0);
    QVERIFY(model->isSaved());
}

void TstCounts::theFlagsOfAWordCountArePassedOn_data()
{
    QTest::addColumn<bool>("withAnnotations");
    QTest::addColumn<bool>("withFootnotes");
    QTest::newRow("neither") << false << false;
    QTest::newRow("annotations") << true << false;
    QTest::newRow("footnotes") << false << true;
    QTest::newRow("both") << true << true;
}

void TstCounts::theFlagsOfAWordCountArePassedOn()
{
    QFETCH(const bool, withAnnotations);
    QFETCH(const bool, withFootnotes);
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    TVLTextDocument *text = model->referenceText(index);
    QTextCursor cursor(text);
    cursor.insertText(u"one two three "_s);
    QTextCharFormat annotation;
    annotation.setProperty(TVLTextFormat::InlineAnnotation, true);
    cursor.insertText(u"a remark "_s, annotation);
    QTextCharFormat footnote;
    footnote.setProperty(TVLTextFormat::InlineFootnote, true);
    cursor.insertText(u"this is a footnote"_s, footnote);
    const int expected = TVLTextDoc::wordCount(text, withAnnotations, withFootnotes);
    QVERIFY(expected > 0);
    QCOMPARE(model->wordCount(index, withAnnotations, withFootnotes), expected);
    text->undo();
    text->redo();
    QCOMPARE(model->totalWordCount(index, withAnnotations, withFootnotes), expected);
    text->undo();
    text->redo();
    QCOMPARE(model->sessionWordCount(index, withAnnotations, withFootnotes), expected);
    text->undo();
    text->redo();
    QCOMPARE(model->countActual(index, withAnnotations, withFootnotes), expected);
    text->undo();
    text->redo();
    model->projectNode(index)->mTarget = 100;
    QCOMPARE(model->progress(index, withAnnotations, withFootnotes), expected / 100.0);
}

void TstCounts::aKeptCountForgetsItsFlags()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    QTextCharFormat annotation;
    annotation.setProperty(TVLTextFormat::InlineAnnotation, true);
    QTextCursor(model->referenceText(index)).insertText(u"a remark"_s, annotation);
    const int first = model->wordCount(index, true, true);
    QCOMPARE(model->wordCount(index, false, false), first);
}

void TstCounts::withoutTextNothingIsCounted()
{
    const TestProject project;
    const auto model = project.create();
    const auto other = blankModel();
    const QModelIndex image = addItem(model.get(), model->draftFolder(), TVL::Image);
    for (const QModelIndex &index : {model->draftFolder(), image, firstText(other.get())}) {
        QCOMPARE(model->wordCount(index, false, false), 0);
        QCOMPARE(model->characterCount(index), 0);
        QCOMPARE(model->sessionWordCount(index, false, false), 0);
        QCOMPARE(model->sessionCharacterCount(index), 0);
        QCOMPARE(model->countActual(index, false, false), 0);
        QCOMPARE(model->progress(index, false, false), 0.0);
    }
    QCOMPARE(model->totalWordCount(firstText(other.get()), false, false), 0);
    QCOMPARE(model->totalCharacterCount(firstText(other.get())), 0);
    QCOMPARE(model->projectNode(image)->mWordCount, -1);
    QCOMPARE(model->projectNode(image)->mCharacterCount, -1);
}

void TstCounts::aSessionCountsFromTheFirstLoad()
{
    const TestProject project;
    const auto model = project.create();
    project.writeFile(u"Files/Docs/3.rtf"_s, "{\\rtf1 there before}");
    const QModelIndex index = firstText(model.get());
    QCOMPARE(model->sessionWordCount(index, false, false), 0);
    QCOMPARE(model->sessionCharacterCount(index), 0);
    typeText(model.get(), index, u"three words more "_s);
    QCOMPARE(model->sessionWordCount(index, false, false), 3);
    QCOMPARE(model->sessionCharacterCount(index), 17);
}

void TstCounts::aSessionWithLessTextIsNegative()
{
    const TestProject project;
    const auto model = project.create();
    project.writeFile(u"Files/Docs/3.rtf"_s, "{\\rtf1 three words here}");
    const QModelIndex index = firstText(model.get());
    QTextCursor cursor(model->referenceText(index));
    cursor.movePosition(QTextCursor::NextWord, QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
    QCOMPARE(model->sessionWordCount(index, false, false), -1);
    QCOMPARE(model->sessionCharacterCount(index), -6);
}

void TstCounts::aSessionWithoutBaseCountsAll()
{
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    setCounts(model.get(), index, 50, 200);
    QCOMPARE(model->sessionWordCount(index, false, false), 50);
    QCOMPARE(model->sessionCharacterCount(index), 200);
}

void TstCounts::totalsAreThoseOfASubtree()
{
    const auto model = blankModel();
    const QModelIndex folder = addItem(model.get(), model->draftFolder(), TVL::Folder);
    const QModelIndex below = addItem(model.get(), folder, TVL::Text);
    const QModelIndex deeper = addItem(model.get(), below, TVL::Text);
    setCounts(model.get(), firstText(model.get()), 1, 10);
    setCounts(model.get(), folder, 20, 200);
    setCounts(model.get(), below, 300, 3000);
    setCounts(model.get(), deeper, 4000, 40000);
    QCOMPARE(model->totalWordCount(deeper, false, false), 4000);
    QCOMPARE(model->totalWordCount(below, false, false), 4300);
    QCOMPARE(model->totalWordCount(folder, false, false), 4320);
    QCOMPARE(model->totalCharacterCount(folder), 43200);
    QCOMPARE(model->totalWordCount(model->draftFolder(), false, false), 4321);
    QCOMPARE(model->totalCharacterCount(model->draftFolder()), 43210);
    QCOMPARE(model->totalWordCount(QModelIndex(), false, false), 4321);
}

void TstCounts::totalsOfARandomTree()
{
    const auto model = blankModel();
    growRandomTree(model.get(), 300, 5);
    QRandomGenerator random(6);
    const QModelIndexList all = recursiveWalk(model.get(), QModelIndex());
    for (const QModelIndex &index : all)
        setCounts(model.get(), index, random.bounded(1000), random.bounded(9000));
    for (const QModelIndex &index : all)
        QCOMPARE(model->totalWordCount(index, false, false), recursiveTotal(model.get(), index));
}

void TstCounts::aDeepTreeIsCounted()
{
    constexpr int Levels = 10000;
    const auto model = blankModel();
    QModelIndex index = model->draftFolder();
    for (int level = 0; level < Levels; ++level) {
        index = addItem(model.get(), index, TVL::Text);
        setCounts(model.get(), index, 1, 2, 0, 0);
    }
    setCounts(model.get(), firstText(model.get()), 0, 0, 0, 0);
    QCOMPARE(model->totalWordCount(model->draftFolder(), false, false), Levels);
    QCOMPARE(model->totalCharacterCount(model->draftFolder()), 2 * Levels);
    QCOMPARE(model->wordCharSessionCount(true, true, false),
             Sums({Levels, 2 * Levels, Levels, 2 * Levels}));
}

void TstCounts::whatTheTargetIsAbout_data()
{
    QTest::addColumn<int>("targetType");
    QTest::addColumn<int>("expected");
    QTest::newRow("words") << int(TVL::WordsTarget) << 12;
    QTest::newRow("characters") << int(TVL::CharactersTarget) << 345;
    QTest::newRow("unknown") << 2 << 0;
    QTest::newRow("negative") << -1 << 0;
}

void TstCounts::whatTheTargetIsAbout()
{
    QFETCH(const int, targetType);
    QFETCH(const int, expected);
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    setCounts(model.get(), index, 12, 345);
    model->projectNode(index)->mTargetType = TVL::TargetType(targetType);
    QCOMPARE(model->countActual(index, false, false), expected);
}

void TstCounts::progressIsAPartOfTheTarget_data()
{
    QTest::addColumn<int>("target");
    QTest::addColumn<int>("count");
    QTest::addColumn<double>("expected");
    QTest::newRow("no target") << 0 << 150 << 0.0;
    QTest::newRow("nothing yet") << 100 << 0 << 0.0;
    QTest::newRow("half") << 100 << 50 << 0.5;
    QTest::newRow("reached") << 100 << 100 << 1.0;
    QTest::newRow("over") << 100 << 150 << 1.5;
}

void TstCounts::progressIsAPartOfTheTarget()
{
    QFETCH(const int, target);
    QFETCH(const int, count);
    QFETCH(const double, expected);
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    setCounts(model.get(), index, count, 0);
    model->projectNode(index)->mTarget = target;
    QCOMPARE(model->progress(index, false, false), expected);
    QCOMPARE(model->progressPercent(index), expected * 100.0);
}

void TstCounts::aProjectIsSummedUp_data()
{
    QTest::addColumn<bool>("draft");
    QTest::addColumn<bool>("session");
    QTest::addColumn<bool>("compileOnly");
    QTest::addColumn<QString>("expected");
    QTest::newRow("nothing") << false << false << false << u"0 0 0 0"_s;
    QTest::newRow("nothing to compile") << false << false << true << u"0 0 0 0"_s;
    QTest::newRow("draft") << true << false << false << u"110 1100 0 0"_s;
    QTest::newRow("draft to compile") << true << false << true << u"10 100 0 0"_s;
    QTest::newRow("session") << false << true << false << u"0 0 1105 11050"_s;
    QTest::newRow("session, compile doesn't matter")
        << false << true << true << u"0 0 1105 11050"_s;
    QTest::newRow("both") << true << true << false << u"110 1100 1105 11050"_s;
    QTest::newRow("both to compile") << true << true << true << u"10 100 1105 11050"_s;
}

void TstCounts::aProjectIsSummedUp()
{
    QFETCH(const bool, draft);
    QFETCH(const bool, session);
    QFETCH(const bool, compileOnly);
    QFETCH(const QString, expected);
    const auto model = blankModel();
    setCounts(model.get(), firstText(model.get()), 10, 100, 5, 50);
    const QModelIndex left = addItem(model.get(), firstText(model.get()), TVL::Text);
    setCounts(model.get(), left, 100, 1000, 0, 0);
    model->projectNode(left)->mIncludeInCompile = false;
    const QModelIndex research = addItem(model.get(), model->researchFolder(), TVL::Text);
    setCounts(model.get(), research, 1000, 10000, 0, 0);
    QCOMPARE(format(model->wordCharSessionCount(draft, session, compileOnly)), expected);
    QCOMPARE(
        format(TVLProjectModel::wordCharSessionCount(model.get(), draft, session, compileOnly)),
        expected);
}

void TstCounts::onlyItemsInsideTheDraftCountAsDraft()
{
    const auto model = blankModel();
    setCounts(model.get(), firstText(model.get()), 1, 1);
    setCounts(model.get(), model->draftFolder(), 10, 10);
    const QModelIndex top = addItem(model.get(), QModelIndex(), TVL::Text);
    setCounts(model.get(), top, 100, 100);
    const QModelIndex trashed = addItem(model.get(), model->trashFolder(), TVL::Text);
    setCounts(model.get(), trashed, 1000, 1000);
    QCOMPARE(format(model->wordCharSessionCount(true, false, false)), u"1 1 0 0"_s);
}

void TstCounts::noProjectNoSums()
{
    QCOMPARE(TVLProjectModel::wordCharSessionCount(nullptr, true, true, false), Sums());
    QCOMPARE(emptyModel()->wordCharSessionCount(true, true, false), Sums());
}

void TstCounts::aRandomProjectIsSummedUp()
{
    const auto model = blankModel();
    growRandomTree(model.get(), 300, 8);
    QRandomGenerator random(9);
    for (const QModelIndex &index : recursiveWalk(model.get(), QModelIndex())) {
        setCounts(model.get(), index, random.bounded(1000), random.bounded(9000),
                  random.bounded(-1, 1000), random.bounded(-1, 9000));
        model->projectNode(index)->mIncludeInCompile = random.bounded(2);
    }
    for (int flags = 0; flags < 8; ++flags) {
        QCOMPARE(format(model->wordCharSessionCount(flags & 1, flags & 2, flags & 4)),
                 format(plainSums(model.get(), flags & 1, flags & 2, flags & 4)));
    }
}

void TstCounts::aLargeProjectIsSummedUp()
{
    const int Items = testSize(100000);
    const auto model = blankModel().release();
    setCounts(model.get(), firstText(model.get()), 0, 0, 0, 0);
    for (int i = 0; i < Items; ++i)
        setCounts(model.get(), addItem(model.get(), model->draftFolder(), TVL::Text), 1, 2, 0, 1);
    QCOMPARE(model->wordCharSessionCount(true, true, true), Sums({Items, 2 * Items, Items, Items}));
}

void TstCounts::aNewSessionBeginsWithWhatIsThere()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex loaded = firstText(model.get());
    typeText(model.get(), loaded, u"three words here"_s);
    const QModelIndex counted = addItem(model.get(), model->draftFolder(), TVL::Text);
    setCounts(model.get(), counted, 70, 700, 10, 100);
    const QModelIndex uncounted = addItem(model.get(), model->draftFolder(), TVL::Text);
    setCounts(model.get(), uncounted, -1, -1, 10, 100);
    QCOMPARE(model->sessionWordCount(loaded, false, false), 3);
    model->resetSessionCounts();
    QCOMPARE(model->sessionWordCount(loaded, false, false), 0);
    QCOMPARE(model->sessionCharacterCount(loaded), 0);
    QCOMPARE(model->projectNode(loaded)->mSessionWordCount, 3);
    QCOMPARE(model->projectNode(loaded)->mSessionCharacterCount, 16);
    QCOMPARE(model->projectNode(counted)->mSessionWordCount, 70);
    QCOMPARE(model->projectNode(counted)->mSessionCharacterCount, 700);
    QCOMPARE(model->projectNode(uncounted)->mSessionWordCount, -1);
    QCOMPARE(model->projectNode(uncounted)->mSessionCharacterCount, -1);
}

void TstCounts::aNewSessionLeavesItemsWithoutBaseAlone()
{
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    setCounts(model.get(), index, 70, 700);
    model->resetSessionCounts();
    QCOMPARE(model->projectNode(index)->mSessionWordCount, -1);
    QCOMPARE(model->projectNode(index)->mSessionCharacterCount, -1);
}

void TstCounts::aNewSessionIsTold()
{
    const auto model = blankModel();
    const SignalLog log(model.get());
    model->resetSessionCounts();
    QCOMPARE(log.lines(), QStringList({u"meta data"_s}));
    QVERIFY(model->isSaved());
}

void TstCounts::statisticsAreTold_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<int>("target");
    QTest::addColumn<TVL::TargetType>("type");
    QTest::addColumn<QString>("expected");

    const QLocale english(QLocale::English, QLocale::UnitedStates);
    const QLocale german(QLocale::German, QLocale::Germany);
    QTest::newRow("no target") << english << 0 << TVL::WordsTarget
                               << u"Words: 1,200    Chars: 7,000"_s;
    QTest::newRow("no target of characters")
        << english << 0 << TVL::CharactersTarget << u"Words: 1,200    Chars: 7,000"_s;
    QTest::newRow("words") << english << 5000 << TVL::WordsTarget
                           << u"Words: 1,200/5,000    Chars: 7,000"_s;
    QTest::newRow("characters") << english << 25000 << TVL::CharactersTarget
                                << u"Words: 1,200    Chars: 7,000/25,000"_s;
    QTest::newRow("unknown type") << english << 5000 << TVL::TargetType(7)
                                  << u"Words: 1,200/5,000    Chars: 7,000"_s;
    QTest::newRow("German") << german << 25000 << TVL::CharactersTarget
                            << u"Words: 1.200    Chars: 7.000/25.000"_s;
    QTest::newRow("without grouping")
        << QLocale::c() << 25000 << TVL::WordsTarget << u"Words: 1200/25000    Chars: 7000"_s;
}

void TstCounts::statisticsAreTold()
{
    QFETCH(const QLocale, locale);
    QFETCH(const int, target);
    QFETCH(const TVL::TargetType, type);
    QFETCH(const QString, expected);
    const DefaultLocale guard(locale);
    QCOMPARE(TVLProjectModel::statisticsText(1200, 7000, target, type), expected);
}

TVL_TEST(TstCounts)
#include "tst_counts.moc"
