#include "TVLAutoCompleteItem.h"
#include "TVLCollectionMetaData.h"
#include "TVLLabel.h"
#include "TVLMetaDataField.h"
#include "TVLProjectInfo.h"
#include "TVLProjectNode.h"
#include "TVLProjectNotes.h"
#include "TVLReference.h"
#include "TVLSnapshotInfo.h"
#include "TVLStatusItem.h"
#include "TVLTargets.h"
#include "TVLTextDocument.h"

#include "CompletionScopes.h"
#include "TestMain.h"

#include <QStandardItemModel>
#include <QTest>
#include <QTextCursor>
#include <QTranslator>

#include <climits>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/** Puts the class-wide colour back that a test changes. */
class RecentSearchColorKeeper
{
public:
    ~RecentSearchColorKeeper() { TVLCollectionMetaData::setRecentSearchCollectionColor(mColor); }

private:
    const QColor mColor = TVLCollectionMetaData::mRecentSearchCollColor;
};

/** Answers every text with the same text in angle brackets. */
class BracketTranslator : public QTranslator
{
public:
    BracketTranslator() { QCoreApplication::installTranslator(this); }
    ~BracketTranslator() override { QCoreApplication::removeTranslator(this); }

    [[nodiscard]] bool isEmpty() const override { return false; }
    QString translate(const char *, const char *sourceText, const char *, int) const override
    {
        return u'<' + QString::fromUtf8(sourceText) + u'>';
    }
};

TVLMetaDataField fieldOf(const QString &id)
{
    TVLMetaDataField field;
    field.mId = id;
    return field;
}

TVLCollectionMetaData collectionOf(TVL::CollectionType type, const QString &title)
{
    TVLCollectionMetaData collection;
    collection.mType = type;
    collection.mTitle = title;
    return collection;
}

} // namespace

class TstRecords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Small records
    void aLabelStartsWithoutIdTitleAndColor();
    void aStatusItemStartsWithoutIdAndTitle();
    void aLabelIsFoundByItsExactTitle();
    void aLabelIsFoundById();
    void aStatusItemIsFoundByItsExactTitle();
    void aStatusItemIsFoundById();
    void theNextIdIsTheLowestFreeOne_data();
    void theNextIdIsTheLowestFreeOne();
    void aReferenceStartsAsNeitherInternalNorAddress();
    void aReferenceIsInternalWhenItHasATarget();
    void aReferenceIsEitherInternalOrAnAddress();
    void aReferenceIsFoundByAllItsFields_data();
    void aReferenceIsFoundByAllItsFields();
    void aMetaDataFieldStartsEmpty();
    void theReservedIdsAreThoseOfColumnsAndSearch();
    void emptySettingsHaveNoId();
    void settingsKnowTheirIdsInOrder();
    void idsOfFieldsAreCaseSensitive();
    void anInfoIsAFieldWithAValue();
    void anAutoCompleteItemStartsWithScopeMinusTwo();
    void aCompletionScopeHasItsNumber_data();
    void aCompletionScopeHasItsNumber();
    void aCompletionIsFoundByItsExactText_data();
    void aCompletionIsFoundByItsExactText();
    void completionsAreListedByTheirTexts();
    void aSnapshotStartsWithoutDate();
    void projectInfoStartsEmpty();

    // Targets
    void aDraftTargetStartsWithNoWords();
    void aSessionTargetStartsWithNoWords();
    void theCountTypesHaveTheirNumbers();
    void aResetTypeIsReadBackFromItsWord_data();
    void aResetTypeIsReadBackFromItsWord();
    void anUnknownResetWordMeansMidnight();

    // Project notes
    void newProjectNotesAreEmptyAndUnmodified();
    void projectNotesKnowTheirIds();
    void projectNotesAreModifiedByTheFlag();
    void projectNotesAreModifiedByANotesText();
    void aProjectNoteWithoutTextIsUnmodified();

    // Text documents
    void aTextDocumentKnowsWhereItBelongs();
    void aTextDocumentMayBelongNowhere();
    void detachingATextDocumentLeavesItsText();
    void aTextDocumentFollowsItsIndex();
    void aTextDocumentKeepsItsStates();

    // Collections
    void aCollectionStartsAsAnEmptyBinder();
    void theNumbersOfCollectionsAreThoseOfTheFormat();
    void aCollectionHasTheColorOfItsType();
    void theColorOfSearchResultsIsClassWide();
    void aRandomColorIsOpaque();
    void everyGeneratedIdentityIsDifferent();
    void theTitlesOfSyncResultsAreReserved_data();
    void theTitlesOfSyncResultsAreReserved();
    void theTitlesOfSyncResultsAreTranslated();
    void externalSyncTakesOnlyOrdinaryCollections_data();
    void externalSyncTakesOnlyOrdinaryCollections();
};

