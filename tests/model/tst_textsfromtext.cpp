#include "ModelChecks.h"
#include "TestMain.h"
#include "TestProject.h"

#include "TVLTextDocument.h"

#include <QTest>
#include <QTextCursor>

using namespace Qt::StringLiterals;

namespace {

QString words(int count, const QString &word = u"a"_s)
{
    return QStringList(count, word).join(u' ');
}

QList<int> numbersOf(const TVLProjectModel *model, const QList<QModelIndex> &indexes)
{
    QList<int> ids;
    for (const QModelIndex &index : indexes)
        ids.append(model->nodeIdentity(index));
    return ids;
}

} // namespace

class TstTextsFromText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aTitleIsMadeOfTheFirstWords_data();
    void aTitleIsMadeOfTheFirstWords();
    void aTitleOfNoDocumentIsEmpty();
    void aTitleIsMadeOfAnItemsText();
    void aSynopsisIsMadeOfTheFirstTwentyWords_data();
    void aSynopsisIsMadeOfTheFirstTwentyWords();
    void withoutTextThereIsNoSynopsisToMake();

    void synopsesAreSearched_data();
    void synopsesAreSearched();
    void synopsesAreSearchedInTheOrderOfTheBinder();
    void onlySynopsesInMemoryAreSearched();
    void systemFoldersAreNotSearched();
};

void TstTextsFromText::aTitleIsMadeOfTheFirstWords_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("force");
    QTest::addColumn<bool>("ellipsis");
    QTest::addColumn<QString>("expected");

    const QString seven = u"a title"_s;
    QTest::newRow("a title already") << seven << false << false << QString();
    QTest::newRow("a title already, ellipsis") << seven << false << true << QString();
    QTest::newRow("a title already, forced") << seven << true << false << seven;
    QTest::newRow("a title already, forced, ellipsis") << seven << true << true << seven;
    QTest::newRow("empty") << QString() << true << true << QString();
    QTest::newRow("blanks") << u" \t  \n   "_s << true << true << QString();
    QTest::newRow("second paragraph") << u"one\ntwo"_s << false << false << u"one"_s;
    QTest::newRow("second paragraph, empty") << u"one\n"_s << false << false << u"one"_s;
    QTest::newRow("line break") << u"one\u2028two"_s << false << false << u"one two"_s;
    // The length of a block counts its end.
    QTest::newRow("49 characters") << QString(49, u'x') << false << false << QString();
    QTest::newRow("50 characters") << QString(50, u'x') << false << false << QString();
    QTest::newRow("49 characters in words") << words(25) << false << false << QString();
    QTest::newRow("50 characters in words") << words(24) + u" ab"_s << false << false << words(24);
    QTest::newRow("49 characters, forced")
        << QString(49, u'x') << true << false << QString(49, u'x');
    QTest::newRow("too long a word") << QString(50, u'x') << true << true << QString();
    QTest::newRow("too long a word first")
        << QString(60, u'x') + u" y"_s << true << true << QString();
    QTest::newRow("too long a word behind")
        << u"y "_s + QString(60, u'x') << true << true << u"y..."_s;
    QTest::newRow("60 words, ellipsis") << words(60) << true << true << words(25) + u"..."_s;
    QTest::newRow("60 words") << words(60) << true << false << words(25);
    QTest::newRow("60 words, unforced") << words(60) << false << true << words(25) + u"..."_s;
    QTest::newRow("25 words") << words(25) << true << true << words(25);
    QTest::newRow("26 words") << words(26) << true << true << words(25) + u"..."_s;
    QTest::newRow("first paragraph with words")
        << u"\n  \n\tone   two\nthree"_s << false << true << u"one two"_s;
    QTest::newRow("words of later paragraphs aren't left over")
        << u"one\ntwo"_s << true << true << u"one"_s;
    QTest::newRow("non-breaking blank") << u"one\u00A0two\nx"_s << false << false << u"one two"_s;
}

void TstTextsFromText::aTitleIsMadeOfTheFirstWords()
{
    QFETCH(const QString, text);
    QFETCH(const bool, force);
    QFETCH(const bool, ellipsis);
    QFETCH(const QString, expected);
    QTextDocument document;
    QTextCursor(&document).insertText(text);
    QCOMPARE(TVLProjectModel::calcTitleFromText(&document, force, ellipsis), expected);
}

void TstTextsFromText::aTitleOfNoDocumentIsEmpty()
{
    QCOMPARE(TVLProjectModel::calcTitleFromText(nullptr, true, true), QString());
    QCOMPARE(TVLProjectModel::calcTitleFromText(nullptr, false, false), QString());
}