void TstRecords::aLabelStartsWithoutIdTitleAndColor()
{
    const TVLLabel label;
    QCOMPARE(label.mId, -1);
    QVERIFY(label.mTitle.isEmpty());
    QVERIFY(!label.mColor.isValid());
}

void TstRecords::aStatusItemStartsWithoutIdAndTitle()
{
    const TVLStatusItem item;
    QCOMPARE(item.mId, -1);
    QVERIFY(item.mTitle.isEmpty());
}

void TstRecords::aLabelIsFoundByItsExactTitle()
{
    const QList<TVLLabel> labels = {
        {-1, u"None"_s, {}}, {4, u"Red"_s, Qt::red}, {2, u"Red"_s, Qt::blue}};
    QCOMPARE(TVLLabel::findLabelTitle(u"Red"_s, labels), labels.at(1));
    for (const QString &title : {u"red"_s, u"Red "_s, QString()})
        QCOMPARE(TVLLabel::findLabelTitle(title, labels), TVLLabel());
    QCOMPARE(TVLLabel::findLabelTitle(u"Red"_s, {}), TVLLabel());
}

void TstRecords::aLabelIsFoundById()
{
    const QList<TVLLabel> labels = {{-1, u"None"_s, {}}, {4, u"Red"_s, Qt::red}};
    QCOMPARE(TVLLabel::findLabelId(4, labels), labels.at(1));
    QCOMPARE(TVLLabel::findLabelId(-1, labels), labels.at(0));
    QCOMPARE(TVLLabel::findLabelId(0, labels), TVLLabel());
}

void TstRecords::aStatusItemIsFoundByItsExactTitle()
{
    const QList<TVLStatusItem> items = {{-1, u"None"_s}, {4, u"Done"_s}, {2, u"Done"_s}};
    QCOMPARE(TVLStatusItem::findStatusTitle(u"Done"_s, items), items.at(1));
    QCOMPARE(TVLStatusItem::findStatusTitle(u"done"_s, items), TVLStatusItem());
    QCOMPARE(TVLStatusItem::findStatusTitle(u"Done"_s, {}), TVLStatusItem());
}

void TstRecords::aStatusItemIsFoundById()
{
    const QList<TVLStatusItem> items = {{-1, u"None"_s}, {4, u"Done"_s}};
    QCOMPARE(TVLStatusItem::findStatusId(4, items), items.at(1));
    QCOMPARE(TVLStatusItem::findStatusId(3, items), TVLStatusItem());
}

void TstRecords::theNextIdIsTheLowestFreeOne_data()
{
    QTest::addColumn<QList<int>>("ids");
    QTest::addColumn<int>("next");
    QTest::newRow("empty") << QList<int>() << 0;
    QTest::newRow("only none") << QList<int>{-1} << 0;
    QTest::newRow("a gap") << QList<int>{0, 1, 3} << 2;
    QTest::newRow("no gap") << QList<int>{-1, 0, 1, 2} << 3;
    QTest::newRow("in any order") << QList<int>{4, 0, 2, 1} << 3;
    QTest::newRow("doubled") << QList<int>{0, 0, 1} << 2;
    QTest::newRow("none is zero") << QList<int>{5, 1} << 0;
}

void TstRecords::theNextIdIsTheLowestFreeOne()
{
    QFETCH(const QList<int>, ids);
    QList<TVLLabel> labels;
    QList<TVLStatusItem> items;
    for (const int id : ids) {
        labels.append(TVLLabel{id, QString(), QColor()});
        items.append(TVLStatusItem{id, QString()});
    }
    QTEST(TVLLabel::findNextLabelId(labels), "next");
    QTEST(TVLStatusItem::findNextStatusId(items), "next");
}

void TstRecords::aReferenceStartsAsNeitherInternalNorAddress()
{
    const TVLReference reference;
    QCOMPARE(reference.mInternalLink, -1);
    QVERIFY(!reference.isInternal());
    QVERIFY(reference.mUrl.isEmpty());
    QVERIFY(reference.mTitle.isEmpty());
}

void TstRecords::aReferenceIsInternalWhenItHasATarget()
{
    TVLReference reference;
    reference.setInternalLink(0);
    QVERIFY(reference.isInternal());
    reference.setInternalLink(-1);
    QVERIFY(!reference.isInternal());
}

void TstRecords::aReferenceIsEitherInternalOrAnAddress()
{
    const QUrl url(u"https://example.org/a?b=c"_s);
    TVLReference reference;
    reference.mTitle = u"Title"_s;
    reference.setUrl(url);
    QVERIFY(!reference.isInternal());
    QCOMPARE(reference.mUrl, url);

    reference.setInternalLink(5);
    QCOMPARE(reference.mInternalLink, 5);
    QVERIFY(reference.mUrl.isEmpty());

    reference.setUrl(url);
    QCOMPARE(reference.mInternalLink, -1);
    QCOMPARE(reference.mUrl, url);
    QCOMPARE(reference.mTitle, u"Title"_s);
}

void TstRecords::aReferenceIsFoundByAllItsFields_data()
{
    QTest::addColumn<TVLReference>("reference");
    QTest::addColumn<bool>("found");
    const QUrl url(u"https://example.org/a?b=c"_s);
    QTest::newRow("address") << TVLReference{-1, url, u"Map"_s} << true;
    QTest::newRow("item") << TVLReference{5, QUrl(), u"Diary"_s} << true;
    QTest::newRow("another title") << TVLReference{-1, url, u"map"_s} << false;
    QTest::newRow("another address")
        << TVLReference{-1, QUrl(u"https://example.org/a"_s), u"Map"_s} << false;
    QTest::newRow("another item") << TVLReference{6, QUrl(), u"Diary"_s} << false;
    QTest::newRow("another type, internal") << TVLReference{5, url, u"Map"_s} << false;
    QTest::newRow("another type, external") << TVLReference{-1, QUrl(), u"Diary"_s} << false;
    QTest::newRow("nothing") << TVLReference() << false;
}

void TstRecords::aReferenceIsFoundByAllItsFields()
{
    QFETCH(const TVLReference, reference);
    const QList<TVLReference> references = {{-1, QUrl(u"https://example.org/a?b=c"_s), u"Map"_s},
                                            {5, QUrl(), u"Diary"_s}};
    QTEST(TVLReference::contains(reference, references), "found");
    QVERIFY(!TVLReference::contains(reference, {}));
}

void TstRecords::aMetaDataFieldStartsEmpty()
{
    const TVLMetaDataField field;
    QVERIFY(field.mId.isEmpty());
    QVERIFY(field.mTitle.isEmpty());
    QVERIFY(!field.mWraps);
    QVERIFY(!field.mColor.isValid());
}

void TstRecords::theReservedIdsAreThoseOfColumnsAndSearch()
{
    const QStringList expected = {
        u"title"_s,           u"label"_s,       u"status"_s,          u"createddate"_s,
        u"modifieddate"_s,    u"words"_s,       u"characters"_s,      u"includeinexport"_s,
        u"pagebreakbefore"_s, u"compileasis"_s, u"targetcount"_s,     u"targetcounttype"_s,
        u"progress"_s,        u"totalwords"_s,  u"totalcharacters"_s, u"allkeywords"_s,
    };
    QCOMPARE(TVLMetaDataField::reservedIds(), expected);
}

void TstRecords::emptySettingsHaveNoId()
{
    const TVLCustomMetaDataSettings settings;
    QVERIFY(!settings.hasId(u"pov"_s));
    QVERIFY(!settings.hasId(QString()));
    QVERIFY(settings.ids().isEmpty());
}

void TstRecords::settingsKnowTheirIdsInOrder()
{
    const TVLCustomMetaDataSettings settings = {fieldOf(u"pov"_s), fieldOf(u"day"_s),
                                                fieldOf(u"pov"_s)};
    QVERIFY(settings.hasId(u"day"_s));
    QVERIFY(settings.hasId(u"pov"_s));
    QVERIFY(!settings.hasId(u"place"_s));
    QCOMPARE(settings.ids(), QStringList({u"pov"_s, u"day"_s, u"pov"_s}));
}