void TstTextsFromText::aTitleIsMadeOfAnItemsText()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    QCOMPARE(model->calcTitleFromText(index), QString());
    typeText(model.get(), index, words(60));
    QCOMPARE(model->calcTitleFromText(index), words(25));
    const QModelIndex other = addItem(model.get(), model->draftFolder(), TVL::Text);
    typeText(model.get(), other, u"a title"_s);
    QCOMPARE(model->calcTitleFromText(other), u"a title"_s);
    QCOMPARE(model->calcTitleFromText(model->draftFolder()), QString());
    QCOMPARE(model->projectNode(index)->mTextDocument->referenceCount(), 0);
}

void TstTextsFromText::aSynopsisIsMadeOfTheFirstTwentyWords_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("blanks") << u" \n \t "_s << QString();
    QTest::newRow("few words") << u"  a few\twords "_s << u"a few words"_s;
    QTest::newRow("20 words") << words(20) << words(20);
    QTest::newRow("21 words") << words(21) << words(20);
    QTest::newRow("long words") << words(30, QString(60, u'x')) << words(20, QString(60, u'x'));
    QTest::newRow("first paragraph with words") << u"\n \none two\nthree"_s << u"one two"_s;
}

void TstTextsFromText::aSynopsisIsMadeOfTheFirstTwentyWords()
{
    QFETCH(const QString, text);
    QFETCH(const QString, expected);
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    typeText(model.get(), index, text);
    QCOMPARE(model->autoGenerateSynopsisText(index), expected);
    QCOMPARE(model->projectNode(index)->mTextDocument->referenceCount(), 0);
}

void TstTextsFromText::withoutTextThereIsNoSynopsisToMake()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex image = addItem(model.get(), model->draftFolder(), TVL::Image);
    QCOMPARE(model->autoGenerateSynopsisText(QModelIndex()), QString());
    QCOMPARE(model->autoGenerateSynopsisText(model->draftFolder()), QString());
    QCOMPARE(model->autoGenerateSynopsisText(image), QString());
}

void TstTextsFromText::synopsesAreSearched_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("regExp");
    QTest::addColumn<bool>("isFound");
    QTest::newRow("part of it") << u"hero me"_s << false << true;
    QTest::newRow("other case") << u"Hero"_s << false << false;
    QTest::newRow("not there") << u"villain"_s << false << false;
    QTest::newRow("over the line end") << u"villain?\nno"_s << false << false;
    QTest::newRow("expression as text") << u"h.ro"_s << false << false;
    QTest::newRow("dot as text") << u"one."_s << false << true;
    QTest::newRow("expression") << u"h.ro"_s << true << true;
    QTest::newRow("expression, other case") << u"H.ro"_s << true << false;
    QTest::newRow("expression from start to end") << u"^The.*one\\.$"_s << true << true;
    QTest::newRow("broken expression") << u"hero("_s << true << false;
}

void TstTextsFromText::synopsesAreSearched()
{
    QFETCH(const QString, text);
    QFETCH(const bool, regExp);
    QFETCH(const bool, isFound);
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    QVERIFY(model->setSynopsis(index, u"The hero meets\nanother one."_s));
    QCOMPARE(numbersOf(model.get(), model->searchInSynopsis(text, regExp)),
             isFound ? QList<int>({3}) : QList<int>());
}

void TstTextsFromText::synopsesAreSearchedInTheOrderOfTheBinder()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex folder = addItem(model.get(), model->researchFolder(), TVL::Folder);
    const QModelIndex image = addItem(model.get(), folder, TVL::Image);
    QVERIFY(model->setSynopsis(image, u"hero"_s));
    QVERIFY(model->setSynopsis(folder, u"hero"_s));
    QVERIFY(model->setSynopsis(firstText(model.get()), u"hero"_s));
    QCOMPARE(numbersOf(model.get(), model->searchInSynopsis(u"hero"_s, false)),
             QList<int>({3, 4, 5}));
}

void TstTextsFromText::onlySynopsesInMemoryAreSearched()
{
    const TestProject project;
    const auto model = project.create();
    project.writeFile(u"Files/Docs/3_synopsis.txt"_s, "hero");
    QCOMPARE(model->searchInSynopsis(u"hero"_s, false), QList<QModelIndex>());
    QVERIFY(model->loadedNodes().isEmpty());
    model->loadDocuments(model->findNode(3));
    QCOMPARE(numbersOf(model.get(), model->searchInSynopsis(u"hero"_s, false)), QList<int>({3}));
}

void TstTextsFromText::systemFoldersAreNotSearched()
{
    const TestProject project;
    const auto model = project.create();
    project.writeFile(u"Files/Docs/0_synopsis.txt"_s, "hero");
    model->loadDocuments(model->findNode(0));
    QCOMPARE(model->findNode(0)->mSynopsisDocument->toPlainText(), u"hero"_s);
    QCOMPARE(model->searchInSynopsis(u"hero"_s, false), QList<QModelIndex>());
}

TVL_TEST(TstTextsFromText)
#include "tst_textsfromtext.moc"