void TstRecords::idsOfFieldsAreCaseSensitive()
{
    const TVLCustomMetaDataSettings settings = {fieldOf(u"pov"_s)};
    QVERIFY(!settings.hasId(u"POV"_s));
}

void TstRecords::anInfoIsAFieldWithAValue()
{
    TVLCustomMetaDataInfo info;
    QVERIFY(info.mId.isEmpty() && info.mTitle.isEmpty() && info.mValue.isEmpty());
    QVERIFY(!info.mWraps && !info.mColor.isValid());

    info = {{u"pov"_s, u"Point of view"_s, true, Qt::red}, u"Ann"_s};
    TVLCustomMetaDataInfo other = info;
    QCOMPARE(other, info);
    other.mValue = u"Ben"_s;
    QVERIFY(other != info);
    other = info;
    other.mTitle = u"Narrator"_s;
    QVERIFY(other != info);
}

void TstRecords::anAutoCompleteItemStartsWithScopeMinusTwo()
{
    const TVLAutoCompleteItem item;
    QCOMPARE(item.mScope, -2);
    QVERIFY(item.mText.isEmpty());
}

void TstRecords::aCompletionScopeHasItsNumber_data()
{
    addCompletionScopes();
    QTest::newRow("the largest id") << 2 << INT_MAX << INT_MAX;
}

void TstRecords::aCompletionScopeHasItsNumber()
{
    QFETCH(const int, scope);
    QFETCH(const int, id);
    QTEST(TVLAutoCompleteItem::scopeId(TVLAutoCompleteItem::Scope(scope), id), "number");
}

void TstRecords::aCompletionIsFoundByItsExactText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("position");
    QTest::newRow("the first") << u"Ann"_s << 0;
    QTest::newRow("the first of several") << u"Ben"_s << 1;
    QTest::newRow("the last") << u"Zoe"_s << 3;
    QTest::newRow("another case") << u"ann"_s << -1;
    QTest::newRow("a part") << u"An"_s << -1;
    QTest::newRow("with a blank") << u"Ann "_s << -1;
    QTest::newRow("empty") << QString() << -1;
}

void TstRecords::aCompletionIsFoundByItsExactText()
{
    QFETCH(const QString, text);
    const QList<TVLAutoCompleteItem> items = {
        {-2, u"Ann"_s}, {3, u"Ben"_s}, {-1, u"Ben"_s}, {0, u"Zoe"_s}};
    QTEST(int(TVLAutoCompleteItem::indexOf(text, items)), "position");
    QCOMPARE(TVLAutoCompleteItem::indexOf(text, {}), -1);
}

void TstRecords::completionsAreListedByTheirTexts()
{
    QCOMPARE(TVLAutoCompleteItem::toStringList({}), QStringList());
    QCOMPARE(TVLAutoCompleteItem::toStringList({{3, u"z"_s}, {-1, u"a"_s}, {-2, u"z"_s}}),
             QStringList({u"z"_s, u"a"_s, u"z"_s}));
}

void TstRecords::aSnapshotStartsWithoutDate()
{
    const TVLSnapshotInfo snapshot;
    QVERIFY(snapshot.mTitle.isEmpty());
    QVERIFY(!snapshot.mDate.isValid());
    QVERIFY(snapshot.mLinks.mTargets.isEmpty());
    QVERIFY(snapshot.mLinks.mProject.isEmpty());
    QVERIFY(snapshot.mComments.isEmpty());
}

void TstRecords::projectInfoStartsEmpty()
{
    const TVLProjectInfo info;
    QCOMPARE(int(info.mBinderVersion), 0);
    QVERIFY(info.mVersion.isEmpty());
    QVERIFY(info.mDevice.isEmpty());
    QVERIFY(!info.mModified.isValid());
    QVERIFY(info.mModId.isNull());
    QVERIFY(info.mSyncId.isNull());
    QVERIFY(info.mChecksumsId.isNull());
    QVERIFY(!info.mIsTemplate);
    QVERIFY(!info.mIsNewProject);
}

void TstRecords::aDraftTargetStartsWithNoWords()
{
    const TVLDraftTarget target;
    QVERIFY(target.mDeadline.isEmpty());
    QCOMPARE(target.mCount, 0);
    QCOMPARE(target.mType, 1);
    QVERIFY(!target.mCountIncludedOnly);
    QVERIFY(!target.mCurrentCompileGroupOnly);
    QVERIFY(!target.mIgnoreDeadline);
    QVERIFY(!target.mShowOverrun);
    QCOMPARE(target.mBuffer, 0);
}

void TstRecords::aSessionTargetStartsWithNoWords()
{
    const TVLSessionTarget target;
    QVERIFY(target.mWritingDays.isEmpty());
    QCOMPARE(target.mCount, 0);
    QCOMPARE(target.mType, 1);
    QVERIFY(!target.mCountDraftOnly);
    QVERIFY(!target.mAllowNegatives);
    QVERIFY(!target.mFromDeadline);
    QVERIFY(!target.mCanWriteOnDeadlineDate);
}

void TstRecords::theCountTypesHaveTheirNumbers()
{
    QCOMPARE(int(TVLCountType::Characters), 0);
    QCOMPARE(int(TVLCountType::Words), 1);
    QCOMPARE(int(TVLCountType::Pages), 2);
}

void TstRecords::aResetTypeIsReadBackFromItsWord_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("word");
    QTest::newRow("midnight") << int(TVLSessionTarget::Midnight) << u"Midnight"_s;
    QTest::newRow("project close") << int(TVLSessionTarget::ProjectClose) << u"ProjectClose"_s;
    QTest::newRow("next day") << int(TVLSessionTarget::NextDay) << u"NextDay"_s;
    QTest::newRow("never") << int(TVLSessionTarget::Never) << u"Never"_s;
}

void TstRecords::aResetTypeIsReadBackFromItsWord()
{
    QFETCH(int, type);
    QFETCH(QString, word);
    QCOMPARE(TVLSessionTarget::toString(TVLSessionTarget::ResetType(type)), word);
    QCOMPARE(int(TVLSessionTarget::fromString(word)), type);
}

void TstRecords::anUnknownResetWordMeansMidnight()
{
    QCOMPARE(TVLSessionTarget::fromString(u"midnight at noon"), TVLSessionTarget::Midnight);
    QCOMPARE(TVLSessionTarget::fromString(u"never"), TVLSessionTarget::Midnight);
    QCOMPARE(TVLSessionTarget::fromString({}), TVLSessionTarget::Midnight);
}

void TstRecords::newProjectNotesAreEmptyAndUnmodified()
{
    const TVLProjectNotes notes;
    QVERIFY(notes.isEmpty());
    QVERIFY(!notes.hasId(0));
    QVERIFY(!notes.isModified());
    QVERIFY(!notes.notesModified());
}

void TstRecords::projectNotesKnowTheirIds()
{
    QTextDocument text;
    TVLProjectNotes notes;
    notes.mNotes = {{3, &text}, {7, nullptr}};
    QVERIFY(!notes.isEmpty());
    QVERIFY(notes.hasId(3));
    QVERIFY(notes.hasId(7));
    QVERIFY(!notes.hasId(4));
}

void TstRecords::projectNotesAreModifiedByTheFlag()
{
    TVLProjectNotes notes;
    notes.setModified(true);
    QVERIFY(notes.isModified());
    QVERIFY(!notes.notesModified());
    notes.setModified(false);
    QVERIFY(!notes.isModified());
}

void TstRecords::projectNotesAreModifiedByANotesText()
{
    QTextDocument first;
    QTextDocument second;
    TVLProjectNotes notes;
    notes.mNotes = {{1, &first}, {2, &second}};
    QVERIFY(!notes.isModified());
    QTextCursor(&second).insertText(u"x"_s);
    QVERIFY(notes.notesModified());
    QVERIFY(notes.isModified());
    second.setModified(false);
    QVERIFY(!notes.isModified());
}

void TstRecords::aProjectNoteWithoutTextIsUnmodified()
{
    TVLProjectNotes notes;
    notes.mNotes = {{1, nullptr}};
    QVERIFY(!notes.notesModified());
}

void TstRecords::aTextDocumentKnowsWhereItBelongs()
{
    QObject parent;
    TVLProjectNode node({1, QUuid::createUuid()}, nullptr);
    int place = 0; // The document only keeps the address.
    auto *model = reinterpret_cast<TVLProjectModel *>(&place);
    auto *document = new TVLTextDocument(&parent, model, &node, TVL::SynopsisText);
    QCOMPARE(document->parent(), &parent);
    QCOMPARE(document->model(), model);
    QCOMPARE(document->node(), &node);
    QCOMPARE(document->documentType(), TVL::SynopsisText);
}

void TstRecords::aTextDocumentMayBelongNowhere()
{
    const TVLTextDocument document;
    QVERIFY(!document.parent());
    QVERIFY(!document.model());
    QVERIFY(!document.node());
    QVERIFY(!document.index().isValid());
    QCOMPARE(document.documentType(), TVL::MainText);
    QCOMPARE(document.referenceCount(), 0);
    QVERIFY(!document.isReadOnly());
}

void TstRecords::detachingATextDocumentLeavesItsText()
{
    QStandardItemModel items(1, 1);
    TVLProjectNode node({1, QUuid::createUuid()}, nullptr);
    int place = 0; // The document only keeps the address.
    TVLTextDocument document(nullptr, reinterpret_cast<TVLProjectModel *>(&place), &node,
                             TVL::NotesText);
    document.setPlainText(u"words"_s);
    document.setIndex(items.index(0, 0));
    document.detach();
    QVERIFY(!document.model());
    QVERIFY(!document.node());
    QVERIFY(!document.index().isValid());
    QCOMPARE(document.toPlainText(), u"words"_s);
    QCOMPARE(document.documentType(), TVL::NotesText);
}

void TstRecords::aTextDocumentFollowsItsIndex()
{
    QStandardItemModel items(3, 1);
    TVLTextDocument document;
    document.setIndex(items.index(1, 0));
    items.insertRow(0);
    QCOMPARE(document.index().row(), 2);
    items.removeRow(2);
    QVERIFY(!document.index().isValid());
}

void TstRecords::aTextDocumentKeepsItsStates()
{
    TVLTextDocument document;
    document.setReferenceCount(3);
    QCOMPARE(document.referenceCount(), 3);
    for (const bool state : {true, false, true}) {
        document.setSaved(state);
        QCOMPARE(document.isSaved(), state);
        document.setReadOnly(state);
        QCOMPARE(document.isReadOnly(), state);
    }
}

void TstRecords::aCollectionStartsAsAnEmptyBinder()
{
    const TVLCollectionMetaData collection;
    QVERIFY(collection.mId.isEmpty());
    QVERIFY(collection.mTitle.isEmpty());
    QVERIFY(collection.mSearchText.isEmpty());
    QVERIFY(!collection.mColor.isValid());
    QCOMPARE(int(collection.mType), 0);
    QCOMPARE(int(collection.mSearchOperator), 0);
    QCOMPARE(int(collection.mSearchProperty), 0);
    QCOMPARE(int(collection.mSearchScope), 0);
    QCOMPARE(int(collection.mSearchCompile), 0);
    QCOMPARE(int(collection.mCaseSensitivity), 0);
    QVERIFY(collection.mIds.isEmpty());
}

void TstRecords::theNumbersOfCollectionsAreThoseOfTheFormat()
{
    QCOMPARE(int(TVL::BinderCollection), 0);
    QCOMPARE(int(TVL::RecentSearchCollection), 1);
    QCOMPARE(int(TVL::SavedSearchCollection), 2);
    QCOMPARE(int(TVL::ArbitraryCollection), 3);
    QCOMPARE(int(TVL::ExactOperator), 0);
    QCOMPARE(int(TVL::AllOperator), 1);
    QCOMPARE(int(TVL::AnyOperator), 2);
    QCOMPARE(int(TVL::WholeWordOperator), 3);
    QCOMPARE(int(TVL::RegExpOperator), 4);
    QCOMPARE(int(TVL::AllScope), 0);
    QCOMPARE(int(TVL::SelectionScope), 1);
    QCOMPARE(int(TVL::DraftScope), 2);
    QCOMPARE(int(TVL::ExcludeTrashScope), 4);
    QCOMPARE(int(TVL::AnyCompile), 0);
    QCOMPARE(int(TVL::IncludedInCompile), 1);
    QCOMPARE(int(TVL::ExcludedFromCompile), 2);
}

void TstRecords::aCollectionHasTheColorOfItsType()
{
    TVLCollectionMetaData collection;
    collection.mColor = QColor(1, 2, 3);
    collection.mType = TVL::BinderCollection;
    QCOMPARE(collection.color(), QColor(230, 234, 238));
    collection.mType = TVL::RecentSearchCollection;
    QCOMPARE(collection.color(), QColor(u"lavender"_s));
    collection.mType = TVL::SavedSearchCollection;
    QCOMPARE(collection.color(), QColor(1, 2, 3));
    collection.mType = TVL::ArbitraryCollection;
    QCOMPARE(collection.color(), QColor(1, 2, 3));
}

void TstRecords::theColorOfSearchResultsIsClassWide()
{
    const RecentSearchColorKeeper keeper;
    const TVLCollectionMetaData results = collectionOf(TVL::RecentSearchCollection, {});
    TVLCollectionMetaData::setRecentSearchCollectionColor(QColor(9, 8, 7));
    QCOMPARE(results.color(), QColor(9, 8, 7));
    QCOMPARE(collectionOf(TVL::BinderCollection, {}).color(), TVLCollectionMetaData::mBinderColor);
}

void TstRecords::aRandomColorIsOpaque()
{
    for (int i = 0; i < 1000; ++i) {
        const QColor color = TVLCollectionMetaData::randomColor();
        QVERIFY(color.isValid());
        QCOMPARE(color.alpha(), 255);
        QVERIFY(color.red() < 255 && color.green() < 255 && color.blue() < 255);
    }
}

void TstRecords::everyGeneratedIdentityIsDifferent()
{
    QSet<QString> identities;
    for (int i = 0; i < 1000; ++i)
        identities.insert(TVLCollectionMetaData::generateIdentity());
    QCOMPARE(identities.size(), 1000);
    QVERIFY(!identities.contains(QString()));
}

void TstRecords::theTitlesOfSyncResultsAreReserved_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<bool>("reserved");
    QTest::newRow("updated") << u"Updated Documents"_s << true;
    QTest::newRow("synced") << u"Synced Documents"_s << true;
    QTest::newRow("other case") << u"synced documents"_s << false;
    QTest::newRow("longer") << u"Synced Documents 2"_s << false;
    QTest::newRow("empty") << QString() << false;
}

void TstRecords::theTitlesOfSyncResultsAreReserved()
{
    QFETCH(QString, title);
    QFETCH(bool, reserved);
    QCOMPARE(TVLCollectionMetaData::isSyncResultsCollectionTitle(title), reserved);
    QCOMPARE(collectionOf(TVL::ArbitraryCollection, title).isSyncResultsCollection(), reserved);
}

void TstRecords::theTitlesOfSyncResultsAreTranslated()
{
    const BracketTranslator translator;
    QVERIFY(TVLCollectionMetaData::isSyncResultsCollectionTitle(u"<Updated Documents>"_s));
    QVERIFY(TVLCollectionMetaData::isSyncResultsCollectionTitle(u"<Synced Documents>"_s));
    QVERIFY(!TVLCollectionMetaData::isSyncResultsCollectionTitle(u"Synced Documents"_s));
}

void TstRecords::externalSyncTakesOnlyOrdinaryCollections_data()
{
    QTest::addColumn<TVL::CollectionType>("type");
    QTest::addColumn<QString>("title");
    QTest::addColumn<bool>("suitable");
    const QString ordinary = u"Chapters"_s;
    const QString synced = u"Synced Documents"_s;
    const QString updated = u"Updated Documents"_s;
    QTest::newRow("binder") << TVL::BinderCollection << ordinary << false;
    QTest::newRow("search results") << TVL::RecentSearchCollection << ordinary << false;
    QTest::newRow("saved search") << TVL::SavedSearchCollection << ordinary << true;
    QTest::newRow("saved search with synced title")
        << TVL::SavedSearchCollection << synced << false;
    QTest::newRow("saved search with updated title")
        << TVL::SavedSearchCollection << updated << false;
    QTest::newRow("list") << TVL::ArbitraryCollection << ordinary << true;
    QTest::newRow("list with synced title") << TVL::ArbitraryCollection << synced << false;
    QTest::newRow("list with updated title") << TVL::ArbitraryCollection << updated << false;
}

void TstRecords::externalSyncTakesOnlyOrdinaryCollections()
{
    QFETCH(TVL::CollectionType, type);
    QFETCH(QString, title);
    QTEST(collectionOf(type, title).isSuitableExternalFolderSync(), "suitable");
}

TVL_TEST(TstRecords)
#include "tst_records.moc"
